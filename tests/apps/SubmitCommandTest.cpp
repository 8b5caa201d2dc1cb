#include "support/SampleExchange.h"

namespace tvrx {
namespace {

using test::runTvrx;

// "tvrx submit" as a pharmacy runs it: the sample pharmacy, tvrx-switch as a second
// program with the sample payers and a history of its own, and the runs of
// tests/apps/submit/runs.json in order against that one history (the second reversal of
// fill 1 finds nothing left to reverse). Each run names the arguments after which
// "--dir" and "--db" are added, the exit code, pieces of the output in order, and a piece
// of the error output (none when it names none, the wait's progress lines aside).
using SubmitCommandTest = test::SampleExchangeFixture;

TEST_P(SubmitCommandTest, BillsReversesAndRefusesAsThePayersRulesSay) {
    test::RunningSwitch simulator(samplePayers());
    ASSERT_TRUE(simulator.started()) << simulator.errors().toStdString();
    const QJsonArray all = runsOf("tests/apps/submit/runs.json");
    ASSERT_FALSE(all.isEmpty());
    for (const QJsonValue& entry : all) {
        const QJsonObject run = entry.toObject();
        QStringList args{QStringLiteral("submit")};
        for (const QJsonValue& arg : run.value("args").toArray()) args.append(arg.toString());
        const std::string what = args.join(u' ').toStdString();
        args << "--dir" << exchange() << "--db" << connectionString();
        const test::ProgramRun result = runTvrx(args);
        EXPECT_EQ(result.exitCode, run.value("exit").toInt()) << what << "\n"
                                                              << result.err.toStdString();
        expectPieces(run.value("out").toArray(), result.out, what);
        const QString err = run.value("err").toString();
        if (!err.isEmpty()) {
            EXPECT_TRUE(result.err.contains(err)) << what << "\n" << result.err.toStdString();
        }
    }
    EXPECT_EQ(simulator.stop(), 0);
}

TVRX_BACKENDS(SubmitCommandTest);

}  // namespace
}  // namespace tvrx
