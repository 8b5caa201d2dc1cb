#pragma once

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QProcess>
#include <QString>
#include <QStringList>

namespace tvrx::test {

// The transmission stand-in as the build made it.
inline const QString kSwitchProgram = QStringLiteral(TVRX_BINARY_DIR "/apps/tvrx-switch");
inline constexpr int kSwitchWaitMs = 5000;

inline bool switchBuilt() {
    return QFileInfo(kSwitchProgram).isExecutable();
}

// tvrx-switch running with the given arguments, its log read line by line.
class RunningSwitch {
public:
    explicit RunningSwitch(const QStringList& arguments) {
        process_.start(kSwitchProgram, arguments);
        started_ = waitForLine(QStringLiteral("tvrx-switch: watching"));
    }
    ~RunningSwitch() {
        if (process_.state() != QProcess::NotRunning) process_.kill();
        process_.waitForFinished(kSwitchWaitMs);
    }
    RunningSwitch(const RunningSwitch&) = delete;
    RunningSwitch& operator=(const RunningSwitch&) = delete;

    bool started() const { return started_; }

    // True once the log holds the part the given number of times.
    bool waitForLine(const QString& part, qsizetype times = 1) {
        // What an event loop elsewhere already pulled from the pipe waits in the buffer
        // and raises no further notice, so the buffer is read before each wait.
        const QDeadlineTimer deadline(kSwitchWaitMs);
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
        process_.waitForFinished(kSwitchWaitMs);
        log_ += QString::fromUtf8(process_.readAllStandardOutput());
        return process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -1;
    }
    const QString& log() const { return log_; }
    QString errors() { return QString::fromUtf8(process_.readAllStandardError()); }

private:
    QProcess process_;
    QString log_;
    bool started_ = false;
};

}  // namespace tvrx::test
