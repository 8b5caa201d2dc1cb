#include "reports/frmPrint.h"

#include "reports/RecordingDocument.h"
#include "reports/ScriptedPreviewFace.h"
#include "session/runtime/AppConfig.h"
#include "support/DataRows.h"
#include "support/SessionFixture.h"

#include <QMap>

#include <functional>

namespace tvrx {
namespace {

using Kind = ScriptedUserInteraction::Kind;

class frmPrintTest : public test::SessionFixture {
protected:
    // A form over a document of so many pages, drawn while the form listens.
    std::unique_ptr<frmPrint> formOf(int pages, frmPrint::Kind kind = frmPrint::Kind::Print) {
        doc = std::make_shared<RecordingDocument>();
        auto form = std::make_unique<frmPrint>(doc, kind);
        doc->StartDoc();
        for (int page = 2; page <= pages; ++page) doc->NewPage();
        doc->EndDoc();
        return form;
    }

    std::shared_ptr<RecordingDocument> doc;
};

void runHandler(frmPrint& form, const QString& handler) {
    const QString name = handler.section(u' ', 0, 0);
    const QString argument = handler.section(u' ', 1);
    static const QMap<QString, std::function<void(frmPrint&, const QString&)>> handlers{
        {QStringLiteral(""), [](frmPrint&, const QString&) {}},
        {QStringLiteral("First"), [](frmPrint& f, const QString&) { f.cmdFirst_Click(); }},
        {QStringLiteral("Previous"), [](frmPrint& f, const QString&) { f.cmdPrevious_Click(); }},
        {QStringLiteral("Next"), [](frmPrint& f, const QString&) { f.cmdNext_Click(); }},
        {QStringLiteral("Last"), [](frmPrint& f, const QString&) { f.cmdLast_Click(); }},
        {QStringLiteral("GoTo"), [](frmPrint& f, const QString&) { f.cmdGoToPage_Click(); }},
        {QStringLiteral("Scroll"),
         [](frmPrint& f, const QString& value) { f.setScrollValue(value.toInt()); }},
        {QStringLiteral("Moved"),
         [](frmPrint& f, const QString& page) { f.vp_PreviewPageChanged(page.toInt()); }},
    };
    ASSERT_TRUE(handlers.contains(name)) << name.toStdString();
    handlers.value(name)(form, argument);
}

TEST_F(frmPrintTest, PagingHandlersMoveThePageTheScrollBarAndTheLabel) {
    for (const test::DataRow& row : test::dataRows(QStringLiteral("preview-paging.tsv"))) {
        const QStringList& cell = row.cells;
        auto form = formOf(cell[0].toInt());
        form->cmbZoomMode.ListIndex = cell[1].toInt();
        form->cmbZoomMode_Click();
        form->vp().setPreviewPage(cell[2].toInt());
        form->UpdateScroller();
        if (cell[3].startsWith(QLatin1String("GoTo"))) user->answerInputBox(cell[3].mid(5));
        runHandler(*form, cell[3]);
        EXPECT_EQ(form->vp().PreviewPage(), cell[4].toInt()) << row.where;
        EXPECT_EQ(form->lblPage.Caption, cell[5]) << row.where;
        EXPECT_EQ(form->scrlPage.Value, cell[6].toInt()) << row.where;
        EXPECT_EQ(form->scrlPage.SmallChange, cell[7].toInt()) << row.where;
        EXPECT_EQ(form->scrlPage.LargeChange, cell[7].toInt()) << row.where;
        EXPECT_EQ(form->scrlPage.Max, cell[0].toInt()) << row.where;
    }
}

// The question has no title, and offers the page shown.
TEST_F(frmPrintTest, GoToPageAsksWithoutATitle) {
    auto form = formOf(5);
    form->vp().setPreviewPage(3);
    user->answerInputBox(QString());
    form->cmdGoToPage_Click();
    const auto asked = user->callsOf(Kind::InputBox);
    ASSERT_EQ(asked.size(), 1);
    EXPECT_EQ(asked[0].args, QStringList({"Go to Page", "", "3"}));
}

// The label follows the pages while the document grows, before the form is shown.
TEST_F(frmPrintTest, EachNewPageUpdatesTheScrollerWhileTheDocumentGrows) {
    auto form = formOf(1);
    EXPECT_EQ(form->lblPage.Caption, QStringLiteral("1 of 1"));
    form->vp().NewPage();
    EXPECT_EQ(form->lblPage.Caption, QStringLiteral("1 of 2"));
    EXPECT_EQ(form->scrlPage.Max, 2);
    form->vp().NewPage();
    form->vp().EndDoc();
    EXPECT_EQ(form->lblPage.Caption, QStringLiteral("1 of 3"));
}

TEST_F(frmPrintTest, ZoomModesOtherThanPercentageDisableThePercentList) {
    auto form = formOf(3);
    EXPECT_EQ(form->cmbZoomMode.Text(), QStringLiteral("WholePage"));
    EXPECT_EQ(form->cmbPercent.Text(), QStringLiteral("100%"));
    EXPECT_FALSE(form->cmbPercent.Enabled);
    form->cmbPercent.ListIndex = 2;  // 75%, chosen while the list is disabled
    for (int mode = 1; mode <= 5; ++mode) {
        form->cmbZoomMode.ListIndex = mode;
        form->cmbZoomMode_Click();
        EXPECT_FALSE(form->cmbPercent.Enabled) << mode;
        EXPECT_EQ(static_cast<int>(form->vp().ZoomMode()), mode);
        EXPECT_EQ(form->vp().Zoom(), 100) << "the percent list applies only in Percentage";
    }
    form->cmbZoomMode.ListIndex = 0;
    form->cmbZoomMode_Click();
    EXPECT_TRUE(form->cmbPercent.Enabled);
    EXPECT_EQ(form->vp().ZoomMode(), ZoomModes::Percentage);
    EXPECT_EQ(form->vp().Zoom(), 75);
    form->cmbPercent.ListIndex = 6;
    form->cmbPercent_Click();
    EXPECT_EQ(form->vp().Zoom(), 400);
}

// Physical Page turns the view over whatever the box shows; Show Guides follows the box.
TEST_F(frmPrintTest, TheTwoViewSwitches) {
    auto form = formOf(1);
    form->chkPhysicalPage.Value = 1;
    for (const bool physical : {false, true, false}) {
        form->chkPhysicalPage_Click();
        EXPECT_EQ(form->vp().PhysicalPage(), physical);
        form->chkShowGuides.Value = physical ? 0 : 1;
        form->chkShowGuides_Click();
        EXPECT_EQ(form->vp().ShowGuides(), !physical);
    }
}

// Print only with a page; Printer Setup opens the dialog in its setup mode; Page Setup does
// nothing; a failure of the document shows its number in a box without an icon.
TEST_F(frmPrintTest, PrintingThePrinterDialogsAndTheErrorBox) {
    auto empty = std::make_shared<RecordingDocument>();
    frmPrint blank(empty);
    blank.cmdPrint_Click();
    EXPECT_TRUE(empty->operations().isEmpty()) << "an empty document is not printed";

    auto form = formOf(2);
    form->cmdPrint_Click();
    EXPECT_EQ(doc->prints(), 1);
    form->cmdPrinterSetup_Click();
    EXPECT_EQ(doc->operations().last().text(), QStringLiteral("PrintDialog 3"));
    const auto before = doc->operations().size();
    form->cmdPageSetup_Click();
    EXPECT_EQ(doc->operations().size(), before);

    doc->failNextPrint(docerr::NoPrinter);
    user->answerMsgBox(Answer::OK);
    form->cmdPrint_Click();
    const auto boxes = user->callsOf(Kind::MsgBox);
    ASSERT_EQ(boxes.size(), 1);
    EXPECT_EQ(boxes[0].text(),
              QStringLiteral("The Printer control raised the Error event with the 1 code."));
    EXPECT_EQ(boxes[0].args.mid(1),
              QStringList({"0", iconName(Icon::None), "1", appConfig().ProductName}));
}

// The two forms differ in caption and close button; the face shows the form until Close.
TEST_F(frmPrintTest, TheReportAndTheEligibilityFormShowThroughTheFace) {
    ScriptedPreviewFace face;
    face.onShow([](frmPrint& shown) {
        EXPECT_TRUE(shown.visible());
        shown.cmdNext_Click();
        shown.cmdClose_Click();
    });
    auto report = formOf(2);
    report->Show(face);
    EXPECT_FALSE(report->visible());
    auto eligibility = formOf(1, frmPrint::Kind::Eligibility);
    eligibility->Show(face);
    ASSERT_EQ(face.shown().size(), 2);
    EXPECT_EQ(face.shown()[0].caption, appConfig().Title);
    EXPECT_EQ(face.shown()[0].pageLabel, QStringLiteral("2 of 2"));
    EXPECT_EQ(report->cmdClose.Caption, QStringLiteral("&Continue"));
    EXPECT_EQ(face.shown()[1].caption, QStringLiteral("Eligibility Report"));
    EXPECT_EQ(eligibility->cmdClose.Caption, QStringLiteral("&Close"));
    EXPECT_GT(face.refreshes(), 0);

    bool toggle = false;
    report->vp_MouseDown(0, toggle);
    EXPECT_FALSE(toggle);
    report->vp_MouseDown(1, toggle);
    EXPECT_TRUE(toggle);
}

}  // namespace
}  // namespace tvrx
