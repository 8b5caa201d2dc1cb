#include "records/PropertyCases.h"
#include "records/clsDrug.h"
#include "session/ErrorNumbers.h"
#include "session/Procedures.h"
#include "session/Session.h"
#include "support/SchemaFixture.h"

namespace tvrx {
namespace {

using test::at;
using Case = test::PropertyCase<clsDrug>;
#define P(property, written, stored, read) TVRX_PROPERTY(clsDrug, property, written, stored, read)

class clsDrugTest : public test::SchemaFixture {
protected:
    void SetUp() override {
        SchemaFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        clsDrug connecting;
        connecting.setConnection(db);
        id = Procedures::newKey(*db, QStringLiteral("NewDrug"));
    }
    clsDrug loaded() const {
        clsDrug drug;
        drug.DrugID = id;
        drug.GetData();
        return drug;
    }
    // The drug's own times (no patient) as rows of "Times|DateChanged".
    QStringList drugTimes() const {
        QStringList rows;
        RecordSet rs = db->OpenRecordSet(
            "SELECT Times, DateChanged FROM DrugTimes WHERE DrugID = ? AND PatientID IS NULL "
            "ORDER BY DrugTimesID",
            {id});
        for (; !rs.Eof(); rs.MoveNext())
            rows.append(rs.Fields(0).toString() + '|' +
                        rs.Fields(1).toDateTime().toString(Qt::ISODate));
        return rows;
    }
    qint32 id = 0;
};

// Texts come back trimmed; the three price dates are cut to six characters; an exact
// package size goes to dPkgSize and its rounding to PackageSize; an expiration before
// 1900 becomes the zero date; numbers travel as their fifteen-digit text.
TEST_P(clsDrugTest, EveryPropertyIsStoredAndReadBackInItsOwnForm) {
    const std::vector<Case> cases{
        P(Name, "  Amoxicillin  ", "  Amoxicillin  ", "Amoxicillin"),
        P(Dosage, "500 mg ", "500 mg ", "500 mg"),
        TVRX_PROPERTY(clsDrug, PackageSize, 2.5, 2, 2.5),
        Case{"dPkgSize", {}, 2.5, {}, {}},
        P(NDC, "00093-4155-73 ", "00093-4155-73 ", "00093-4155-73"),
        P(Schedule, " 2", " 2", "2"),
        P(AWP, 12.3456789, 12.3456789, 12.3456789),
        P(AWPUpdate, 1, 1, 1),
        P(Cost, 0.1 + 0.2, 0.3, 0.3),
        P(CostUpdate, 2, 2, 2),
        P(MAC, 5.5, 5.5, 5.5),
        P(MACUpdate, 3, 3, 3),
        P(Generic, 1, 1, 1),
        P(PriceTableID, 4, 4, 4),
        P(Expiration, at(1850, 1, 1), conv::ZeroDate(), conv::ZeroDate()),
        P(Lot, "L'42 ", "L'42 ", "L'42"),
        P(GCN, "12345", "12345", "12345"),
        P(Compound, 1, 1, 1),
        P(Stock, 100.25, 100.25, 100.25),
        P(MinReorderQty, 10, 10, 10),
        P(ParQty, 50, 50, 50),
        P(PEC, 7, 7, 7),
        P(Note, " note ", " note ", "note"),
        P(MonoNum, 8, 8, 8),
        P(GenericName, "amoxicillin", "amoxicillin", "amoxicillin"),
        P(BrandName, "Amoxil ", "Amoxil ", "Amoxil"),
        P(RouteCode, "PO", "PO", "PO"),
        P(Strength, "500", "500", "500"),
        P(DrugClass, "Penicillins", "Penicillins", "Penicillins"),
        P(CategoryCode, "C1", "C1", "C1"),
        P(DESI, 1, 1, 1),
        P(UD, 1, 1, 1),
        P(ObsoleteDate, "20250101 ", "20250101 ", "20250101"),
        P(Units, "EA", "EA", "EA"),
        P(Therapy, "Antibiotic", "Antibiotic", "Antibiotic"),
        P(AWPDate, "20260314", "202603", "202603"),
        P(CostDate, "2026", "2026", "2026"),
        P(MACDate, "  2026031", "  2026", "2026"),
        P(ImportID, 5, 5, 5),
        P(DecSize, 0.5, 0.5, 0.5),
        P(HCPC, "J0456 ", "J0456 ", "J0456"),
        P(TXR, "T'X", "T'X", "T'X"),
        P(ItemNumber, "IT-9 ", "IT-9 ", "IT-9"),
        test::PropertyCase<clsDrug>{
            "MFR", [](clsDrug& d) { d.Manufacturer = "Teva's "; }, "Teva's ",
            [](const clsDrug& d) { return QVariant(d.Manufacturer); }, "Teva's"},
        P(EnableAutoFill, 1, 1, 1),
        P(DefaultSig, "1 cap tid", "1 cap tid", "1 cap tid"),
        P(DefaultQty, 30.5, 30.5, 30.5),
        P(DefaultRefills, 2, 2, 2),
        P(DefaultDS, 10, 10, 10),
        test::PropertyCase<clsDrug>{{},
                                    [](clsDrug& d) { d.DrugTimes = "8AM,8PM"; },
                                    {},
                                    [](const clsDrug& d) { return QVariant(d.DrugTimes); },
                                    "8AM,8PM"},
        Case{"DateChanged", {}, clock->now(), {}, {}},
    };
    clsDrug written;
    test::expectWriteThenRead<clsDrug>(
        *db, "DRUG", "DrugID", id, cases,
        [&](clsDrug& drug) {
            drug.DrugID = id;
            drug.Update();
            written = drug;
        },
        [&] { return loaded(); });
    EXPECT_EQ(written.Expiration, conv::ZeroDate());
    EXPECT_EQ(written.PackageSize, 2.5);
    EXPECT_EQ(drugTimes(), QStringList{"8AM,8PM|2026-03-14T09:26:53"});
    EXPECT_TRUE(reporter->reports().isEmpty()) << test::reportsText(*reporter);
}

// The exact size wins when it is above 0; otherwise the whole-number column is read.
// Update rounds to the even neighbour for the whole-number column.
TEST_P(clsDrugTest, TheTwoPackageSizes) {
    struct Row {
        QVariant exact;
        QVariant whole;
        double read;
        qint32 rewrittenWhole;
    };
    for (const Row& row : {Row{QVariant(), 3, 3, 3}, Row{0.0, 3, 3, 3}, Row{2.5, 3, 2.5, 2},
                           Row{3.5, 9, 3.5, 4}, Row{QVariant(), QVariant(), 0, 0}}) {
        db->Execute("UPDATE DRUG SET dPkgSize = ?, PackageSize = ? WHERE DrugID = ?",
                    {row.exact, row.whole, id});
        clsDrug drug = loaded();
        EXPECT_EQ(drug.PackageSize, row.read);
        drug.Update();
        RecordSet rs = db->OpenRecordSet("SELECT dPkgSize, PackageSize FROM DRUG");
        EXPECT_EQ(rs.Fields(0).toDouble(), row.read);
        EXPECT_EQ(rs.Fields(1).toInt(), row.rewrittenWhole);
    }
    EXPECT_TRUE(reporter->reports().isEmpty()) << test::reportsText(*reporter);
}

// A negative value in a zero-text column is one report, and the property keeps its value;
// a null reads as 0 there; the other columns still read.
TEST_P(clsDrugTest, ANegativeZeroTextColumnIsReportedAndTheRestStillReads) {
    db->Execute(
        "UPDATE DRUG SET Name = 'Stored', DefaultRefills = -1, DefaultQty = NULL, "
        "DefaultDS = 7 WHERE DrugID = ?",
        {id});
    clsDrug drug;
    drug.DrugID = id;
    drug.DefaultRefills = 3;
    drug.DefaultQty = 30;
    drug.GetData();
    ASSERT_EQ(reporter->reports().size(), 1);
    EXPECT_EQ(reporter->reports().at(0).location, "clsDrug:GetData");
    EXPECT_EQ(reporter->reports().at(0).number, QString::number(err::TypeMismatch));
    EXPECT_EQ(drug.DefaultRefills, 3);
    EXPECT_EQ(drug.DefaultQty, 0);
    EXPECT_EQ(drug.DefaultDS, 7);
    EXPECT_EQ(drug.Name, "Stored");
}

TEST_P(clsDrugTest, AnUnknownDrugBecomesZeroAndKeepsTheRest) {
    clsDrug drug;
    drug.DrugID = id + 100;
    drug.Name = "Kept";
    drug.DrugTimes = "9AM";
    drug.GetData();
    EXPECT_EQ(drug.DrugID, 0);
    EXPECT_EQ(drug.Name, "Kept");
    EXPECT_EQ(drug.DrugTimes, "9AM");
}

// The drug's times are added, changed and removed with it; blanks alone leave a row as it
// is; a patient's own times for the drug are neither read nor touched.
TEST_P(clsDrugTest, DosingTimesFollowTheDrug) {
    db->Execute("INSERT INTO DrugTimes (DrugID, PatientID, Times) VALUES (?, 12, 'patient')", {id});
    clsDrug drug = loaded();
    EXPECT_EQ(drug.DrugTimes, "");
    struct Step {
        QString times;
        QStringList rows;
    };
    // The clock moves on an hour with every step.
    for (const Step& step : {Step{"   ", {}}, Step{" 8AM ", {" 8AM |2026-03-14T10:26:53"}},
                             Step{"8AM,8PM", {"8AM,8PM|2026-03-14T11:26:53"}},
                             Step{"  ", {"8AM,8PM|2026-03-14T11:26:53"}}, Step{"", {}}}) {
        drug.DrugTimes = step.times;
        drug.Update();
        EXPECT_EQ(drugTimes(), step.rows) << '"' << step.times.toStdString() << '"';
        clock->advanceSeconds(3600);
    }
    db->Execute("INSERT INTO DrugTimes (DrugID, PatientID, Times) VALUES (?, 0, 'own')", {id});
    EXPECT_EQ(loaded().DrugTimes, "own");
    EXPECT_EQ(db->Scalar("SELECT Times FROM DrugTimes WHERE PatientID = 12").toString(), "patient");
    EXPECT_TRUE(reporter->reports().isEmpty()) << test::reportsText(*reporter);
}

TEST_P(clsDrugTest, InsertChecksTheConnectionAndDeleteRemovesTheRow) {
    clsDrug drug;
    drug.Insert();
    EXPECT_GT(drug.DrugID, id);
    drug.Delete();
    EXPECT_EQ(db->Scalar("SELECT COUNT(*) FROM DRUG").toInt(), 1);

    mdlMain::MainConnection.reset();
    user->answerMsgBox(Answer::OK);
    clsDrug unconnected;
    unconnected.Insert();
    EXPECT_EQ(unconnected.DrugID, 0);
    EXPECT_EQ(user->callsOf(ScriptedUserInteraction::Kind::MsgBox).size(), 1);
    EXPECT_TRUE(reporter->reports().isEmpty()) << test::reportsText(*reporter);
}

TVRX_BACKENDS(clsDrugTest);

}  // namespace
}  // namespace tvrx
