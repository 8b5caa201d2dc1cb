#include "claims/Wrapper.h"
#include "prescription/PriceTable.h"
#include "prescription/clsPrescription.h"
#include "records/PropertyCases.h"
#include "session/data/SamplePharmacy.h"
#include "session/data/Schema.h"
#include "support/DataRows.h"
#include "support/ExpectedDialogs.h"

namespace tvrx {
namespace {

// The sample pharmacy, with its price tables in both sources, and a few more tables: 30
// with bands at 10, 50 and 100 only, 31 a key row without bands, 32 by quantity with a
// multiplier, 33 with its switches empty, 34 and 35 with bands without a break point.
class PricingTest : public test::NoStrayReports<test::SchemaFixture> {
protected:
    void SetUp() override {
        SchemaFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        clsPrescription().setConnection(db);
        ASSERT_TRUE(loadSamplePharmacy(*db).loaded);
        rows(*db, "PriceTable",
             "PriceTableID\tUseCost\tBreakOnQty\n30\t0\t0\n31\t0\t0\n32\t0\t1\n33\t\t\n34\t0\t0\n"
             "35\t0\t0\n");
        rows(
            *db, "PriceTableInfo",
            "PriceTableID\tBreakPoint\tMarkUpMultiplier\tMarkUpAddend\n30\t10\t2\t1\n30\t50\t3\t2\n"
            "30\t100\t4\t3\n32\t31\t2\t1\n32\t91\t3\t2\n33\t10\t1\t1\n33\t99999\t2\t2\n"
            "34\t\t1\t1\n34\t10\t2\t2\n35\t\t3\t1\n");
        alternate = connectSecond();
        applySchema(*alternate, priceSourceSchema());
        ASSERT_TRUE(loadPriceSourceSample(*alternate).loaded);
        rows(*alternate, "PriceTableKey", "PriceTableID\tAWP\tBreakOnQty\n31\t-1\t0\n32\t\t1\n");
        rows(*alternate, "PriceTable",
             "PriceTableID\tBreakPoint\tMarkUpMultiplier\tMarkUpAddend\n32\t31\t2\t1\n32\t91\t3\t2"
             "\n");
        wrapper.setAltConnection(alternate);
    }

    static void rows(DbConnection& connection, const char* table, const char* tabSeparated) {
        loadTabSeparated(connection, QString::fromLatin1(table), QString::fromUtf8(tabSeparated));
    }

    void useSource(const QString& source) { wrapper.setUseAltSource(source == "alt"); }

    Wrapper wrapper;
    std::shared_ptr<DbConnection> alternate;
};

qint32 whole(const QString& cell) {
    return cell.toInt();
}

double amount(const QString& cell) {
    return cell == "null" ? 0 : cell.toDouble();
}

TEST_P(PricingTest, BandsAtAndAroundEveryBreakPointOnBothSources) {
    for (const test::DataRow& row : test::dataRows("price-bands.tsv")) {
        SCOPED_TRACE(row.where);
        useSource(row.cells[0]);
        qint32 table = whole(row.cells[1]);
        double addend = -1;
        const double price = mdlMain::GetPrice(table, amount(row.cells[3]), amount(row.cells[4]),
                                               addend, whole(row.cells[2]), amount(row.cells[5]));
        EXPECT_DOUBLE_EQ(price, amount(row.cells[6]));
        EXPECT_DOUBLE_EQ(addend, amount(row.cells[7]));
        EXPECT_EQ(table, whole(row.cells[8]));
        EXPECT_EQ(takeReports().join(u';'), row.cells.value(10));
    }
}

// No table at all is a box and a report for support, in the reporter's own terms; a table
// without a key row or bands a box; a closed alternate source the same box, its closed
// results passed over.
TEST_P(PricingTest, WithoutATableOrItsBandsThePriceIs0) {
    const struct {
        const char* source;
        qint32 table;
        const char* dialog;
        QStringList reports;
    } cases[] = {
        {"main", 0, "noPriceTable", {"TVRX1.mdlMain.GetPrice 200"}},
        {"main", 31, "priceTableNotFound", {}},
        {"main", 99, "priceTableNotFound", {}},
        {"alt", 31, "priceTableNotFound", {}},
        {"alt", 33, "priceTableNotFound", {}},
    };
    user->answerMsgBox(Answer::OK);
    qint32 table = 0;
    double addend = 0;
    EXPECT_EQ(mdlMain::GetPrice(table, 10, 5, addend, 0, 30), 0);
    const ErrorReport report = reporter->reports().value(0);
    EXPECT_EQ(QStringList({report.description, report.number, report.source,
                           QString::number(report.line), report.location, report.details}),
              QStringList({"Error getting price table", "200", "Debug", "40",
                           "TVRX1.mdlMain.GetPrice", ""}));
    EXPECT_TRUE(report.flag1 && !report.flag2 && report.flag3 && report.flag4);
    reporter->clear();
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.source << ' ' << c.table);
        useSource(c.source);
        user->clear();
        user->answerMsgBox(Answer::OK);
        clsPrescription rx;
        rx.CurrentPT = c.table;
        EXPECT_EQ(rx.GetRetail(10, 5, 30), 0);
        EXPECT_EQ(test::asked(user->calls().value(0)), test::expectedDialog(c.dialog));
        EXPECT_EQ(takeReports(), c.reports);
    }
    alternate->Close();
    user->answerMsgBox(Answer::OK);
    clsPrescription rx;
    rx.CurrentPT = 20;
    EXPECT_EQ(rx.GetRetail(10, 5, 30), 0);
    EXPECT_EQ(takeReports(), QStringList({"mdlMain:GetPrice 3709", "mdlMain:GetPrice 3709"}));
}

