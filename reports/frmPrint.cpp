#include "reports/frmPrint.h"

#include "reports/ConsolePreviewFace.h"
#include "reports/RecordingDocument.h"
#include "session/runtime/AppConfig.h"
#include "session/runtime/Session.h"
#include "session/runtime/UserInteraction.h"
#include "session/text/Conversions.h"

#include <QCoreApplication>

#include <algorithm>

namespace tvrx {

frmPrint::frmPrint(Kind kind) : frmPrint(createDocument(), kind) {}

frmPrint::frmPrint(std::shared_ptr<PageDocument> document, Kind kind)
    : kind_(kind), document_(std::move(document)) {
    if (!document_) document_ = std::make_shared<RecordingDocument>();
    setControls();
    document_->setEvents(this);
}

frmPrint::~frmPrint() {
    document_->setEvents(nullptr);
}

// The controls as the form is designed: the lists show the document's zoom and zoom mode.
void frmPrint::setControls() {
    const bool eligibility = kind_ == Kind::Eligibility;
    cmdClose = {eligibility ? QStringLiteral("&Close") : QStringLiteral("&Continue"), {}};
    cmdPrint = {QStringLiteral("&Print"), {}};
    cmdPrinterSetup = {QStringLiteral("Printer Setup"), {}};
    cmdPageSetup = {QStringLiteral("Page Setup"), {}};
    cmdFirst = {QStringLiteral("<<"), QStringLiteral("First Page")};
    cmdPrevious = {QStringLiteral("<"), QStringLiteral("Previous Page")};
    cmdNext = {QStringLiteral(">"), QStringLiteral("Next Page")};
    cmdLast = {QStringLiteral(">>"), QStringLiteral("Last Page")};
    cmdGoToPage = {QStringLiteral("Go to..."), QStringLiteral("Go to Page")};
    chkPhysicalPage = {QStringLiteral("Physical Page"), document_->PhysicalPage() ? 1 : 0};
    chkShowGuides = {QStringLiteral("Show Guides"), document_->ShowGuides() ? 1 : 0};
    cmbPercent.List = {QStringLiteral("25%"),  QStringLiteral("50%"),  QStringLiteral("75%"),
                       QStringLiteral("100%"), QStringLiteral("150%"), QStringLiteral("200%"),
                       QStringLiteral("400%")};
    cmbPercent.ListIndex =
        static_cast<int>(cmbPercent.List.indexOf(QString::number(document_->Zoom()) + u'%'));
    cmbZoomMode.List = {QStringLiteral("Percentage"), QStringLiteral("Thumbnail"),
                        QStringLiteral("TwoPages"),   QStringLiteral("WholePage"),
                        QStringLiteral("PageWidth"),  QStringLiteral("Stretch")};
    cmbZoomMode.ListIndex = static_cast<int>(document_->ZoomMode());
    cmbPercent.Enabled = cmbZoomMode.ListIndex == 0;
    lblPage.Caption = QStringLiteral("1 of 1");
}

void frmPrint::Show(PreviewFace& face) {
    Form_Load();
    face_ = &face;
    visible_ = true;
    face.showModal(*this);
    visible_ = false;
    face_ = nullptr;
}

void frmPrint::Show() {
    Show(previewFace());
}

void frmPrint::Form_Load() {
    Caption = kind_ == Kind::Eligibility ? QStringLiteral("Eligibility Report") : appConfig().Title;
}

void frmPrint::UpdateScroller() {
    scrlPage.Max = document_->PageCount();
    setScrollValue(document_->PreviewPage());
    scrlPage_Change();
}

void frmPrint::setScrollValue(qint32 value) {
    if (value == scrlPage.Value) return;
    scrlPage.Value = value;
    scrlPage_Change();
}

void frmPrint::scrlPage_Change() {
    const qint32 perView = document_->PagesPerView();
    scrlPage.SmallChange = perView;
    scrlPage.LargeChange = perView;
    document_->setPreviewPage(scrlPage.Value);
    const qint32 first = document_->PreviewPage();
    const qint32 count = document_->PageCount();
    const qint32 last = std::min(first + perView - 1, count);
    lblPage.Caption = last > first ? QStringLiteral("%1 - %2 of %3").arg(first).arg(last).arg(count)
                                   : QStringLiteral("%1 of %2").arg(first).arg(count);
    if (face_) face_->refresh(*this);
}

void frmPrint::cmdFirst_Click() {
    document_->setPreviewPage(1);
    setScrollValue(1);
}

void frmPrint::cmdPrevious_Click() {
    if (document_->PreviewPage() == 1) return;
    document_->setPreviewPage(document_->PreviewPage() - 1);
    setScrollValue(document_->PreviewPage());
}

void frmPrint::cmdNext_Click() {
    if (document_->PreviewPage() == document_->PageCount()) return;
    document_->setPreviewPage(document_->PreviewPage() + 1);
    setScrollValue(document_->PreviewPage());
}

void frmPrint::cmdLast_Click() {
    document_->setPreviewPage(document_->PageCount());
    setScrollValue(document_->PageCount());
}

// The answer's numeric value, if it names a page of the document; anything else is
// ignored. The question has no title of its own.
void frmPrint::cmdGoToPage_Click() {
    const QString answer = mdlMain::user().InputBox(QStringLiteral("Go to Page"), QString(),
                                                    QString::number(document_->PreviewPage()));
    double page = 0;
    try {
        page = conv::Val(answer);
    } catch (...) {
        return;
    }
    if (page < 1 || page > document_->PageCount()) return;
    const qint32 whole = conv::LongFromDouble(page);
    document_->setPreviewPage(whole);
    setScrollValue(whole);
}

// Turns the view over whatever the box shows.
void frmPrint::chkPhysicalPage_Click() {
    document_->setPhysicalPage(!document_->PhysicalPage());
    if (face_) face_->refresh(*this);
}

void frmPrint::chkShowGuides_Click() {
    document_->setShowGuides(chkShowGuides.Value != 0);
    if (face_) face_->refresh(*this);
}

// "75%" is 75: the conversion stops at the "%".
void frmPrint::cmbPercent_Click() {
    document_->setZoom(static_cast<int>(conv::Val(cmbPercent.Text())));
    if (face_) face_->refresh(*this);
}

void frmPrint::cmbZoomMode_Click() {
    if (cmbZoomMode.ListIndex == 0) {
        cmbPercent_Click();
        cmbPercent.Enabled = true;
    } else {
        cmbPercent.Enabled = false;
    }
    document_->setZoomMode(cmbZoomMode.ListIndex);
    if (face_) face_->refresh(*this);
}

// The printer is whatever the document has; nothing is said.
void frmPrint::cmdPrint_Click() {
    if (document_->PageCount() >= 1) document_->PrintDoc();
}

void frmPrint::cmdPrinterSetup_Click() {
    document_->PrintDialog(kPrinterSetupDialog);
}

// The button is there; it does nothing.
void frmPrint::cmdPageSetup_Click() {}

void frmPrint::cmdClose_Click() {
    if (face_) face_->close(*this);
}

// The pages can be browsed while the document grows.
void frmPrint::vp_NewPage() {
    UpdateScroller();
    if (QCoreApplication::instance()) QCoreApplication::processEvents();
}

void frmPrint::vp_EndDoc() {
    UpdateScroller();
}

void frmPrint::vp_Error() {
    mdlMain::user().MsgBox(QStringLiteral("The Printer control raised the Error event with the ") +
                               QString::number(document_->Error()) + QStringLiteral(" code."),
                           Buttons::OKOnly, Icon::None, 1, appConfig().ProductName);
}

void frmPrint::vp_PreviewPageChanged(qint32 page) {
    if (page > 0) setScrollValue(page);
}

void frmPrint::vp_MouseDown(int value, bool& toggle) {
    if (value > 0) toggle = !toggle;
}

PreviewFace& previewFace() {
    if (!mdlMain::PreviewService) mdlMain::PreviewService = std::make_shared<ConsolePreviewFace>();
    return *mdlMain::PreviewService;
}

void setPreviewFace(std::shared_ptr<PreviewFace> face) {
    mdlMain::PreviewService = std::move(face);
}

std::shared_ptr<PageDocument> createDocument() {
    return mdlMain::Documents.make<RecordingDocument>();
}

}  // namespace tvrx
