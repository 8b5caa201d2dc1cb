#include "records/PropertyCases.h"
#include "records/clsDrug.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Session.h"

namespace tvrx {
namespace {

using test::at;

class clsDrugTest : public test::RecordFixture<clsDrug, &clsDrug::DrugID> {
protected:
    clsDrugTest() : RecordFixture("NewDrug") {}

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
};

// Texts come back trimmed; the three price dates are cut to six characters; an exact
// package size goes to dPkgSize and its rounding to PackageSize; an expiration before
// 1900 becomes the zero date; numbers travel as their fifteen-digit text.
TEST_P(clsDrugTest, EveryPropertyIsStoredAndReadBackInItsOwnForm) {
    const std::vector<test::ColumnCase> cases{
        {"PackageSize", 2.5, 2, 2.5},
        {"dPkgSize", 2.5},
        {"Cost", 0.1 + 0.2, 0.3, 0.3},
        {"Expiration", at(1850, 1, 1), conv::ZeroDate(), conv::ZeroDate()},
        {"AWPDate", "20260314", "202603", "202603"},
        {"CostDate", "2026"},
        {"MACDate", "  2026031", "  2026", "2026"},
        {"DateChanged", {}, clock->now(), clock->now()},
    };
    clsDrug written;
    test::expectEveryColumnWrittenAndRead(*db, drugColumns(), &clsDrug::DrugID, id,
                                          {.trimsEveryText = true}, cases, written);
    EXPECT_EQ(written.Expiration, conv::ZeroDate());
    EXPECT_EQ(written.PackageSize, 2.5);
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
    EXPECT_EQ(takeReports(), QStringList{test::reportOf("clsDrug:GetData", err::TypeMismatch)});
    EXPECT_EQ(drug.DefaultRefills, 3);
    EXPECT_EQ(drug.DefaultQty, 0);
    EXPECT_EQ(drug.DefaultDS, 7);
    EXPECT_EQ(drug.Name, "Stored");
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
        EXPECT_EQ(loaded().DrugTimes, step.rows.value(0).section('|', 0, 0));
        clock->advanceSeconds(3600);
    }
    db->Execute("INSERT INTO DrugTimes (DrugID, PatientID, Times) VALUES (?, 0, 'own')", {id});
    EXPECT_EQ(loaded().DrugTimes, "own");
    EXPECT_EQ(db->Scalar("SELECT Times FROM DrugTimes WHERE PatientID = 12").toString(), "patient");
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
}

TVRX_BACKENDS(clsDrugTest);

}  // namespace
}  // namespace tvrx
