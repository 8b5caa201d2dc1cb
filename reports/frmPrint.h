#pragma once

#include "reports/PageDocument.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace tvrx {

class PreviewFace;

// The report preview: a document's pages with paging buttons, a page scroll bar and its
// label ("4 - 5 of 5"), the zoom lists, the two view switches, Print and Printer Setup.
// The eligibility form has the very same preview half; it differs in its caption and
// its close button.
//
// The form holds the state of its controls and runs their handlers over the document,
// which it listens to; a face (PreviewFace) draws them and routes the user's clicks to
// the handlers: a desktop window, a PDF file on a console, or a test's script. A report
// draws its document through vp(), then shows the form.
class frmPrint : public DocumentEvents {
public:
    enum class Kind { Print, Eligibility };

    struct Button {
        QString Caption;
        QString ToolTipText;
    };
    struct CheckBox {
        QString Caption;
        int Value = 0;  // 0 clear, 1 checked
    };
    struct ComboBox {
        QStringList List;
        int ListIndex = -1;
        bool Enabled = true;
        QString Text() const { return List.value(ListIndex); }
    };
    struct ScrollBar {
        qint32 Min = 1;
        qint32 Max = 1;
        qint32 Value = 1;
        qint32 SmallChange = 1;
        qint32 LargeChange = 1;
    };
    struct Label {
        QString Caption;
    };

    // A form over a new document of the session's kind.
    explicit frmPrint(Kind kind = Kind::Print);
    frmPrint(std::shared_ptr<PageDocument> document, Kind kind = Kind::Print);
    ~frmPrint() override;
    frmPrint(const frmPrint&) = delete;
    frmPrint& operator=(const frmPrint&) = delete;

    Kind kind() const { return kind_; }
    QString Caption;

    Button cmdClose;
    Button cmdPrint;
    Button cmdPrinterSetup;
    Button cmdPageSetup;
    Button cmdFirst;
    Button cmdPrevious;
    Button cmdNext;
    Button cmdLast;
    Button cmdGoToPage;
    CheckBox chkPhysicalPage;
    CheckBox chkShowGuides;
    ComboBox cmbPercent;
    ComboBox cmbZoomMode;
    ScrollBar scrlPage;
    Label lblPage;

    // The document surface.
    PageDocument& vp() { return *document_; }
    const PageDocument& vp() const { return *document_; }
    std::shared_ptr<PageDocument> document() const { return document_; }

    // Loads the form and shows it modally through the face; returns once it is closed.
    void Show(PreviewFace& face);
    // Shows it through the session's face.
    void Show();
    bool visible() const { return visible_; }

    void Form_Load();
    void UpdateScroller();
    // Sets the scroll bar's value; a new value runs the change handler.
    void setScrollValue(qint32 value);
    void scrlPage_Change();
    void cmdFirst_Click();
    void cmdPrevious_Click();
    void cmdNext_Click();
    void cmdLast_Click();
    void cmdGoToPage_Click();
    void chkPhysicalPage_Click();
    void chkShowGuides_Click();
    void cmbPercent_Click();
    void cmbZoomMode_Click();
    void cmdPrint_Click();
    void cmdPrinterSetup_Click();
    void cmdPageSetup_Click();
    void cmdClose_Click();

    // A command button a form adds beside the document (the eligibility form's). The faces
    // show each one, enabled or not, and a click runs sideButton_Click with its name.
    struct SideButton {
        QString Name;
        QString Caption;
        bool Enabled = false;
    };
    virtual QList<SideButton> sideButtons() const { return {}; }
    virtual void sideButton_Click(const QString& /*name*/) {}

    // The document's events.
    void vp_NewPage() override;
    void vp_EndDoc() override;
    void vp_Error() override;
    void vp_PreviewPageChanged(qint32 page) override;
    // A mouse press on the document: a value above 0 turns the event's switch over.
    void vp_MouseDown(int value, bool& toggle);

private:
    void setControls();

    Kind kind_;
    std::shared_ptr<PageDocument> document_;
    PreviewFace* face_ = nullptr;
    bool visible_ = false;
};

// How the preview is shown. The face routes the user's clicks to the form's handlers,
// draws the form again after each, and returns from showModal once the form is closed.
class PreviewFace {
public:
    virtual ~PreviewFace() = default;
    virtual void showModal(frmPrint& form) = 0;
    // The controls or the document's view changed.
    virtual void refresh(frmPrint& form) = 0;
    // The form was closed (cmdClose): showModal returns.
    virtual void close(frmPrint& form) = 0;
};

// The face previews are shown on: the console's (a PDF file per report) unless a host
// set another.
PreviewFace& previewFace();
void setPreviewFace(std::shared_ptr<PreviewFace> face);

// A new, empty document of the kind the session's factory (mdlMain::Documents) makes; a
// recording document when no host installed a factory.
std::shared_ptr<PageDocument> createDocument();

}  // namespace tvrx
