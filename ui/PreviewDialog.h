#pragma once

#include "reports/LaidOutDocument.h"
#include "reports/frmPrint.h"

#include <QDialog>
#include <QPointer>

#include <memory>

class QCheckBox;
class QComboBox;
class QLabel;
class QLayout;
class QPrintPreviewWidget;
class QPrinter;
class QPushButton;
class QScrollBar;

namespace tvrx {

// The report preview on the desktop: the form's controls over Qt's print preview, laid
// out by Qt's layouts. Every control runs its handler on the form and the dialog then
// shows the form's state again. The zoom modes map onto the preview as follows:
//
//     Percentage   one page at a time, zoomed by the percent list
//     Thumbnail    all pages
//     TwoPages     two pages side by side, from the page shown, fitted in view
//     WholePage    one page fitted in view (as Stretch)
//     PageWidth    one page fitted to the width
//
// The two-page view is drawn as one sheet holding the page shown and the next, so that it
// always begins at the page shown (Qt's own facing view would pair pages as a book does).
class PreviewDialog : public QDialog {
    Q_OBJECT

public:
    explicit PreviewDialog(frmPrint& form, QWidget* parent = nullptr);
    ~PreviewDialog() override;

    // Shows the form's controls and the document's view.
    void showState();

    QPrintPreviewWidget* preview() const { return preview_; }
    QPushButton* closeButton() const { return close_; }
    QPushButton* printButton() const { return print_; }
    QPushButton* printerSetupButton() const { return printerSetup_; }
    QPushButton* pageSetupButton() const { return pageSetup_; }
    QPushButton* firstButton() const { return first_; }
    QPushButton* previousButton() const { return previous_; }
    QPushButton* nextButton() const { return next_; }
    QPushButton* lastButton() const { return last_; }
    QPushButton* goToButton() const { return goTo_; }
    QCheckBox* physicalPageBox() const { return physicalPage_; }
    QCheckBox* showGuidesBox() const { return showGuides_; }
    QComboBox* percentList() const { return percent_; }
    QComboBox* zoomModeList() const { return zoomMode_; }
    QScrollBar* pageScroller() const { return scroller_; }
    QLabel* pageLabel() const { return pageLabel_; }
    // A button the form adds beside the document, by its name; null when there is none.
    QPushButton* sideButton(const QString& name) const;

private:
    QPushButton* button(const frmPrint::Button& control, void (frmPrint::*handler)());
    void buildLayout();
    QLayout* sideButtonColumn();
    void run(void (frmPrint::*handler)());
    void paintSheets(QPrinter* printer);
    void showView();
    SheetView sheetView() const;
    void viewMoved();

    frmPrint& form_;
    std::unique_ptr<QPrinter> sheets_;
    QPrintPreviewWidget* preview_ = nullptr;
    QPushButton* close_ = nullptr;
    QPushButton* print_ = nullptr;
    QPushButton* printerSetup_ = nullptr;
    QPushButton* pageSetup_ = nullptr;
    QPushButton* first_ = nullptr;
    QPushButton* previous_ = nullptr;
    QPushButton* next_ = nullptr;
    QPushButton* last_ = nullptr;
    QPushButton* goTo_ = nullptr;
    QCheckBox* physicalPage_ = nullptr;
    QCheckBox* showGuides_ = nullptr;
    QComboBox* percent_ = nullptr;
    QComboBox* zoomMode_ = nullptr;
    QScrollBar* scroller_ = nullptr;
    QLabel* pageLabel_ = nullptr;
    QList<QPushButton*> sideButtons_;
    // What the preview was last drawn for; a change draws it again.
    QString drawnFor_;
    bool showing_ = false;
};

// The preview as a modal dialog over the host's window.
class QtPreviewFace : public PreviewFace {
public:
    explicit QtPreviewFace(QWidget* parent = nullptr) : parent_(parent) {}

    void showModal(frmPrint& form) override;
    void refresh(frmPrint& form) override;
    void close(frmPrint& form) override;

private:
    QPointer<QWidget> parent_;
    QPointer<PreviewDialog> dialog_;
};

// A desktop host's documents: laid out, printed on the desktop's printers, previewed in
// a dialog over the window.
void installDesktopDocuments(QWidget* window);

}  // namespace tvrx
