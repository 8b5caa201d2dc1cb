#include "support/ModalDriver.h"
#include "ui/FindRefillDialog.h"

#include "session/data/Catalogue.h"
#include "session/runtime/Session.h"

#include <QHeaderView>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include <functional>

namespace tvrx {
namespace {

using test::onNextModal;

// The fills of one number as the finder's record set holds them.
void holdFills() {
    const QDateTime filled(QDate(2026, 2, 10), QTime(10, 0));
    mdlMain::catalogue().rs(QStringLiteral("dbo_FindRxNumberAll")) = RecordSet::fromRows(
        {"RXInfoID", "Number", "RefillNumber", "Date", "Qty", "QtyRemain", "Voided", "Cost",
         "Price", "Copay", "DS", "Patient"},
        {{41, 500, 0, filled, 30, 60, 0, 4.5, 12.25, 5, "30", "BRENNAN, THOMAS"},
         {42, 500, 1, filled.addDays(28), 30, 30, -1, 4.5, 12.25, -3, "30", "BRENNAN, THOMAS"},
         {43, 500, 2, QVariant(), 30, 0, QVariant(), 4.5, 12.25, 5, "30", "BRENNAN, THOMAS"}});
}

struct GestureCase {
    const char* name;
    std::function<void(FindRefillDialog*)> user;
    qint32 chosen;
};

class FindRefillDialogTest : public ::testing::Test {
protected:
    void SetUp() override {
        mdlMain::resetSession();
        holdFills();
    }
    void TearDown() override { mdlMain::resetSession(); }
};

TEST_F(FindRefillDialogTest, EachGestureChoosesOrCancels) {
    const GestureCase cases[] = {
        {"OK on the row selected",
         [](FindRefillDialog* d) {
             d->list()->selectRow(1);
             QTest::mouseClick(d->okButton(), Qt::LeftButton);
         },
         42},
        {"a double click on a row",
         [](FindRefillDialog* d) {
             const QModelIndex cell = d->list()->model()->index(2, 0);
             d->list()->doubleClicked(cell);
         },
         43},
        {"Cancel",
         [](FindRefillDialog* d) { QTest::mouseClick(d->cancelButton(), Qt::LeftButton); }, 0},
        {"F2", [](FindRefillDialog* d) { QTest::keyClick(d, Qt::Key_F2); }, 0},
        {"Escape", [](FindRefillDialog* d) { QTest::keyClick(d, Qt::Key_Escape); }, 0},
        {"the window's close button", [](FindRefillDialog* d) { d->close(); }, 0},
    };
    for (const GestureCase& c : cases) {
        SCOPED_TRACE(c.name);
        mdlMain::FindRefillRxInfoID = 99;  // left by an earlier finder
        onNextModal<FindRefillDialog>(c.user);
        frmFindRefill form;
        QtFindRefillFace face;
        form.Show(face);
        EXPECT_EQ(mdlMain::FindRefillRxInfoID, c.chosen);
        EXPECT_FALSE(form.visible());
    }
}

TEST_F(FindRefillDialogTest, ShowsTheCaptionTheButtonsAndTheFormattedRows) {
    QStringList seen;
    onNextModal<FindRefillDialog>([&](FindRefillDialog* d) {
        seen << d->windowTitle() << d->okButton()->text() << d->cancelButton()->text()
             << d->redoButton()->text();
        const QAbstractItemModel* model = d->list()->model();
        for (int column = 0; column < model->columnCount(); ++column)
            seen << model->headerData(column, Qt::Horizontal).toString();
        for (int column = 0; column < model->columnCount(); ++column)
            seen << model->index(1, column).data().toString();
        seen << QString::number(d->list()->selectionModel()->selectedRows().value(0).row());
        d->reject();
    });
    frmFindRefill form;
    QtFindRefillFace face;
    form.Show(face);
    EXPECT_EQ(seen.join(u'|'),
              QStringLiteral("RX 500 FOR BRENNAN, THOMAS|&Ok|&Cancel|&Find another number|"
                             "RXInfoID|Number|Refill|Date|Quantity|Qty Left|Voided|Cost|Price|"
                             "Copay|DS|42|500|1|3/10/2026|30|30|Yes|$4.50|$12.25|($3.00)|30|0"));
}

}  // namespace
}  // namespace tvrx