QStringList numbers(const QString& cell) {
    return cell.split(u',');
}

QVariant nullable(const QString& cell) {
    return cell == "null" ? QVariant() : QVariant(cell);
}

TEST_P(PricingTest, EachRuleOfChoosingTheTables) {
    rows(*db, "PATINS", "PatInsID\tPatientID\tInsID\n80\t7\t90\n81\t7\t\n");
    for (const test::DataRow& row : test::dataRows("price-table-rules.tsv")) {
        SCOPED_TRACE(row.where);
        ASSERT_EQ(row.cells.size(), 12);
        db->Execute("DELETE FROM Options");
        if (row.cells[1] != "none") {
            const QStringList options = numbers(row.cells[1]);
            db->Execute("INSERT INTO Options (OptionsID, DefaultCA, DefaultINS) VALUES (1, ?, ?)",
                        {nullable(options[0]), nullable(options[1])});
        }
        db->Execute("DELETE FROM INSURANCE WHERE InsID = 90");
        if (row.cells[5] != "-") {
            QVariantList plan;
            for (const QString& value : numbers(row.cells[5])) plan << nullable(value);
            db->Execute(
                "INSERT INTO INSURANCE (InsID, BrandPT, GenericPT, CopayPS, GenCopayPS, "
                "Copay, GenericCopay) VALUES (90, ?, ?, ?, ?, ?, ?)",
                plan);
        }
        db->Execute("DELETE FROM DRUG WHERE DrugID = 50");
        if (row.cells[6] != "-") {
            const QStringList drug = numbers(row.cells[6]);
            db->Execute("INSERT INTO DRUG (DrugID, PriceTableID, Generic) VALUES (50, ?, ?)",
                        {drug[0].toInt(), drug[1].toInt()});
        }
        clsPrescription rx;
        rx.PatientPT = whole(row.cells[3]);
        rx.setPatientID(whole(row.cells[2]));
        rx.PatInsID = whole(row.cells[4]);
        rx.setDrugID(row.cells[6] == "-" ? 0 : 50);
        const QStringList before = numbers(row.cells[7]);
        rx.CurrentPT = whole(before[0]);
        rx.CopayPT = whole(before[1]);
        rx.Copay = amount(before[2]);
        const QStringList defaults = numbers(row.cells[8]);
        rx.SetPriceTables(whole(defaults[0]), whole(defaults[1]));
        const QStringList after{QString::number(rx.CurrentPT), QString::number(rx.CopayPT),
                                QString::number(rx.Copay), QString::number(rx.DrugPT),
                                QString::number(rx.PatientPT)};
        EXPECT_EQ(after, numbers(row.cells[9]));
        EXPECT_EQ(rx.GetCopay(10, 5, 30), amount(row.cells[10]));
        EXPECT_EQ(takeReports().join(u';'), row.cells[11] == "-" ? QString() : row.cells[11]);
    }
}

TVRX_BACKENDS(PricingTest);

}  // namespace
}  // namespace tvrx
