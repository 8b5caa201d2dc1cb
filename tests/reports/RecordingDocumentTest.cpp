#include "reports/RecordingDocument.h"

#include "support/DataRows.h"

#include <gtest/gtest.h>

namespace tvrx {
namespace {

QString runText(const RecordingDocument::Run& run) {
    const bool text = run.kind == RecordingDocument::RunKind::Text;
    return QStringLiteral("%1 \"%2\" %3 %4 %5")
        .arg(text ? "Text" : "Paragraph", run.text)
        .arg(run.bold)
        .arg(run.size)
        .arg(run.colour);
}

struct EventCounts : DocumentEvents {
    void vp_NewPage() override { ++newPages; }
    void vp_EndDoc() override { ++ends; }
    void vp_Error() override { ++errors; }
    void vp_PreviewPageChanged(qint32) override {}
    int newPages = 0;
    int ends = 0;
    int errors = 0;
};

TEST(RecordingDocumentTest, LineBreaksAreLineFeedsCarriageReturnsAndBackslashN) {
    for (const test::DataRow& row : test::dataRows(QStringLiteral("document-lines.tsv"))) {
        QString text = row.cells.value(0);
        text.replace(QStringLiteral("<LF>"), QStringLiteral("\n"));
        text.replace(QStringLiteral("<CR>"), QStringLiteral("\r"));
        EXPECT_EQ(documentLines(text).join(QStringLiteral(" / ")), row.cells.value(1)) << row.where;
    }
}

// The font state lasts until it is changed; a paragraph and a table stand on lines of
// their own; the pages are the ones begun, each announced once as it begins.
TEST(RecordingDocumentTest, KeepsEachRunWithItsFontStateTheTablesAndThePages) {
    RecordingDocument doc;
    EventCounts events;
    doc.setEvents(&events);
    doc.setDevice(QStringLiteral("Front Counter"));
    doc.setPageSettings(1, 500, 500);
    doc.StartDoc();
    doc.setFontBold(true);
    doc.setFontSize(14);
    doc.setTextColor(255);
    doc.addText(QStringLiteral("TITLE\\n"));
    doc.addParagraph(QStringLiteral("-----"));
    doc.setFontSize(12);
    doc.setTextColor(0);
    doc.addText(QStringLiteral("A: "));
    doc.setFontBold(false);
    doc.addText(QStringLiteral("one\\n\\nB: two"));
    doc.addTable(QStringLiteral("<900|>900;"), QStringLiteral("H1|H2;"), QStringLiteral("x|y;"),
                 65535, 0xFFFFFF);
    EXPECT_EQ(events.newPages, 1);
    doc.NewPage();
    doc.setTextColor(0x1FF0000);
    doc.addParagraph(QStringLiteral("second page"));
    doc.EndDoc();

    QStringList runs;
    for (const auto& run : doc.runs()) runs.append(runText(run));
    EXPECT_EQ(runs, QStringList({R"(Text "TITLE\n" 1 14 255)", R"(Paragraph "-----" 1 14 255)",
                                 R"(Text "A: " 1 12 0)", R"(Text "one\n\nB: two" 0 12 0)",
                                 R"(Paragraph "second page" 0 12 16711680)"}));
    ASSERT_EQ(doc.tables().size(), 1);
    EXPECT_EQ(doc.tables().at(0).headerShade, 65535);
    EXPECT_EQ(doc.plainText(),
              QStringLiteral("TITLE\n-----\nA: one\n\nB: two\nH1 | H2\nx | y\nsecond page"));
    QStringList operations;
    for (const auto& operation : doc.operations()) operations.append(operation.text());
    EXPECT_EQ(
        operations.join(u','),
        QStringLiteral("StartDoc Front Counter,Text TITLE\\n,Paragraph -----,Text A: ,"
                       "Text one\\n\\nB: two,Table 2 2,NewPage,Paragraph second page,EndDoc"));
    EXPECT_EQ(doc.documentSettings().MarginLeft, 500);
    EXPECT_EQ(doc.documentSettings().textWidth(), 11240);
    EXPECT_EQ(doc.PageCount(), 2);
    EXPECT_EQ(events.newPages, 2);
    EXPECT_EQ(events.ends, 1);
    EXPECT_EQ(events.errors, 0);
}

// Drawing without StartDoc begins a document; a new StartDoc forgets the old content but
// not the font state.
TEST(RecordingDocumentTest, BeginsByItselfStartsAfresh) {
    RecordingDocument doc;
    EventCounts events;
    doc.setEvents(&events);
    EXPECT_EQ(doc.PageCount(), 0);
    doc.setFontSize(9);
    doc.addText(QStringLiteral("first"));
    EXPECT_EQ(doc.PageCount(), 1);
    doc.StartDoc();
    doc.addText(QStringLiteral("second"));
    EXPECT_EQ(doc.plainText(), QStringLiteral("second"));
    EXPECT_EQ(doc.runs().at(0).size, 9);
    EXPECT_EQ(events.newPages, 2) << "one first page for each document";
}

}  // namespace
}  // namespace tvrx
