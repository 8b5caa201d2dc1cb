#include "support/DataRows.h"
#include "support/ModalDriver.h"
#include "ui/PreviewDialog.h"
#include "ui/QtPrintedDocument.h"

#include "session/runtime/ScriptedUserInteraction.h"
#include "session/runtime/Session.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QGraphicsView>
#include <QLabel>
#include <QMap>
#include <QPrintPreviewWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>

namespace tvrx {
namespace {

class PreviewDialogTest : public ::testing::Test {
protected:
    void SetUp() override {
        mdlMain::resetSession();
        user = std::make_shared<ScriptedUserInteraction>();
        user->setUnexpectedCallHandler(
            [](const QString& call) { ADD_FAILURE() << qPrintable(call); });
        mdlMain::UserService = user;
        doc = std::make_shared<QtPrintedDocument>();
        form = std::make_unique<frmPrint>(doc);
        doc->StartDoc();
        doc->setFontSize(24);
        for (int page = 1; page <= 5; ++page) {
            if (page > 1) doc->NewPage();
            doc->addParagraph(QStringLiteral("Page %1").arg(page));
        }
        doc->EndDoc();
        form->Form_Load();
    }
    void TearDown() override { mdlMain::resetSession(); }

    std::shared_ptr<ScriptedUserInteraction> user;
    std::shared_ptr<QtPrintedDocument> doc;
    std::unique_ptr<frmPrint> form;
};

QString viewName(const QPrintPreviewWidget& preview) {
    static const QMap<int, QString> views{{QPrintPreviewWidget::AllPagesView, "all pages"},
                                          {QPrintPreviewWidget::SinglePageView, "single"}};
    static const QMap<int, QString> zooms{{QPrintPreviewWidget::CustomZoom, "custom"},
                                          {QPrintPreviewWidget::FitToWidth, "fit to width"},
                                          {QPrintPreviewWidget::FitInView, "fit in view"}};
    return views.value(preview.viewMode()) + u'/' + zooms.value(preview.zoomMode());
}

void choose(QComboBox* list, int index) {
    list->setCurrentIndex(index);
    emit list->activated(index);
}

TEST_F(PreviewDialogTest, EachZoomModeShowsItsViewOfThePages) {
    PreviewDialog dialog(*form);
    dialog.showState();
    dialog.show();
    QTest::mouseClick(dialog.nextButton(), Qt::LeftButton);
    EXPECT_EQ(dialog.preview()->currentPage(), 2);
    for (const test::DataRow& row : test::dataRows(QStringLiteral("preview-zoom-modes.tsv"))) {
        choose(dialog.zoomModeList(), row.cells[0].toInt());
        // A new zoom mode leaves the label as it was until the scroller is updated.
        form->UpdateScroller();
        dialog.showState();
        QApplication::processEvents();
        EXPECT_EQ(viewName(*dialog.preview()), row.cells[1] + u'/' + row.cells[2]) << row.where;
        EXPECT_EQ(dialog.preview()->pageCount(), row.cells[3].toInt()) << row.where;
        EXPECT_EQ(dialog.pageLabel()->text(), row.cells[4]) << row.where;
        EXPECT_EQ(dialog.percentList()->isEnabled(), row.cells[5] == u"yes") << row.where;
    }
    choose(dialog.zoomModeList(), 0);
    choose(dialog.percentList(), 1);
    EXPECT_DOUBLE_EQ(dialog.preview()->zoomFactor(), 0.5);
}

// The view's own scrolling reaches the form; the paging buttons reach the view.
TEST_F(PreviewDialogTest, PagingAndTheViewFollowEachOther) {
    PreviewDialog dialog(*form);
    dialog.showState();
    dialog.show();
    QTest::mouseClick(dialog.lastButton(), Qt::LeftButton);
    EXPECT_EQ(dialog.preview()->currentPage(), 5);
    EXPECT_EQ(dialog.pageLabel()->text(), QStringLiteral("5 of 5"));
    QTest::mouseClick(dialog.previousButton(), Qt::LeftButton);
    EXPECT_EQ(dialog.preview()->currentPage(), 4);
    QTest::mouseClick(dialog.firstButton(), Qt::LeftButton);
    auto* scrolled = dialog.preview()->findChild<QGraphicsView*>();
    ASSERT_NE(scrolled, nullptr);
    scrolled->verticalScrollBar()->setValue(scrolled->verticalScrollBar()->maximum());
    QApplication::processEvents();
    EXPECT_EQ(doc->PreviewPage(), 5);
    EXPECT_EQ(dialog.pageLabel()->text(), QStringLiteral("5 of 5"));
    user->answerInputBox(QStringLiteral("3"));
    QTest::mouseClick(dialog.goToButton(), Qt::LeftButton);
    EXPECT_EQ(dialog.preview()->currentPage(), 3);
    QTest::mouseClick(dialog.physicalPageBox(), Qt::LeftButton);
    EXPECT_FALSE(doc->PhysicalPage());
    QTest::mouseClick(dialog.showGuidesBox(), Qt::LeftButton);
    EXPECT_TRUE(doc->ShowGuides());
}

// Print goes to the device: a PDF path writes the file; a printer that is not there shows
// the error box.
TEST_F(PreviewDialogTest, PrintWritesToTheDeviceOrShowsThePrinterError) {
    QTemporaryDir folder;
    const QString pdf = folder.filePath(QStringLiteral("printed.pdf"));
    doc->setDevice(pdf);
    PreviewDialog dialog(*form);
    dialog.showState();
    QTest::mouseClick(dialog.printButton(), Qt::LeftButton);
    EXPECT_TRUE(QFile::exists(pdf));
    EXPECT_EQ(doc->Error(), docerr::None);

    doc->setDevice(QStringLiteral("No Such Printer"));
    user->answerMsgBox(Answer::OK);
    QTest::mouseClick(dialog.printButton(), Qt::LeftButton);
    ASSERT_EQ(user->calls().size(), 1);
    EXPECT_EQ(user->calls()[0].text(),
              QStringLiteral("The Printer control raised the Error event with the 1 code."));
}

TEST_F(PreviewDialogTest, TheFaceShowsTheFormUntilContinueIsPressed) {
    QtPreviewFace face;
    test::onNextModal<PreviewDialog>([](PreviewDialog* shown) {
        EXPECT_EQ(shown->windowTitle(), QStringLiteral("TV Prescription Processing DLL"));
        EXPECT_EQ(shown->closeButton()->text(), QStringLiteral("&Continue"));
        EXPECT_EQ(shown->firstButton()->toolTip(), QStringLiteral("First Page"));
        QTest::mouseClick(shown->nextButton(), Qt::LeftButton);
        QTest::mouseClick(shown->closeButton(), Qt::LeftButton);
    });
    form->Show(face);
    EXPECT_EQ(form->lblPage.Caption, QStringLiteral("2 of 5"));
    EXPECT_FALSE(form->visible());
}

// A form with two buttons beside its document: the first, once pressed, turns itself off
// and the second on.
class TwoButtonForm : public frmPrint {
public:
    using frmPrint::frmPrint;
    QList<SideButton> sideButtons() const override {
        return {{QStringLiteral("cmdOne"), QStringLiteral("&One"), !pressed},
                {QStringLiteral("cmdTwo"), QStringLiteral("&Two"), pressed}};
    }
    void sideButton_Click(const QString& name) override { pressed = pressed || name == "cmdOne"; }
    bool pressed = false;
};

TEST_F(PreviewDialogTest, ButtonsBesideTheDocumentFollowTheForm) {
    PreviewDialog plain(*form);
    EXPECT_EQ(plain.sideButton(QStringLiteral("cmdOne")), nullptr);

    TwoButtonForm twoButtons(doc);
    PreviewDialog dialog(twoButtons);
    dialog.showState();
    QPushButton* one = dialog.sideButton(QStringLiteral("cmdOne"));
    QPushButton* two = dialog.sideButton(QStringLiteral("cmdTwo"));
    ASSERT_TRUE(one && two);
    EXPECT_EQ(one->text(), "&One");
    EXPECT_TRUE(one->isEnabled());
    EXPECT_FALSE(two->isEnabled());
    QTest::mouseClick(one, Qt::LeftButton);
    EXPECT_TRUE(twoButtons.pressed);
    EXPECT_FALSE(one->isEnabled());
    EXPECT_TRUE(two->isEnabled());
}

}  // namespace
}  // namespace tvrx
