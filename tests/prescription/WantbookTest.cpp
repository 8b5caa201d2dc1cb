#include "prescription/PrescriptionFixture.h"
#include "prescription/Wantbook.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "support/DataRows.h"
#include "support/ExpectedDialogs.h"

#include <thread>

namespace tvrx {
namespace {

TEST(WantbookOrder, PackagesAtEveryRoundingAndSignBoundary) {
    for (const test::DataRow& row : test::dataRows("wantbook-order.tsv")) {
        SCOPED_TRACE(row.where);
        QString got;
        try {
            got = QString::number(wantbook::packagesToOrder(
                row.cells[0].toDouble(), row.cells[1].toDouble(), row.cells[2].toDouble()));
        } catch (const Failure& failure) {
            got = QStringLiteral("fails %1").arg(failure.number());
        }
        EXPECT_EQ(got, row.cells[3]);
    }
}

class WantbookTest : public test::PrescriptionFixture {
protected:
    // Drug 8 with the stock, reorder point, par and package size of the cells.
    void drug(const QStringList& cells) {
        db->Execute("DELETE FROM DRUG WHERE DrugID = 8");
        QVariantList values{8};
        for (const QString& cell : cells.mid(0, 4))
            values << (cell == "null" ? QVariant() : QVariant(cell.toDouble()));
        db->Execute(
            "INSERT INTO DRUG (DrugID, Stock, MinReorderQty, ParQty, PackageSize) "
            "VALUES (?, ?, ?, ?, ?)",
            values);
    }

    static QString text(const QVariant& value) {
        return value.isNull() ? QStringLiteral("null") : QString::number(value.toDouble());
    }
};

TEST_P(WantbookTest, StockMovesAndTheDrugKeepsOneWantLine) {
    for (const test::DataRow& row : test::dataRows("wantbook-moves.tsv")) {
        SCOPED_TRACE(row.where);
        const QStringList& cells = row.cells;
        drug(cells);
        db->Execute("DELETE FROM WANTBOOK");
        if (cells[4] != "-")
            db->Execute("INSERT INTO WANTBOOK (DrugID, OrderQty) VALUES (8, ?)",
                        {cells[4].toInt()});
        clsPrescription rx;
        rx.setDrugID(8);
        rx.AdjustWantbook(cells[5].toDouble(), cells[6].toDouble());
        EXPECT_EQ(text(db->Scalar("SELECT Stock FROM DRUG WHERE DrugID = 8")), cells[7]);
        RecordSet lines = db->OpenRecordSet("SELECT OrderQty, Date FROM WANTBOOK");
        EXPECT_EQ(lines.Eof() ? QStringLiteral("-") : lines.Fields(0).toString(), cells[8]);
        if (!lines.Eof()) {
            // A line written by the movement is dated today; one left alone keeps no date.
            const QDateTime written = clock->now().date().startOfDay();
            EXPECT_EQ(lines.Fields(1).toDateTime(), cells[4] == cells[8] ? QDateTime() : written);
            lines.MoveNext();
            EXPECT_TRUE(lines.Eof()) << "more than one line";
        }
        EXPECT_EQ(takeReports().join(u';'), cells.value(9));
    }
}

// A link that has gone is told to the user in a box for each statement it fails, never
// reported; the steps after it carry on (and fail on the closed link, reported as such).
TEST_P(WantbookTest, ALostLinkShowsTheTimedOutBox) {
    drug({"100", "20", "120", "30"});
    user->setPermissive(true);
    clsPrescription rx;
    rx.setDrugID(8);
    db->failNextStatement(err::LostLink);
    rx.AdjustWantbook(-10);
    ASSERT_FALSE(user->calls().isEmpty());
    for (const auto& call : user->calls())
        EXPECT_EQ(test::asked(call), test::expectedDialog("connectionTimedOut"));
    for (const QString& report : takeReports())
        EXPECT_FALSE(report.endsWith(QString::number(err::LostLink))) << report.toStdString();
}

TEST_P(WantbookTest, ASecondLineForADrugIsRefused) {
    db->Execute("INSERT INTO WANTBOOK (DrugID, OrderQty) VALUES (8, 1)");
    EXPECT_EQ(caught([&] {
                  db->Execute("INSERT INTO WANTBOOK (DrugID, OrderQty) VALUES (8, 2)");
              }).number,
              err::ConstraintViolated);
}

// Two workstations, each with its own connection, selling the same drug at the same time:
// every sale comes off the stock.
TEST_P(WantbookTest, TwoWorkstationsSellingAtOnceLoseNoMovement) {
    constexpr int kEach = 40;
    drug({"1000", "1", "1200", "10"});
    const QString database = connectionString();
    const auto workstation = [database](QStringList* reports) {
        auto recorder = std::make_shared<RecordingErrorReporter>();
        mdlMain::ErrorReporter = recorder;
        auto connection = std::make_shared<DbConnection>(database);
        connection->Open();
        clsPrescription rx;
        rx.setConnection(connection);
        rx.setDrugID(8);
        for (int i = 0; i < kEach; ++i) rx.AdjustWantbook(-1);
        *reports = recorder->locations();
        mdlMain::resetSession();
    };
    QStringList reports[2];
    std::thread first(workstation, &reports[0]);
    std::thread second(workstation, &reports[1]);
    first.join();
    second.join();
    EXPECT_EQ(reports[0] + reports[1], QStringList());
    EXPECT_EQ(db->Scalar("SELECT Stock FROM DRUG WHERE DrugID = 8").toDouble(), 1000 - 2 * kEach);
}

TVRX_BACKENDS(WantbookTest);

}  // namespace
}  // namespace tvrx
