#pragma once

#include "reports/PageDocument.h"

#include <QImage>
#include <QSizeF>

#include <memory>

class QPainter;
class QPagedPaintDevice;

namespace tvrx {

// How a view draws a sheet: which pages go on it and what it adds around them.
struct SheetView {
    // The whole sheet of paper; without it only the area a printer reaches (the sheet
    // less a quarter inch all round).
    bool physicalPage = true;
    // The margins as dotted lines. Views only: never printed.
    bool showGuides = false;
    // 2 for two pages side by side.
    int pagesSideBySide = 1;
};

// A document laid out by Qt's text engine at a fixed resolution of 1440 dots to the inch,
// so that one dot is one twip, in DejaVu Sans: its pages break in the same places on
// every machine, whatever the screen. It writes PDF files and page images and paints its
// pages on any paged device (the desktop library's printer and preview).
//
// Laying out text needs a QGuiApplication. Without one the document lays out nothing and
// reports docerr::NoLayout when a document begins, instead of stopping the process.
// PrintDoc prints to a PDF file when the device is a path ending in ".pdf"; any other
// device is docerr::NoPrinter here (the desktop library's document reaches printers).
class LaidOutDocument : public PageDocument {
public:
    static constexpr int kResolution = 1440;
    // The band a printer cannot reach, in twips.
    static constexpr int kUnprintable = 360;
    // The space between pages shown side by side, in twips.
    static constexpr int kSheetGap = 360;
    static QString fontFamily();
    // Whether this process can lay out text.
    static bool canLayOut();

    LaidOutDocument();
    ~LaidOutDocument() override;

    qint32 PageCount() const override;
    QString plainText() const override;

    // The settings the latest document began with.
    const PageSettings& documentSettings() const { return documentSettings_; }
    // A sheet's size in twips.
    QSizeF sheetSize(const SheetView& view) const;
    // Paints the sheet that begins with page (1-based) on a painter whose unit is the twip,
    // with the origin at the sheet's top left corner.
    void paintSheet(QPainter& painter, qint32 page, const SheetView& view) const;
    // Paints every page, one per sheet of the device, scaled to the device's resolution.
    // False when the device cannot be painted on.
    bool paintPages(QPagedPaintDevice& device) const;
    // False when nothing is laid out or the file cannot be written.
    bool writePdf(const QString& path) const;
    // A null image for a page that does not exist.
    QImage pageImage(qint32 page, int dotsPerInch, const SheetView& view = {}) const;

protected:
    void beginDocument(const PageSettings& settings) override;
    void finishDocument() override;
    void writeText(const QString& text, const Style& style) override;
    void writeParagraph(const QString& text, const Style& style) override;
    void writeTable(const DocumentTable& table, const Style& style) override;
    void writePageBreak() override;
    int print() override;
    int printerDialog(int mode, bool& accepted) override;

private:
    struct Layout;

    void paintPage(QPainter& painter, qint32 page, const SheetView& view) const;

    std::unique_ptr<Layout> layout_;
    PageSettings documentSettings_;
};

}  // namespace tvrx
