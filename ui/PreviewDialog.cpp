#include "ui/PreviewDialog.h"

#include "session/runtime/Session.h"
#include "ui/QtPrintedDocument.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace tvrx {

namespace {

bool twoPages(const PageDocument& document) {
    return document.ZoomMode() == ZoomModes::TwoPages;
}

void showCheck(QCheckBox* box, const frmPrint::CheckBox& control) {
    const QSignalBlocker blocker(box);
    box->setText(control.Caption);
    box->setChecked(control.Value != 0);
}

void showList(QComboBox* list, const frmPrint::ComboBox& control) {
    const QSignalBlocker blocker(list);
    if (list->count() != control.List.size()) {
        list->clear();
        list->addItems(control.List);
    }
    list->setCurrentIndex(control.ListIndex);
    list->setEnabled(control.Enabled);
}

}  // namespace

PreviewDialog::PreviewDialog(frmPrint& form, QWidget* parent)
    : QDialog(parent), form_(form), sheets_(std::make_unique<QPrinter>(QPrinter::HighResolution)) {
    sheets_->setFullPage(true);
    preview_ = new QPrintPreviewWidget(sheets_.get(), this);
    connect(preview_, &QPrintPreviewWidget::paintRequested, this, &PreviewDialog::paintSheets);
    connect(preview_, &QPrintPreviewWidget::previewChanged, this, &PreviewDialog::viewMoved);
    buildLayout();
    resize(900, 720);
}

PreviewDialog::~PreviewDialog() = default;

QPushButton* PreviewDialog::button(const frmPrint::Button& control, void (frmPrint::*handler)()) {
    auto* pressed = new QPushButton(control.Caption, this);
    pressed->setToolTip(control.ToolTipText);
    pressed->setAutoDefault(false);
    connect(pressed, &QPushButton::clicked, this, [this, handler] { run(handler); });
    return pressed;
}

void PreviewDialog::buildLayout() {
    first_ = button(form_.cmdFirst, &frmPrint::cmdFirst_Click);
    previous_ = button(form_.cmdPrevious, &frmPrint::cmdPrevious_Click);
    next_ = button(form_.cmdNext, &frmPrint::cmdNext_Click);
    last_ = button(form_.cmdLast, &frmPrint::cmdLast_Click);
    goTo_ = button(form_.cmdGoToPage, &frmPrint::cmdGoToPage_Click);
    print_ = button(form_.cmdPrint, &frmPrint::cmdPrint_Click);
    printerSetup_ = button(form_.cmdPrinterSetup, &frmPrint::cmdPrinterSetup_Click);
    pageSetup_ = button(form_.cmdPageSetup, &frmPrint::cmdPageSetup_Click);
    close_ = button(form_.cmdClose, &frmPrint::cmdClose_Click);

    scroller_ = new QScrollBar(Qt::Horizontal, this);
    scroller_->setMinimumWidth(160);
    connect(scroller_, &QScrollBar::valueChanged, this, [this](int value) {
        form_.setScrollValue(value);
        showState();
    });
    pageLabel_ = new QLabel(this);
    pageLabel_->setMinimumWidth(90);

    physicalPage_ = new QCheckBox(this);
    connect(physicalPage_, &QCheckBox::clicked, this, [this](bool checked) {
        form_.chkPhysicalPage.Value = checked ? 1 : 0;
        run(&frmPrint::chkPhysicalPage_Click);
    });
    showGuides_ = new QCheckBox(this);
    connect(showGuides_, &QCheckBox::clicked, this, [this](bool checked) {
        form_.chkShowGuides.Value = checked ? 1 : 0;
        run(&frmPrint::chkShowGuides_Click);
    });
    percent_ = new QComboBox(this);
    connect(percent_, &QComboBox::activated, this, [this](int index) {
        form_.cmbPercent.ListIndex = index;
        run(&frmPrint::cmbPercent_Click);
    });
    zoomMode_ = new QComboBox(this);
    connect(zoomMode_, &QComboBox::activated, this, [this](int index) {
        form_.cmbZoomMode.ListIndex = index;
        run(&frmPrint::cmbZoomMode_Click);
    });

    auto* paging = new QHBoxLayout;
    for (QWidget* control : {static_cast<QWidget*>(first_), static_cast<QWidget*>(previous_)}) {
        paging->addWidget(control);
    }
    paging->addWidget(scroller_, 1);
    for (QWidget* control : {static_cast<QWidget*>(next_), static_cast<QWidget*>(last_),
                             static_cast<QWidget*>(pageLabel_), static_cast<QWidget*>(goTo_)}) {
        paging->addWidget(control);
    }
    auto* view = new QHBoxLayout;
    for (QWidget* control :
         {static_cast<QWidget*>(zoomMode_), static_cast<QWidget*>(percent_),
          static_cast<QWidget*>(physicalPage_), static_cast<QWidget*>(showGuides_)}) {
        view->addWidget(control);
    }
    view->addStretch(1);
    for (QPushButton* control : {print_, printerSetup_, pageSetup_, close_}) {
        view->addWidget(control);
    }
    auto* document = new QHBoxLayout;
    if (QLayout* side = sideButtonColumn()) document->addLayout(side);
    document->addWidget(preview_, 1);
    auto* whole = new QVBoxLayout(this);
    whole->addLayout(paging);
    whole->addLayout(view);
    whole->addLayout(document, 1);
}

