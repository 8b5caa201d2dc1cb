#include "prescription/clsPrescription.h"
#include "support/DatabaseFixture.h"
#include "support/TvrxProgram.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace tvrx {
namespace {

using test::programBuilt;
using test::runTvrx;

// "tvrx show rx" and "tvrx log rx" over the sample pharmacy, whose fill 2 is the first
// refill of prescription 100001, carries a paid answer and two logged changes.
class PrescriptionCommandsTest : public test::DatabaseFixture {
protected:
    void SetUp() override {
        DatabaseFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        if (!programBuilt()) GTEST_SKIP() << "the command-line host is not built";
        ASSERT_EQ(runTvrx({"init", "--db", connectionString(), "--sample"}).exitCode, 0);
    }
};

TEST_P(PrescriptionCommandsTest, ShowsAFillWithItsRecordsAndDecodedAnswers) {
    const QString url = connectionString();
    const test::ExpectedRun runs[] = {
        {{"show", "rx", "2", "--db", url}, 0, "[computed]\nRefillsLeft:                   4\n", ""},
        {{"show", "rx", "3", "--db", url}, 0, "RefillsLeft:                   3\n", ""},
        {{"show", "rx", "2", "--db", url},
         0,
         "[drug]\nDrugID:                        1\nName:                          LISINOPRIL 10MG "
         "TAB\nNDC:                           60731041101\n",
         ""},
        {{"show", "rx", "2", "--db", url},
         0,
         "[response]\nresult:        True\nstatus:        PAID\n",
         ""},
        {{"show", "rx", "2", "--db", url}, 0, "[other response]\nnone stored\n", ""},
        {{"show", "rx", "99", "--db", url}, 1, "", "tvrx show: no rx with RXInfoID 99\n"},
    };
    test::expectRuns(runs);

    const test::ProgramRun json = runTvrx({"show", "rx", "2", "--db", url, "--json"});
    QJsonParseError error;
    const QJsonObject shown = QJsonDocument::fromJson(json.out.toUtf8(), &error).object();
    ASSERT_EQ(error.error, QJsonParseError::NoError) << json.out.toStdString();
    EXPECT_EQ(shown[QStringLiteral("RefillNumber")].toInt(), 1);
    EXPECT_EQ(shown[QStringLiteral("computed")][QStringLiteral("RefillsLeft")].toString(), "4");
    EXPECT_EQ(shown[QStringLiteral("prescriber")][QStringLiteral("LastName")].toString(), "Hadley");
    EXPECT_EQ(shown[QStringLiteral("response")][QStringLiteral("Reference")].toString(),
              "26031400012345");
    EXPECT_TRUE(shown[QStringLiteral("other response")].isNull());
}

TEST_P(PrescriptionCommandsTest, ListsTheChangeLogOfAFill) {
    clsPrescription rx;
    rx.setConnection(db);
    rx.PrescriptionType = EditRx;
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
         "2/6/2026 10:04:52 AM  pharmacist 1  technician 3\n  Qty: 60 -> 30\n  Copay: $ 12.00 "
         "-> $ 10.00\n2/6/2026 10:06:15 AM  pharmacist 1  technician 0\n  SIG: ",
         ""},
        {{"log", "rx", "3", "--db", url},
         0,
         "  pharmacist 0  technician 0\n  Qty: 30 -> 60\n  SIG: TAKE 1 TABLET BY MOUTH DAILY -> "
         "TAKE 2 TABLETS AT BEDTIME\n",
         ""},
        {{"log", "rx", "4", "--db", url}, 0, "  not a readable change list: ", ""},
        {{"log", "rx", "1", "--db", url}, 0, "No changes are logged for fill 1.\n", ""},
        {{"log", "rx", "99", "--db", url}, 1, "", "tvrx log: no fill with RXInfoID 99\n"},
        {{"log", "rx", "--db", url}, 2, "", "usage: tvrx log rx ID"},
        {{"log", "patient", "1", "--db", url}, 2, "", "expected 'rx' and a fill's RXInfoID"},
        {{"log", "rx", "two", "--db", url}, 2, "", "the key 'two' is not a whole number"},
    };
    test::expectRuns(runs);
}

TVRX_BACKENDS(PrescriptionCommandsTest);

}  // namespace
}  // namespace tvrx
