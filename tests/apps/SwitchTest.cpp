#include "responses/ResponseJson.h"
#include "session/text/ClaimNotation.h"
#include "support/DataRows.h"
#include "support/ExchangeFixture.h"
#include "support/Notation.h"
#include "support/RunningSwitch.h"
#include "support/SessionFixture.h"
#include "support/TvrxProgram.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QProcess>
#include <QThread>

#include <csignal>

namespace tvrx {
namespace {

const QString kTvrx = test::kTvrxProgram;
const QString kPaid = QStringLiteral("<STX>D0B1<GS><FS>F4CLAIM PAID");
const QString kRejected = QStringLiteral("<STX>D0B1<GS><FS>FBRJ<FS>F4REJECTED");
constexpr int kWaitMs = test::kSwitchWaitMs;
const QString kSwitch = test::kSwitchProgram;

void writeText(const QString& path, const QString& text) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text.toUtf8());
}

QByteArray bytesOf(const QString& notation) {
    return test::notated(notation).toLatin1();
}

const QString kSamplePayers =
    QStringLiteral(TVRX_SOURCE_DIR "/samples/payers/sample-pharmacy.json");

bool programsBuilt() {
    return QFileInfo(kSwitch).isExecutable() && test::programBuilt();
}

class SwitchTest : public test::ExchangeFixture<test::SessionFixture> {
protected:
    void SetUp() override {
        ExchangeFixture::SetUp();
        if (!programsBuilt()) GTEST_SKIP() << "the programs are not built";
        face->tickEvery(50);
        face->abortAfterTicks(kWaitMs / 50);
        writeText(prepared("paid.txt"), kPaid + QLatin1Char('\n'));
        writeText(prepared("rejected.txt"), kRejected);
        writeText(rules(), QStringLiteral("# answers of the test\n"
                                          "if <FS>C2REJECT then rejected.txt\n"
                                          "otherwise paid.txt\n"));
    }

    // The rules and prepared responses of a test, in a folder apart from the exchange.
    QString prepared(const QString& name) const { return preparedFolder_.filePath(name); }
    QString rules() const { return prepared(QStringLiteral("rules.txt")); }

private:
    QTemporaryDir preparedFolder_;
};

TEST_F(SwitchTest, AnswersEachRequestByTheRulesAndStopsCleanly) {
    land(QStringLiteral("03140900.clm"), "waiting before the switch started\x03\r\n");
    test::RunningSwitch running({"--dir", directory(), "--rules", rules()});
    ASSERT_TRUE(running.started()) << running.log().toStdString();
    EXPECT_EQ(contents(pathOf(QStringLiteral("03140900.RSP"))), bytesOf(kPaid));
    QFile::remove(pathOf(QStringLiteral("03140900.RSP")));

    const struct {
        const char* claim;
        QString answer;
        const char* logged;
        qsizetype timesLogged;
    } cases[] = {
        {"<STX>610066<FS>C2REJECT<FS>D2000001", kRejected, "rejected.txt, rule of line 2", 1},
        // The request waiting before the start was answered by the same rule.
        {"<STX>610066<FS>C2PAYME<FS>D2000002", kPaid, "paid.txt, rule of line 3", 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.claim);
        const auto outcome = exchange(test::notated(c.claim));
        EXPECT_TRUE(outcome.answered);
        EXPECT_EQ(outcome.response, bytesOf(c.answer));
        EXPECT_TRUE(running.waitForLine(QString::fromLatin1(c.logged), c.timesLogged))
            << running.log().toStdString();
        EXPECT_EQ(files(), QStringList()) << "collected, answered, read and removed";
    }
    EXPECT_EQ(running.stop(), 0);
    EXPECT_EQ(running.log().count(QStringLiteral(" bytes) -> ")), 3) << running.log().toStdString();
    EXPECT_TRUE(running.log().endsWith(QStringLiteral("tvrx-switch: stopped\n")));
}

TEST_F(SwitchTest, TvrxExchangePrintsTheAnswerOrWithdrawsOnCtrlC) {
    const QString claim = prepared("claim.txt");
    writeText(claim, QStringLiteral("<STX>610066<FS>C2PAYME\n<FS>D2000003\n"));
    QProcess tvrx;
    {
        test::RunningSwitch running({"--dir", directory(), "--rules", rules()});
        ASSERT_TRUE(running.started());
        // The claim comes from standard input this time.
        tvrx.start(kTvrx, {"exchange", "--dir", directory(), "-"});
        tvrx.write("<STX>610066<FS>C2PAYME\n<FS>D2000003\n");
        tvrx.closeWriteChannel();
        ASSERT_TRUE(tvrx.waitForFinished(kWaitMs));
        EXPECT_EQ(tvrx.exitCode(), 0) << tvrx.readAllStandardError().toStdString();
        EXPECT_EQ(QString::fromUtf8(tvrx.readAllStandardOutput()), kPaid + QLatin1Char('\n'));
        EXPECT_TRUE(running.waitForLine("paid.txt"));
    }

    tvrx.setReadChannel(QProcess::StandardError);
    tvrx.start(kTvrx, {"exchange", "--dir", directory(), claim});
    QByteArray waiting;
    while (!waiting.contains("Looking for response") && tvrx.waitForReadyRead(kWaitMs)) {
        waiting += tvrx.readAllStandardError();
    }
    ASSERT_EQ(files().size(), 1) << waiting.toStdString();
    // The form is drawn just before Ctrl-C is taken over.
    QThread::msleep(100);
    ::kill(static_cast<pid_t>(tvrx.processId()), SIGINT);
    ASSERT_TRUE(tvrx.waitForFinished(kWaitMs));
    EXPECT_EQ(tvrx.exitCode(), 3);
    EXPECT_TRUE(tvrx.readAllStandardError().contains("Transmitting Claim: aborted after"));
    EXPECT_EQ(files(), QStringList()) << "the request was withdrawn";
}

