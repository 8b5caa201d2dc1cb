#pragma once

#include "reports/DocumentTable.h"

#include <QString>
#include <QtGlobal>

namespace tvrx {

// The zoom modes of a preview, numbered as the zoom list of the preview form lists them.
enum class ZoomModes {
    Percentage = 0,
    Thumbnail = 1,
    TwoPages = 2,
    WholePage = 3,
    PageWidth = 4,
    Stretch = 5,
};

// Error numbers a document gives through Error() and its error event.
namespace docerr {
inline constexpr int None = 0;
// No printer is installed, or the device names none and there is no default printer.
inline constexpr int NoPrinter = 1;
// The printer or the output file could not be opened or refused the pages.
inline constexpr int PrintFailed = 2;
// The process has no application object that can lay out text (no QGuiApplication).
inline constexpr int NoLayout = 3;
// This kind of document cannot print or has no printer dialog.
inline constexpr int NotSupported = 4;
}  // namespace docerr

// The printer dialog's modes: 3 opens it to choose and set up the printer.
inline constexpr int kPrinterSetupDialog = 3;

// What a document tells the form that previews it.
class DocumentEvents {
public:
    virtual ~DocumentEvents() = default;
    // A page was begun while the document grows.
    virtual void vp_NewPage() = 0;
    // The document is complete.
    virtual void vp_EndDoc() = 0;
    // Printing or a printer dialog failed; Error() holds the number.
    virtual void vp_Error() = 0;
    // The view moved to another page by itself (a click or a scroll in the view).
    virtual void vp_PreviewPageChanged(qint32 page) = 0;
};

// Where a document's pages sit on a sheet of paper, in twips (1440 to the inch). US Letter
// unless a host's document says otherwise; the right and bottom margins are the left and
// top ones, so the text sits in the middle of the paper.
struct PageSettings {
    int Orientation = 1;  // 1 portrait, 2 landscape
    int MarginLeft = 1440;
    int MarginTop = 1440;

    int paperWidth() const;
    int paperHeight() const;
    int textWidth() const;
    int textHeight() const;
};

// A page document: drawn through text, paragraphs and tables with a font state that lasts
// until changed, then shown page by page, zoomed and printed. The drawing keeps what
// every implementation shares (the font state, the page settings, the view's state, the
// error number and the events); how pages are laid out and printed is the
// implementation's.
//
//     doc.StartDoc();
//     doc.setFontBold(true); doc.setFontSize(14); doc.setTextColor(255);
//     doc.addText("HEADING\n");
//     doc.EndDoc();
//
// A line feed, a carriage return with or without a line feed, and the two characters
// "\n" break the line. Colours are 24-bit with red in the low byte and blue in the high
// one (255 red, 16711680 blue). No call fails: a document that cannot do what it is asked
// says so through Error() and the error event.
class PageDocument {
public:
    virtual ~PageDocument();

    // ---- Drawing -------------------------------------------------------------------

    // The printer the document goes to; empty for the default printer.
    const QString& Device() const { return device_; }
    void setDevice(const QString& device) { device_ = device; }
    const PageSettings& pageSettings() const { return settings_; }
    // Orientation (1 portrait, 2 landscape), left and top margin in twips. Takes effect
    // with the next document.
    void setPageSettings(int orientation, int marginLeft, int marginTop);

    // Begins a new, empty document (the first page); drawing without it begins one too.
    void StartDoc();
    void EndDoc();
    // Between StartDoc and EndDoc.
    bool drawing() const { return drawing_; }

    bool FontBold() const { return style_.bold; }
    void setFontBold(bool bold) { style_.bold = bold; }
    double FontSize() const { return style_.size; }
    void setFontSize(double points);
    qint32 TextColor() const { return style_.colour; }
    void setTextColor(qint32 colour) { style_.colour = colour & 0xFFFFFF; }

    // Appends to the current paragraph.
    void addText(const QString& text);
    // Writes the text as a paragraph of its own.
    void addParagraph(const QString& text);
    // A table in the format of DocumentTable.h; shades are colours as above.
    void addTable(const QString& format, const QString& header, const QString& body,
                  qint32 headerShade, qint32 bodyShade);
    // Ends the page; what follows starts the next.
    void NewPage();

    // ---- Pages and view --------------------------------------------------------------

    // 0 before a document was begun.
    virtual qint32 PageCount() const = 0;
    // The first page in view, 1 to PageCount.
    qint32 PreviewPage() const { return previewPage_; }
    void setPreviewPage(qint32 page);
    // How many pages a view shows: all of them as thumbnails, two side by side, else one.
    qint32 PagesPerView() const;
    // The zoom in percent, used in the Percentage mode.
    int Zoom() const { return zoom_; }
    void setZoom(int percent);
    ZoomModes ZoomMode() const { return zoomMode_; }
    void setZoomMode(int mode);
    // Whether the view shows the whole sheet, beyond the area a printer can reach.
    bool PhysicalPage() const { return physicalPage_; }
    void setPhysicalPage(bool on) { physicalPage_ = on; }
    // Whether the view draws the margins (never printed).
    bool ShowGuides() const { return showGuides_; }
    void setShowGuides(bool on) { showGuides_ = on; }

    // The view moved to a page by itself; the listener hears of it.
    void viewMovedTo(qint32 page);

    // ---- Printer -------------------------------------------------------------------

    // Prints every page on Device().
    void PrintDoc();
    // Opens the printer dialog in a mode (kPrinterSetupDialog); true when accepted.
    bool PrintDialog(int mode);
    // The number of the latest failure (docerr), 0 after a success.
    int Error() const { return error_; }

    // The document's text, a line per line of text, a table row per line with its cells
    // joined by " | ".
    virtual QString plainText() const = 0;

    // The one listener of the events (the preview form); null for none.
    void setEvents(DocumentEvents* events) { events_ = events; }

protected:
    // The font state a piece of text is drawn in.
    struct Style {
        bool bold = false;
        double size = 10;
        qint32 colour = 0;
    };

    PageDocument() = default;

    // Forgets the content: a new document begins with these settings.
    virtual void beginDocument(const PageSettings& settings) = 0;
    virtual void finishDocument() = 0;
    virtual void writeText(const QString& text, const Style& style) = 0;
    virtual void writeParagraph(const QString& text, const Style& style) = 0;
    virtual void writeTable(const DocumentTable& table, const Style& style) = 0;
    virtual void writePageBreak() = 0;
    // Both return a docerr number.
    virtual int print() = 0;
    virtual int printerDialog(int mode, bool& accepted) = 0;

    // Records a failure and raises the error event.
    void fail(int number);

private:
    void beginIfNeeded();
    // Raises the new-page event for each page begun since it was last raised.
    void announcePages();

    QString device_;
    PageSettings settings_;
    Style style_;
    bool started_ = false;
    bool drawing_ = false;
    qint32 pagesAnnounced_ = 0;
    qint32 previewPage_ = 1;
    int zoom_ = 100;
    ZoomModes zoomMode_ = ZoomModes::WholePage;
    bool physicalPage_ = true;
    bool showGuides_ = false;
    int error_ = docerr::None;
    DocumentEvents* events_ = nullptr;
};

// The line breaks of a text: a line feed, a carriage return with or without a line feed,
// and the two characters "\n". Gives the lines between them; a text that ends with a
// break ends with an empty line.
QStringList documentLines(const QString& text);

}  // namespace tvrx
