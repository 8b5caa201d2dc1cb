#include "reports/LaidOutDocument.h"

#include <QAbstractTextDocumentLayout>
#include <QGuiApplication>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>

#include <QtMath>

#include <algorithm>

namespace tvrx {

namespace {

// Qt's text engine measures frames and tables in pixels of a 96-dot inch and scales them
// to the layout's resolution; these are the twips in one of those pixels.
constexpr double kTwipsPerFramePixel = LaidOutDocument::kResolution / 96.0;
// Table rules one pixel wide (15 twips), text a pixel and a half from them: a column keeps
// what it was given for its text.
constexpr double kTableBorder = 1;
constexpr double kCellPadding = 1.5;

QColor colourOf(qint32 value) {
    return QColor(value & 0xFF, (value >> 8) & 0xFF, (value >> 16) & 0xFF);
}

QTextCharFormat charFormat(bool bold, double size, qint32 colour) {
    QTextCharFormat format;
    format.setFontFamilies({LaidOutDocument::fontFamily()});
    format.setFontPointSize(size);
    format.setFontWeight(bold ? QFont::Bold : QFont::Normal);
    format.setFontHintingPreference(QFont::PreferNoHinting);
    format.setForeground(colourOf(colour));
    return format;
}

Qt::Alignment alignmentOf(DocumentTable::Align align) {
    switch (align) {
        case DocumentTable::Align::Centre:
            return Qt::AlignHCenter;
        case DocumentTable::Align::Right:
            return Qt::AlignRight;
        default:
            return Qt::AlignLeft;
    }
}

// Writes text at the cursor, each line break beginning a new block of the given format.
void insertLines(QTextCursor& cursor, const QString& text, const QTextBlockFormat& block,
                 const QTextCharFormat& format) {
    const QStringList lines = documentLines(text);
    cursor.insertText(lines.first(), format);
    for (qsizetype line = 1; line < lines.size(); ++line) {
        cursor.insertBlock(block, format);
        cursor.insertText(lines[line], format);
    }
}

QTextTableFormat tableFormat(const DocumentTable& table) {
    QList<QTextLength> widths;
    for (const DocumentTable::Column& column : table.columns) {
        widths.append(QTextLength(QTextLength::FixedLength, column.width / kTwipsPerFramePixel));
    }
    QTextTableFormat format;
    format.setColumnWidthConstraints(widths);
    format.setHeaderRowCount(static_cast<int>(table.header.size()));
    format.setBorder(kTableBorder);
    format.setBorderBrush(Qt::black);
    format.setBorderCollapse(true);
    format.setCellPadding(kCellPadding);
    format.setCellSpacing(0);
    format.setMargin(0);
    format.setAlignment(Qt::AlignLeft);
    return format;
}

void fillRow(QTextTable& grid, int row, const DocumentTable& table, const QStringList& cells,
             qint32 shade, const QTextCharFormat& format) {
    QTextTableCellFormat background;
    background.setBackground(colourOf(shade));
    for (int column = 0; column < cells.size(); ++column) {
        QTextTableCell cell = grid.cellAt(row, column);
        cell.setFormat(background);
        QTextCursor cursor = cell.firstCursorPosition();
        QTextBlockFormat block;
        block.setAlignment(alignmentOf(table.columns[column].align));
        cursor.setBlockFormat(block);
        insertLines(cursor, cells[column], block, format);
    }
}

}  // namespace

struct LaidOutDocument::Layout {
    Layout() : resolution(1, 1, QImage::Format_RGB32) {
        // The layout measures text for a device of 1440 dots to the inch, whatever the
        // screen, so one dot is one twip.
        const int dotsPerMeter = qRound(kResolution / 0.0254);
        resolution.setDotsPerMeterX(dotsPerMeter);
        resolution.setDotsPerMeterY(dotsPerMeter);
        text.documentLayout()->setPaintDevice(&resolution);
        text.setDocumentMargin(0);
        text.setUseDesignMetrics(true);
        QFont font(fontFamily());
        font.setPointSizeF(10);
        font.setHintingPreference(QFont::PreferNoHinting);
        text.setDefaultFont(font);
        cursor = QTextCursor(&text);
    }