// The shipped answers, comment lines and all, go through the switch and come back as the
// texts they hold, which tvrx decode reads.
TEST_F(SwitchTest, ShippedAnswersComeBackAsTextsThatDecode) {
    const QStringList samples{"32-paid", "40-rejected", "51-paid", "51-reversal-accepted"};
    const QString folder = QStringLiteral(TVRX_SOURCE_DIR "/samples/responses/");
    QString rulesText;
    for (const QString& sample : samples)
        rulesText += QStringLiteral("if <FS>C2%1 then %2%1.txt\n").arg(sample, folder);
    writeText(rules(), rulesText + QStringLiteral("otherwise paid.txt\n"));
    test::RunningSwitch running({"--dir", directory(), "--rules", rules()});
    ASSERT_TRUE(running.started()) << running.errors().toStdString();
    for (const QString& sample : samples) {
        SCOPED_TRACE(sample.toStdString());
        const QString claim = prepared(sample + ".clm.txt");
        writeText(claim, QStringLiteral("<STX>610066<FS>C2") + sample);
        const test::ProgramRun exchanged = test::runTvrx({"exchange", "--dir", directory(), claim});
        ASSERT_EQ(exchanged.exitCode, 0) << exchanged.err.toStdString();
        const NotationResult shipped = readResponseFile(folder + sample + ".txt");
        ASSERT_TRUE(shipped) << shipped.error.toStdString();
        EXPECT_EQ(exchanged.out, toNotation(*shipped.text) + QLatin1Char('\n'));

        const QString answer = prepared(sample + ".rsp.txt");
        writeText(answer, exchanged.out);
        const test::ProgramRun decoded = test::runTvrx({"decode", answer});
        EXPECT_EQ(decoded.exitCode, 0) << decoded.out.toStdString() << decoded.err.toStdString();
    }
}

TEST_F(SwitchTest, ProgramsRefuseWhatCannotServe) {
    writeText(prepared("no-otherwise.txt"), "if X then paid.txt\n");
    writeText(prepared("bad.txt"), "if <FOO> then paid.txt\n");
    const QString file = prepared("paid.txt");
    const QString missing = directory() + "/missing";
    const struct {
        QString program;
        QStringList args;
        int exitCode;
        const char* message;
    } cases[] = {
        {kSwitch, {"--dir", missing, "--rules", rules()}, 1, "does not exist"},
        {kSwitch, {"--dir", file, "--rules", rules()}, 1, "is not a directory"},
        {kSwitch, {"--dir", directory(), "--rules", prepared("none.txt")}, 1, "cannot read"},
        {kSwitch,
         {"--dir", directory(), "--rules", prepared("no-otherwise.txt")},
         1,
         "the last rule must be 'otherwise FILE'"},
        {kSwitch, {"--dir", directory(), "--rules", prepared("bad.txt")}, 1, "line 1: "},
        {kSwitch, {"--dir", directory()}, 2, "give either --payers or --rules"},
        {kSwitch,
         {"--dir", directory(), "--rules", rules(), "--payers", file},
         2,
         "give either --payers or --rules"},
        {kSwitch,
         {"--dir", directory(), "--rules", rules(), "--history", file},
         2,
         "--history goes with --payers"},
        {kSwitch,
         {"--dir", directory(), "--payers", file, "--date", "20261399"},
         2,
         "--date takes a day YYYYMMDD"},
        {kSwitch,
         {"--dir", directory(), "--payers", kSamplePayers, "--history", "/proc/none/history.db"},
         1,
         "cannot create the history /proc/none/history.db"},
        {kTvrx, {"exchange", "--dir", missing, file}, 1, "does not exist"},
        {kTvrx,
         {"exchange", "--dir", directory(), prepared("bad.txt")},
         1,
         "bad.txt: position 4: unknown tag <FOO>"},
        {kTvrx, {"exchange", "--dir", directory()}, 2, "missing FILE"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.args.join(QLatin1Char(' ')).toStdString());
        QProcess process;
        process.start(c.program, c.args);
        ASSERT_TRUE(process.waitForFinished(kWaitMs));
        const QString error = QString::fromUtf8(process.readAllStandardError());
        EXPECT_EQ(process.exitCode(), c.exitCode) << error.toStdString();
        EXPECT_TRUE(error.contains(QString::fromUtf8(c.message))) << error.toStdString();
    }
    EXPECT_EQ(files(), QStringList());
}

TEST_F(SwitchTest, APayerFileWithAMistakeIsRefusedWithWhereTheMistakeIs) {
    const QString history = prepared("history.db");
    for (const test::DataRow& row : test::dataRows(QStringLiteral("payer-file-mistakes.tsv"))) {
        SCOPED_TRACE(row.where);
        const QString payers = prepared(QStringLiteral("payers.json"));
        writeText(payers,
                  QString(row.cells.at(1)).replace(QLatin1String("\\n"), QLatin1String("\n")));
        QProcess process;
        process.start(kSwitch, {"--dir", directory(), "--payers", payers, "--history", history});
        ASSERT_TRUE(process.waitForFinished(kWaitMs));
        const QString error = QString::fromUtf8(process.readAllStandardError());
        EXPECT_EQ(process.exitCode(), 1) << error.toStdString();
        EXPECT_TRUE(error.contains(payers + QStringLiteral(": ") + row.cells.at(2)))
            << error.toStdString();
    }
    EXPECT_FALSE(QFileInfo::exists(history)) << "refused before the history is made";
}

}  // namespace
}  // namespace tvrx
