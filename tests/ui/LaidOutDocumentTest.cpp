#include "reports/LaidOutDocument.h"

#include "support/DataRows.h"

#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tvrx {
namespace {

qint32 pagesOf(double size, int margin, int lines) {
    LaidOutDocument doc;
    doc.setPageSettings(1, margin, margin);
    doc.StartDoc();
    doc.setFontSize(size);
    QStringList text;
    for (int line = 1; line <= lines; ++line) text.append(QStringLiteral("line %1").arg(line));
    doc.addText(text.join(u'\n'));
    doc.EndDoc();
    return doc.PageCount();
}

// The pages break after the same line on any machine, whatever its screen.
TEST(LaidOutDocumentTest, LongTextBreaksIntoPagesOfAFixedNumberOfLines) {
    for (const test::DataRow& row : test::dataRows(QStringLiteral("document-pages.tsv"))) {
        const double size = row.cells[0].toDouble();
        const int margin = row.cells[1].toInt();
        const int perPage = row.cells[2].toInt();
        EXPECT_EQ(pagesOf(size, margin, perPage), 1) << row.where;
        EXPECT_EQ(pagesOf(size, margin, perPage + 1), 2) << row.where;
        EXPECT_EQ(pagesOf(size, margin, 3 * perPage), 3) << row.where;
        EXPECT_EQ(pagesOf(size, margin, 3 * perPage + 1), 4) << row.where;
    }
}

QString run(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(30000)) << program.toStdString();
    EXPECT_EQ(process.exitCode(), 0) << program.toStdString();
    return QString::fromUtf8(process.readAllStandardOutput());
}

bool yellow(QRgb pixel) {
    return qRed(pixel) > 230 && qGreen(pixel) > 230 && qBlue(pixel) < 40;
}

bool red(QRgb pixel) {
    return qRed(pixel) > 180 && qGreen(pixel) < 80 && qBlue(pixel) < 80;
}

int dots(const QImage& image, const QRect& area, bool (*colour)(QRgb)) {
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) count += colour(image.pixel(x, y));
    }
    return count;
}

// The eligibility report's page: half-inch margins and a table of 11,600 twips, wider
// than the 11,240 twips of text, which runs into the right margin rather than shrink.
// The PDF is turned into a picture by another program to prove that it renders.
TEST(LaidOutDocumentTest, APdfRendersItsTextColoursAndAWideTableUnscaled) {
    LaidOutDocument doc;
    doc.setPageSettings(1, 500, 500);
    doc.StartDoc();
    doc.setFontBold(true);
    doc.setFontSize(14);
    doc.setTextColor(255);
    doc.addText(QStringLiteral("ELIGIBILITY CHECK FOR: ROSA CASTELLANOS\n"));
    doc.addParagraph(QString(70, u'-'));
    doc.setFontSize(12);
    doc.setTextColor(0);
    doc.addTable(QStringLiteral("+1500|+1100|+1500|+^2500|+^2500|+^900|+>1600;"),
                 QStringLiteral("Plan|BIN|PCN|Group #|ID|Per Code|Ins Phone;"),
                 QStringLiteral("PRMARY|610014|MEDDPRIME|RX4410|W220451877|01|8005550100;"), 65535,
                 0xFFFFFF);
    doc.NewPage();
    doc.addParagraph(QStringLiteral("second page"));
    doc.EndDoc();

    QTemporaryDir folder;
    const QString pdf = folder.filePath(QStringLiteral("report.pdf"));
    ASSERT_TRUE(doc.writePdf(pdf));
    EXPECT_TRUE(run(QStringLiteral("pdfinfo"), {pdf}).contains(QRegularExpression("Pages: +2\n")));
    const QString text = run(QStringLiteral("pdftotext"), {pdf, QStringLiteral("-")});
    for (const char* expected :
         {"ELIGIBILITY CHECK FOR: ROSA CASTELLANOS", "W220451877", "second page"}) {
        EXPECT_TRUE(text.contains(QLatin1String(expected))) << expected;
    }
    run(QStringLiteral("pdftoppm"), QStringLiteral("-r 72 -f 1 -l 1 -png").split(u' ') +
                                        QStringList{pdf, folder.filePath(QStringLiteral("page"))});
    const QImage page(folder.filePath(QStringLiteral("page-1.png")));
    ASSERT_EQ(page.size(), QSize(612, 792));
    // At 72 dots to the inch a dot is 20 twips: the text ends at dot 587, the table at 605.
    EXPECT_GT(dots(page, QRect(596, 0, 10, 792), yellow), 0) << "the shading reaches past the text";
    EXPECT_EQ(dots(page, QRect(607, 0, 5, 792), yellow), 0) << "and stops where the table ends";
    EXPECT_GT(dots(page, QRect(0, 0, 612, 60), red), 50) << "the red heading at the top";
}

// The view's sheets: the whole paper or the area a printer reaches, guides on the
// margins, and two pages side by side beginning at the page asked for.
TEST(LaidOutDocumentTest, SheetsShowTheWholePaperThePrintableAreaOrTwoPages) {
    LaidOutDocument doc;
    doc.StartDoc();
    doc.addText(QStringLiteral("first"));
    for (const int colour : {0, 255}) {
        doc.NewPage();
        doc.setTextColor(colour);
        doc.setFontSize(40);
        doc.addText(QStringLiteral("WWWWWW"));
    }
    doc.EndDoc();
    ASSERT_EQ(doc.PageCount(), 3);
    EXPECT_EQ(doc.pageImage(1, 72).size(), QSize(612, 792));
    EXPECT_EQ(doc.pageImage(1, 72, {false, false, 1}).size(), QSize(576, 756));
    EXPECT_TRUE(doc.pageImage(4, 72).isNull());
    // A dotted guide on the left margin, dot 72, and none in the middle of the text.
    const QImage guided = doc.pageImage(1, 72, {true, true, 1});
    auto grey = [](QRgb pixel) { return qGray(pixel) < 250; };
    EXPECT_GT(dots(guided, QRect(71, 200, 3, 400), grey), 100);
    EXPECT_EQ(dots(guided, QRect(300, 200, 1, 400), grey), 0);
    // Page 2 (black) on the left, page 3 (red) on the right.
    const QImage twoPages = doc.pageImage(2, 72, {true, false, 2});
    ASSERT_EQ(twoPages.size(), QSize(1242, 792));
    EXPECT_EQ(dots(twoPages, QRect(60, 60, 540, 70), red), 0);
    EXPECT_GT(dots(twoPages, QRect(690, 60, 540, 70), red), 100);
}

}  // namespace
}  // namespace tvrx
