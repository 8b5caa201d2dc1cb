#include "reports/PageDocument.h"

#include <QRegularExpression>

#include <algorithm>

namespace tvrx {

namespace {

// US Letter in twips.
constexpr int kLetterWidth = 12240;
constexpr int kLetterHeight = 15840;
// A font below this size cannot be read; above the other it fills the page.
constexpr double kSmallestFont = 1;
constexpr double kLargestFont = 500;

}  // namespace

int PageSettings::paperWidth() const {
    return Orientation == 2 ? kLetterHeight : kLetterWidth;
}

int PageSettings::paperHeight() const {
    return Orientation == 2 ? kLetterWidth : kLetterHeight;
}

int PageSettings::textWidth() const {
    return std::max(0, paperWidth() - 2 * MarginLeft);
}

int PageSettings::textHeight() const {
    return std::max(0, paperHeight() - 2 * MarginTop);
}

QStringList documentLines(const QString& text) {
    static const QRegularExpression breaks(QStringLiteral("\r\n|\r|\n|\\\\n"));
    return text.split(breaks);
}

PageDocument::~PageDocument() = default;

// Margins beyond half the paper would leave no room for text; they stop there.
void PageDocument::setPageSettings(int orientation, int marginLeft, int marginTop) {
    settings_.Orientation = orientation == 2 ? 2 : 1;
    settings_.MarginLeft = std::clamp(marginLeft, 0, settings_.paperWidth() / 2 - 720);
    settings_.MarginTop = std::clamp(marginTop, 0, settings_.paperHeight() / 2 - 720);
}

void PageDocument::StartDoc() {
    started_ = true;
    drawing_ = true;
    pagesAnnounced_ = 0;
    previewPage_ = 1;
    error_ = docerr::None;
    beginDocument(settings_);
    announcePages();
}

void PageDocument::EndDoc() {
    beginIfNeeded();
    finishDocument();
    drawing_ = false;
    announcePages();
    if (events_) events_->vp_EndDoc();
}

void PageDocument::setFontSize(double points) {
    style_.size = std::clamp(points, kSmallestFont, kLargestFont);
}

void PageDocument::addText(const QString& text) {
    beginIfNeeded();
    writeText(text, style_);
    announcePages();
}

void PageDocument::addParagraph(const QString& text) {
    beginIfNeeded();
    writeParagraph(text, style_);
    announcePages();
}

void PageDocument::addTable(const QString& format, const QString& header, const QString& body,
                            qint32 headerShade, qint32 bodyShade) {
    beginIfNeeded();
    writeTable(DocumentTable::parse(format, header, body, headerShade, bodyShade), style_);
    announcePages();
}

void PageDocument::NewPage() {
    beginIfNeeded();
    writePageBreak();
    announcePages();
}

void PageDocument::setPreviewPage(qint32 page) {
    previewPage_ = std::clamp(page, 1, std::max<qint32>(1, PageCount()));
}

qint32 PageDocument::PagesPerView() const {
    switch (zoomMode_) {
        case ZoomModes::Thumbnail:
            return std::max<qint32>(1, PageCount());
        case ZoomModes::TwoPages:
            return 2;
        default:
            return 1;
    }
}

void PageDocument::setZoom(int percent) {
    zoom_ = std::clamp(percent, 10, 1000);
}

void PageDocument::setZoomMode(int mode) {
    zoomMode_ = static_cast<ZoomModes>(std::clamp(mode, 0, 5));
}

void PageDocument::viewMovedTo(qint32 page) {
    if (page == previewPage_) return;
    setPreviewPage(page);
    if (events_) events_->vp_PreviewPageChanged(page);
}

void PageDocument::PrintDoc() {
    const int number = print();
    if (number != docerr::None) return fail(number);
    error_ = docerr::None;
}

bool PageDocument::PrintDialog(int mode) {
    bool accepted = false;
    const int number = printerDialog(mode, accepted);
    if (number != docerr::None) {
        fail(number);
        return false;
    }
    error_ = docerr::None;
    return accepted;
}

void PageDocument::fail(int number) {
    error_ = number;
    if (events_) events_->vp_Error();
}

void PageDocument::beginIfNeeded() {
    if (!started_) StartDoc();
}

void PageDocument::announcePages() {
    const qint32 pages = PageCount();
    while (pagesAnnounced_ < pages) {
        ++pagesAnnounced_;
        if (events_) events_->vp_NewPage();
    }
}

}  // namespace tvrx