// The buttons a form adds beside the document, to the left of it, top to bottom; none for
// a plain preview.
QLayout* PreviewDialog::sideButtonColumn() {
    const QList<frmPrint::SideButton> buttons = form_.sideButtons();
    if (buttons.isEmpty()) return nullptr;
    auto* column = new QVBoxLayout;
    for (const frmPrint::SideButton& control : buttons) {
        auto* pressed = new QPushButton(control.Caption, this);
        pressed->setObjectName(control.Name);
        pressed->setAutoDefault(false);
        connect(pressed, &QPushButton::clicked, this, [this, name = control.Name] {
            form_.sideButton_Click(name);
            showState();
        });
        sideButtons_.append(pressed);
        column->addWidget(pressed);
    }
    column->addStretch(1);
    return column;
}

QPushButton* PreviewDialog::sideButton(const QString& name) const {
    for (QPushButton* pressed : sideButtons_)
        if (pressed->objectName() == name) return pressed;
    return nullptr;
}

void PreviewDialog::run(void (frmPrint::*handler)()) {
    (form_.*handler)();
    showState();
}

void PreviewDialog::showState() {
    if (showing_) return;
    showing_ = true;
    setWindowTitle(form_.Caption);
    showCheck(physicalPage_, form_.chkPhysicalPage);
    showCheck(showGuides_, form_.chkShowGuides);
    showList(percent_, form_.cmbPercent);
    showList(zoomMode_, form_.cmbZoomMode);
    {
        const QSignalBlocker blocker(scroller_);
        scroller_->setRange(form_.scrlPage.Min, std::max(form_.scrlPage.Min, form_.scrlPage.Max));
        scroller_->setValue(form_.scrlPage.Value);
        scroller_->setSingleStep(form_.scrlPage.SmallChange);
        scroller_->setPageStep(form_.scrlPage.LargeChange);
    }
    pageLabel_->setText(form_.lblPage.Caption);
    for (const frmPrint::SideButton& control : form_.sideButtons()) {
        if (QPushButton* pressed = sideButton(control.Name)) pressed->setEnabled(control.Enabled);
    }
    showView();
    showing_ = false;
}

SheetView PreviewDialog::sheetView() const {
    const PageDocument& document = form_.vp();
    return {document.PhysicalPage(), document.ShowGuides(), twoPages(document) ? 2 : 1};
}

