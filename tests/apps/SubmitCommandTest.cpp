#include "support/DatabaseFixture.h"
#include "support/RunningSwitch.h"
#include "support/TvrxProgram.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

namespace tvrx {
namespace {

using test::runTvrx;

// "tvrx submit" as a pharmacy runs it: the sample pharmacy, tvrx-switch as a second
// program with the sample payers and a history of its own, and the runs of
// tests/apps/submit/runs.json in order against that one history (the second reversal of
// fill 1 finds nothing left to reverse). Each run names the arguments after which
// "--dir" and "--db" are added, the exit code, pieces of the output in order, and a piece
// of the error output (none when it names none, the wait's progress lines aside).
class SubmitCommandTest : public test::DatabaseFixture {
protected:
    void SetUp() override {
        DatabaseFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        if (!test::programBuilt() || !test::switchBuilt()) GTEST_SKIP() << "programs not built";
        ASSERT_EQ(runTvrx({"init", "--db", connectionString(), "--sample"}).exitCode, 0);
        ASSERT_TRUE(QDir().mkpath(exchange()));
    }

    QString exchange() const { return work_.filePath(QStringLiteral("exchange")); }
    QString history() const { return work_.filePath(QStringLiteral("history.db")); }

private:
    QTemporaryDir work_;
};

QJsonArray runs() {
    QFile file(QStringLiteral(TVRX_SOURCE_DIR "/tests/apps/submit/runs.json"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QJsonDocument::fromJson(file.readAll()).array();
}

TEST_P(SubmitCommandTest, BillsReversesAndRefusesAsThePayersRulesSay) {
    test::RunningSwitch simulator(
        {"--dir", exchange(), "--payers",
         QStringLiteral(TVRX_SOURCE_DIR "/samples/payers/sample-pharmacy.json"), "--history",
         history()});
    ASSERT_TRUE(simulator.started()) << simulator.errors().toStdString();
    const QJsonArray all = runs();
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
        qsizetype from = 0;
        for (const QJsonValue& piece : run.value("out").toArray()) {
            const qsizetype at = result.out.indexOf(piece.toString(), from);
            EXPECT_GE(at, 0) << what << ": " << piece.toString().toStdString() << "\n"
                             << result.out.toStdString();
            if (at >= 0) from = at + piece.toString().size();
        }
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
