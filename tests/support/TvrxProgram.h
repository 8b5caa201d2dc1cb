#pragma once

#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace tvrx::test {

// The command-line host as the build made it, run as a user would run it.
inline const QString kTvrxProgram = QStringLiteral(TVRX_BINARY_DIR "/apps/tvrx");

struct ProgramRun {
    int exitCode = -1;
    QString out;
    QString err;
};

inline bool programBuilt() {
    return QFileInfo(kTvrxProgram).isExecutable();
}

// Runs tvrx with no input and TVRX_DB set to database (unset when empty).
inline ProgramRun runTvrx(const QStringList& args, const QString& database = {}) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("TVRX_DB"));
    if (!database.isEmpty()) environment.insert(QStringLiteral("TVRX_DB"), database);
    process.setProcessEnvironment(environment);
    process.start(kTvrxProgram, args);
    process.closeWriteChannel();
    process.waitForFinished(120000);
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

}  // namespace tvrx::test