// Draws the sheets again when what they show has changed, then sets the view's mode.
void PreviewDialog::showView() {
    const PageDocument& document = form_.vp();
    const SheetView view = sheetView();
    const QString drawing = QStringLiteral("%1 %2 %3 %4 %5")
                                .arg(view.physicalPage)
                                .arg(view.showGuides)
                                .arg(view.pagesSideBySide)
                                .arg(twoPages(document) ? document.PreviewPage() : 0)
                                .arg(document.PageCount());
    if (drawing != drawnFor_) {
        drawnFor_ = drawing;
        const auto* laidOut = dynamic_cast<const LaidOutDocument*>(&document);
        const QSizeF twips = laidOut ? laidOut->sheetSize(view) : QSizeF(12240, 15840);
        sheets_->setPageLayout(
            QPageLayout(QPageSize(twips / 20.0, QPageSize::Point, QString(), QPageSize::ExactMatch),
                        QPageLayout::Portrait, QMarginsF(0, 0, 0, 0)));
        preview_->updatePreview();
    }
    switch (document.ZoomMode()) {
        case ZoomModes::Percentage:
            preview_->setViewMode(QPrintPreviewWidget::SinglePageView);
            preview_->setZoomMode(QPrintPreviewWidget::CustomZoom);
            preview_->setZoomFactor(document.Zoom() / 100.0);
            break;
        case ZoomModes::Thumbnail:
            preview_->setViewMode(QPrintPreviewWidget::AllPagesView);
            preview_->setZoomMode(QPrintPreviewWidget::FitInView);
            break;
        case ZoomModes::PageWidth:
            preview_->setViewMode(QPrintPreviewWidget::SinglePageView);
            preview_->setZoomMode(QPrintPreviewWidget::FitToWidth);
            break;
        default:  // TwoPages (one sheet), WholePage, Stretch
            preview_->setViewMode(QPrintPreviewWidget::SinglePageView);
            preview_->setZoomMode(QPrintPreviewWidget::FitInView);
            break;
    }
    if (!twoPages(document) && preview_->currentPage() != document.PreviewPage()) {
        preview_->setCurrentPage(document.PreviewPage());
    }
}

void PreviewDialog::paintSheets(QPrinter* printer) {
    QPainter painter;
    const auto* laidOut = dynamic_cast<const LaidOutDocument*>(&form_.vp());
    if (!painter.begin(printer) || !laidOut) return;
    const double scale = printer->resolution() / static_cast<double>(LaidOutDocument::kResolution);
    painter.scale(scale, scale);
    const SheetView view = sheetView();
    if (view.pagesSideBySide > 1) {
        laidOut->paintSheet(painter, laidOut->PreviewPage(), view);
        return;
    }
    for (qint32 page = 1; page <= laidOut->PageCount(); ++page) {
        if (page > 1) printer->newPage();
        laidOut->paintSheet(painter, page, view);
    }
}

// The user scrolled the view to another page.
void PreviewDialog::viewMoved() {
    if (showing_ || twoPages(form_.vp())) return;
    const int page = preview_->currentPage();
    if (page < 1 || page == form_.vp().PreviewPage()) return;
    form_.vp().viewMovedTo(page);
    showState();
}

void QtPreviewFace::showModal(frmPrint& form) {
    PreviewDialog dialog(form, parent_.data());
    dialog_ = &dialog;
    dialog.showState();
    dialog.exec();
    dialog_ = nullptr;
}

void QtPreviewFace::refresh(frmPrint& /*form*/) {
    if (dialog_) dialog_->showState();
}

void QtPreviewFace::close(frmPrint& /*form*/) {
    if (dialog_) dialog_->accept();
}

void installDesktopDocuments(QWidget* window) {
    mdlMain::Documents.set([] { return std::make_shared<QtPrintedDocument>(); });
    setPreviewFace(std::make_shared<QtPreviewFace>(window));
}

}  // namespace tvrx