    bool currentBlockEmpty() const { return cursor.block().length() <= 1; }

    QImage resolution;
    QTextDocument text;
    QTextCursor cursor;
};

QString LaidOutDocument::fontFamily() {
    return QStringLiteral("DejaVu Sans");
}

bool LaidOutDocument::canLayOut() {
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
}

LaidOutDocument::LaidOutDocument() = default;
LaidOutDocument::~LaidOutDocument() = default;

qint32 LaidOutDocument::PageCount() const {
    return layout_ ? layout_->text.pageCount() : 0;
}

QString LaidOutDocument::plainText() const {
    if (!layout_) return {};
    QString text = layout_->text.toPlainText();
    while (text.endsWith(u'\n')) text.chop(1);
    return text;
}

void LaidOutDocument::beginDocument(const PageSettings& settings) {
    documentSettings_ = settings;
    layout_.reset();
    if (!canLayOut()) return fail(docerr::NoLayout);
    layout_ = std::make_unique<Layout>();
    layout_->text.setPageSize(QSizeF(settings.textWidth(), settings.textHeight()));
}

void LaidOutDocument::finishDocument() {}

void LaidOutDocument::writeText(const QString& text, const Style& style) {
    if (!layout_) return;
    insertLines(layout_->cursor, text, QTextBlockFormat(),
                charFormat(style.bold, style.size, style.colour));
}

// A paragraph begins on a line of its own and ends its last line.
void LaidOutDocument::writeParagraph(const QString& text, const Style& style) {
    if (!layout_) return;
    const QTextCharFormat format = charFormat(style.bold, style.size, style.colour);
    if (!layout_->currentBlockEmpty()) layout_->cursor.insertBlock(QTextBlockFormat(), format);
    insertLines(layout_->cursor, text, QTextBlockFormat(), format);
    layout_->cursor.insertBlock(QTextBlockFormat(), format);
}

void LaidOutDocument::writeTable(const DocumentTable& table, const Style& style) {
    const int rows = static_cast<int>(table.header.size() + table.body.size());
    if (!layout_ || table.columns.isEmpty() || rows == 0) return;
    QTextCursor& cursor = layout_->cursor;
    if (!layout_->currentBlockEmpty()) cursor.insertBlock(QTextBlockFormat());
    QTextTableFormat format = tableFormat(table);
    // A page break asked for just before the table moves to the table itself.
    QTextBlockFormat block = cursor.blockFormat();
    if (block.pageBreakPolicy() & QTextFormat::PageBreak_AlwaysBefore) {
        format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
        block.setPageBreakPolicy(QTextFormat::PageBreak_Auto);
        cursor.setBlockFormat(block);
    }
    QTextTable* grid = cursor.insertTable(rows, static_cast<int>(table.columns.size()), format);
    const QTextCharFormat text = charFormat(style.bold, style.size, style.colour);
    int row = 0;
    for (const QStringList& cells : table.header) {
        fillRow(*grid, row++, table, cells, table.headerShade, text);
    }
    for (const QStringList& cells : table.body) {
        fillRow(*grid, row++, table, cells, table.bodyShade, text);
    }
    cursor.movePosition(QTextCursor::End);
}

void LaidOutDocument::writePageBreak() {
    if (!layout_) return;
    QTextBlockFormat block;
    block.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
    layout_->cursor.insertBlock(block);
}

int LaidOutDocument::print() {
    if (!Device().endsWith(QLatin1String(".pdf"), Qt::CaseInsensitive)) return docerr::NoPrinter;
    return writePdf(Device()) ? docerr::None : docerr::PrintFailed;
}

int LaidOutDocument::printerDialog(int /*mode*/, bool& accepted) {
    accepted = false;
    return docerr::NotSupported;
}

QSizeF LaidOutDocument::sheetSize(const SheetView& view) const {
    const int band = view.physicalPage ? 0 : kUnprintable;
    const double pageWidth = documentSettings_.paperWidth() - 2 * band;
    const double pageHeight = documentSettings_.paperHeight() - 2 * band;
    const int pages = std::max(1, view.pagesSideBySide);
    return {pages * pageWidth + (pages - 1) * kSheetGap, pageHeight};
}

void LaidOutDocument::paintSheet(QPainter& painter, qint32 page, const SheetView& view) const {
    const int pages = std::max(1, view.pagesSideBySide);
    const int band = view.physicalPage ? 0 : kUnprintable;
    const double pageWidth = documentSettings_.paperWidth() - 2 * band;
    for (int side = 0; side < pages && page + side <= PageCount(); ++side) {
        painter.save();
        painter.translate(side * (pageWidth + kSheetGap), 0);
        painter.setClipRect(QRectF(QPointF(0, 0), sheetSize({view.physicalPage, false, 1})));
        painter.translate(-band, -band);
        paintPage(painter, page + side, view);
        painter.restore();
    }
}

// Paints one page with the paper's top left corner at the origin.
void LaidOutDocument::paintPage(QPainter& painter, qint32 page, const SheetView& view) const {
    const PageSettings& settings = documentSettings_;
    const QRectF paper(0, 0, settings.paperWidth(), settings.paperHeight());
    painter.fillRect(paper, Qt::white);
    if (view.pagesSideBySide > 1) {
        painter.setPen(QPen(Qt::darkGray, 0));
        painter.drawRect(paper);
    }
    if (view.showGuides) {
        QPen guide(Qt::gray, 0, Qt::DotLine);
        painter.setPen(guide);
        const double left = settings.MarginLeft;
        const double top = settings.MarginTop;
        const double right = paper.width() - left;
        const double bottom = paper.height() - top;
        painter.drawLine(QPointF(left, 0), QPointF(left, paper.height()));
        painter.drawLine(QPointF(right, 0), QPointF(right, paper.height()));
        painter.drawLine(QPointF(0, top), QPointF(paper.width(), top));
        painter.drawLine(QPointF(0, bottom), QPointF(paper.width(), bottom));
    }
    if (!layout_) return;
    // The page's slice of the laid-out text, from the paper's left edge to its right edge:
    // a table wider than the text runs into the right margin and stops at the paper's edge.
    const double sliceTop = (page - 1) * static_cast<double>(settings.textHeight());
    const QRectF slice(-settings.MarginLeft, sliceTop, paper.width(), settings.textHeight());
    painter.save();
    painter.translate(settings.MarginLeft, settings.MarginTop - sliceTop);
    painter.setClipRect(slice, Qt::IntersectClip);
    QAbstractTextDocumentLayout::PaintContext context;
    context.clip = slice;
    context.palette.setColor(QPalette::Text, Qt::black);
    layout_->text.documentLayout()->draw(&painter, context);
    painter.restore();
}

bool LaidOutDocument::paintPages(QPagedPaintDevice& device) const {
    QPainter painter;
    if (PageCount() < 1 || !painter.begin(&device)) return false;
    const double scale = device.logicalDpiX() / static_cast<double>(kResolution);
    painter.scale(scale, scale);
    for (qint32 page = 1; page <= PageCount(); ++page) {
        if (page > 1 && !device.newPage()) return false;
        paintSheet(painter, page, {});
    }
    return painter.end();
}

bool LaidOutDocument::writePdf(const QString& path) const {
    if (PageCount() < 1) return false;
    QPdfWriter writer(path);
    writer.setResolution(kResolution);
    writer.setCreator(QStringLiteral("TVRX1"));
    const auto orientation =
        documentSettings_.Orientation == 2 ? QPageLayout::Landscape : QPageLayout::Portrait;
    writer.setPageLayout(
        QPageLayout(QPageSize(QPageSize::Letter), orientation, QMarginsF(0, 0, 0, 0)));
    return paintPages(writer);
}

QImage LaidOutDocument::pageImage(qint32 page, int dotsPerInch, const SheetView& view) const {
    if (page < 1 || page > PageCount() || dotsPerInch < 1) return {};
    const double scale = dotsPerInch / static_cast<double>(kResolution);
    const QSizeF sheet = sheetSize(view) * scale;
    QImage image(qCeil(sheet.width()), qCeil(sheet.height()), QImage::Format_RGB32);
    image.fill(Qt::lightGray);
    const int dotsPerMeter = qRound(dotsPerInch / 0.0254);
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.scale(scale, scale);
    paintSheet(painter, page, view);
    return image;
}

}  // namespace tvrx
