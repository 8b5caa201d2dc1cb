#include "session/data/DbConnection.h"
#include "session/data/RecordSet.h"
#include "support/SampleExchange.h"

namespace tvrx {
namespace {

using test::runTvrx;

// "tvrx eligibility" as a pharmacy runs it: the sample pharmacy, tvrx-switch as a second
// program with the sample payers, and the runs of tests/apps/eligibility/runs.json in
// order on one database (a plan added in one run is the pharmacy's in the next). Each run
// names the arguments after which "--dir" and "--db" are added, the exit code, pieces of
// the output in order, and the BIN and card of each coverage of a patient after it.
class EligibilityCommandTest : public test::SampleExchangeFixture {
protected:
    // "BIN CardNumber" of each coverage of the patient, by PatInsID.
    QStringList coverages(qint32 patientID) const {
        RecordSet rows = db->OpenRecordSet(
            QStringLiteral("SELECT PATINS.CardNumber, INSURANCE.BIN FROM PATINS INNER JOIN "
                           "INSURANCE ON INSURANCE.InsID = PATINS.InsID WHERE PATINS.PatientID "
                           "= ? ORDER BY PATINS.PatInsID"),
            {patientID});
        QStringList all;
        for (; !rows.Eof(); rows.MoveNext()) {
            all.append(rows.Fields(QStringLiteral("BIN")).toString() + u' ' +
                       rows.Fields(QStringLiteral("CardNumber")).toString());
        }
        return all;
    }
};

TEST_P(EligibilityCommandTest, AsksThePayerShowsTheReportAndAddsThePlans) {
    test::RunningSwitch simulator(samplePayers());
    ASSERT_TRUE(simulator.started()) << simulator.errors().toStdString();
    const QJsonArray runs = runsOf("tests/apps/eligibility/runs.json");
    ASSERT_FALSE(runs.isEmpty());
    for (const QJsonValue& entry : runs) {
        const QJsonObject run = entry.toObject();
        QStringList args{QStringLiteral("eligibility")};
        for (const QJsonValue& arg : run.value("args").toArray()) args.append(arg.toString());
        const std::string what = args.join(u' ').toStdString();
        args << "--dir" << exchange() << "--db" << connectionString();
        const test::ProgramRun result = runTvrx(args);
        EXPECT_EQ(result.exitCode, run.value("exit").toInt()) << what << "\n"
                                                              << result.out.toStdString() << "\n"
                                                              << result.err.toStdString();
        expectPieces(run.value("out").toArray(), result.out, what);
        if (run.contains("coverages")) {
            EXPECT_EQ(coverages(run.value("patient").toInt()),
                      run.value("coverages").toVariant().toStringList())
                << what;
        }
    }
    EXPECT_EQ(simulator.stop(), 0);
}

TVRX_BACKENDS(EligibilityCommandTest);

}  // namespace
}  // namespace tvrx
