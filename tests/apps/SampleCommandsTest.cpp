#include "prescription/clsPrescription.h"
#include "support/SampleProgramFixture.h"
#include "support/TvrxProgram.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace tvrx {
namespace {

using test::runTvrx;

// "tvrx show", "tvrx plan add" and "tvrx log rx" over the sample pharmacy, whose fill 2 is
// the first refill of prescription 100001, carries a paid answer and two logged changes.
// The lookups of the plan directory itself are tested with fixture plans in tests/records.
class SampleCommandsTest : public test::SampleProgramFixture {};

TEST_P(SampleCommandsTest, ShowsTheRecordsAsTheyReadAndAddsPlans) {
    const QString url = connectionString();
    const test::ExpectedRun runs[] = {
        {{"show", "patient", "1", "--db", url},
         0,
         {"Telephone:                     (254) 555-0201\n"},
         ""},
        // Patient 12 was entered without a facility: its null FacilityID is a reported fault.
        {{"show", "patient", "12", "--db", url},
         0,
         {"LastName:                      Whitaker\n"},
         "clsPatient:GetData: error 13: Type mismatch"},
        // With --json the reports are in the object, and standard error stays quiet.
        {{"show", "patient", "12", "--db", url, "--json"},
         0,
         {"\"LastName\": \"Whitaker\"", "\"location\":\"clsPatient:GetData\",\"number\":\"13\""},
         ""},
        {{"show", "prescriber", "1", "--db", url, "--json"},
         0,
         {"\"FaxNumber\": \"(254) 555-0111\", \"DateLastSeen\": \"2026-03-02 00:00:00\""},
         ""},
        {{"show", "drug", "2", "--db", url},
         0,
         {"PackageSize:                   500\nDrugTimes:                     08:00,18:00\n"},
         ""},
        {{"show", "facility", "2", "--db", url, "--json"},
         0,
         {"\"Contact\": \"Marcus O'Leary\", \"ContactPhone\": \"2545550181\""},
         ""},
        {{"show", "patient", "99", "--db", url},
         1,
         {},
         "tvrx show: no patient with PatientID 99\n"},
        {{"show", "facility", "40000", "--db", url}, 1, {}, "error 6: Overflow"},
        {{"show", "plan", "1", "--db", url}, 0, {"BIN:                           004410\n"}, ""},
        {{"show", "coverage", "4", "--db=" + url, "--json"},
         0,
         {"\"OPatInsID\": 8, \"InsID\": 3, \"PatientID\": 4, \"InsCode\": \"PASF51\""},
         ""},
        {{"show", "plan", "99", "--db", url}, 1, {}, "tvrx show: no plan with InsID 99\n"},
        {{"show", "plan", "40000", "--db", url}, 1, {}, "error 6: Overflow"},
        {{"show", "plan", "1"}, 2, {}, "no database: give --db URL or set TVRX_DB"},
        {{"show", "rx", "2", "--db", url},
         0,
         {"[computed]\nRefillsLeft:                   4\n",
          "[drug]\nDrugID:                        1\nName:                          LISINOPRIL "
          "10MG "
          "TAB\nNDC:                           60731041101\n",
          "[response]\nresult:        True\nstatus:        PAID\n",
          "[other response]\nnone stored\n"},
         ""},
        {{"show", "rx", "3", "--db", url}, 0, {"RefillsLeft:                   3\n"}, ""},
        {{"show", "rx", "99", "--db", url}, 1, {}, "tvrx show: no rx with RXInfoID 99\n"},
        {{"plan", "add", "--nabp", "4512345", "--db", url, "--answer", "no"},
         0,
         {"Plan 7: , "},
         "Would you like to use the Insurance lookup feature?\nYes/No [Yes]? no\n"},
        {{"show", "plan", "7", "--db", url}, 0, {"EA,EB,EW1\n"}, ""},
        {{"plan", "add", "--nabp", "4512345", "--bin", "999999", "--pcn", "NONE", "--db", url},
         0,
         {"No plan was created.\n"},
         ""},
        {{"plan", "add", "--nabp", "4512345", "--bin", "999999", "--db", url},
         2,
         {},
         "--bin and --pcn go together"},
    };
    test::expectRuns(runs);
    EXPECT_EQ(runTvrx({"show", "plan", "2"}, url).exitCode, 0) << "the database from TVRX_DB";
    const test::ProgramRun answered =
        runTvrx({"plan", "add", "--nabp", "4512345", "--answers", "-"}, url, "no\n");
    EXPECT_TRUE(answered.out.contains(QStringLiteral("Plan 8: , "))) << answered.err.toStdString();

    const test::ProgramRun json = runTvrx({"show", "rx", "2", "--db", url, "--json"});
    QJsonParseError error;
    const QJsonObject shown = QJsonDocument::fromJson(json.out.toUtf8(), &error).object();
    ASSERT_EQ(error.error, QJsonParseError::NoError) << json.out.toStdString();
    EXPECT_EQ(shown[QStringLiteral("RefillNumber")].toInt(), 1);
    EXPECT_EQ(shown[QStringLiteral("computed")][QStringLiteral("RefillsLeft")].toString(), "4");
    EXPECT_EQ(shown[QStringLiteral("prescriber")][QStringLiteral("LastName")].toString(), "Hadley");
    EXPECT_EQ(shown[QStringLiteral("response")][QStringLiteral("Reference")].toString(),
              "26031400012345");
    EXPECT_TRUE(shown[QStringLiteral("otherResponse")].isNull());
    EXPECT_EQ(shown[QStringLiteral("reports")].toArray().size(), 0);
}

TEST_P(SampleCommandsTest, ListsTheChangeLogOfAFill) {
    clsPrescription rx;
    rx.setConnection(db);
    rx.RXInfoID = 3;
    rx.GetData();
    rx.Qty = 60;
    rx.SIG = QStringLiteral("TAKE 2 TABLETS AT BEDTIME");
    rx.Update();
    db->Execute(QStringLiteral("INSERT INTO LOG_RX (LogDate, RxInfoID, Changes, RPhID, TechID) "
                               "VALUES (?, 4, ?, 0, 0)"),
                {QDateTime(QDate(2026, 2, 1), QTime(9, 0)),
                 QStringLiteral("<RX_Changes><Qty Original_Value=\"60\"></RX_Changes>")});

    const QString url = connectionString();
    const test::ExpectedRun runs[] = {
        {{"log", "rx", "2", "--db", url},
         0,
         {"2/6/2026 10:04:52 AM  pharmacist 1  technician 3\n  Qty: 60 -> 30\n  Copay: $ 12.00 "
          "-> $ 10.00\n2/6/2026 10:06:15 AM  pharmacist 1  technician 0\n  SIG: "},
         ""},
        {{"log", "rx", "3", "--db", url},
         0,
         {"  pharmacist 0  technician 0\n  Qty: 30 -> 60\n  SIG: TAKE 1 TABLET BY MOUTH DAILY -> "
          "TAKE 2 TABLETS AT BEDTIME\n"},
         ""},
        {{"log", "rx", "4", "--db", url}, 0, {"  not a readable change list: "}, ""},
        {{"log", "rx", "1", "--db", url}, 0, {"No changes are logged for fill 1.\n"}, ""},
        {{"log", "rx", "99", "--db", url}, 1, {}, "tvrx log rx: no fill with RXInfoID 99\n"},
    };
    test::expectRuns(runs);
}

TVRX_BACKENDS(SampleCommandsTest);

}  // namespace
}  // namespace tvrx
