#include "support/ExchangeFixture.h"
#include "support/Notation.h"
#include "support/SessionFixture.h"
#include "support/TvrxProgram.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QProcess>
#include <QThread>

#include <csignal>

namespace tvrx {
namespace {

const QString kSwitch = QStringLiteral(TVRX_BINARY_DIR "/apps/tvrx-switch");
const QString kTvrx = test::kTvrxProgram;
const QString kPaid = QStringLiteral("<STX>D0B1<GS><FS>F4CLAIM PAID");
const QString kRejected = QStringLiteral("<STX>D0B1<GS><FS>FBRJ<FS>F4REJECTED");
constexpr int kWaitMs = 5000;

void writeText(const QString& path, const QString& text) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text.toUtf8());
}

QByteArray bytesOf(const QString& notation) {
    return test::notated(notation).toLatin1();
}

// tvrx-switch running on an exchange directory, its log read line by line.
class RunningSwitch {
public:
    RunningSwitch(const QString& directory, const QString& rules) {
        process_.start(kSwitch, {"--dir", directory, "--rules", rules});
        started_ = waitForLine(QStringLiteral("tvrx-switch: watching"));
    }
    ~RunningSwitch() {
        if (process_.state() != QProcess::NotRunning) process_.kill();
        process_.waitForFinished(kWaitMs);
    }
    bool started() const { return started_; }

    // True once the log holds the part the given number of times.
    bool waitForLine(const QString& part, qsizetype times = 1) {
        // What an event loop elsewhere already pulled from the pipe waits in the buffer
        // and raises no further notice, so the buffer is read before each wait.
        const QDeadlineTimer deadline(kWaitMs);
        log_ += QString::fromUtf8(process_.readAllStandardOutput());
        while (log_.count(part) < times) {
            if (!process_.waitForReadyRead(static_cast<int>(deadline.remainingTime()))) {
                return false;
            }
            log_ += QString::fromUtf8(process_.readAllStandardOutput());
        }
        return true;
    }
    // Stops the program as a service manager would; its exit code.
    int stop() {
        process_.terminate();
        process_.waitForFinished(kWaitMs);
        log_ += QString::fromUtf8(process_.readAllStandardOutput());
        return process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -1;
    }
    const QString& log() const { return log_; }

private:
    QProcess process_;
    QString log_;
    bool started_ = false;
};

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
    RunningSwitch running(directory(), rules());
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
        RunningSwitch running(directory(), rules());
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
        {kSwitch, {"--dir", directory()}, 2, "--rules is required"},
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

}  // namespace
}  // namespace tvrx
