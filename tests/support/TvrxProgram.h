#pragma once

#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include "support/DataRows.h"

#include <gtest/gtest.h>

#include <functional>

#include <span>

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

// Runs tvrx with input on its standard input and TVRX_DB set to database (unset when empty).
inline ProgramRun runTvrx(const QStringList& args, const QString& database = {},
                          const QByteArray& input = {}) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("TVRX_DB"));
    if (!database.isEmpty()) environment.insert(QStringLiteral("TVRX_DB"), database);
    process.setProcessEnvironment(environment);
    process.start(kTvrxProgram, args);
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(120000);
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

// One run of tvrx and what it must give: its exit code, pieces of its output, and a piece
// of its error output (no error output at all when err is empty).
struct ExpectedRun {
    QStringList args;
    int exitCode;
    QStringList out;
    QString err;
};

inline void expectRuns(std::span<const ExpectedRun> runs) {
    for (const auto& run : runs) {
        const ProgramRun result = runTvrx(run.args);
        const std::string what = run.args.join(QLatin1Char(' ')).toStdString();
        EXPECT_EQ(result.exitCode, run.exitCode) << what << "\n" << result.err.toStdString();
        for (const QString& piece : run.out) {
            EXPECT_TRUE(result.out.contains(piece)) << what << "\n" << result.out.toStdString();
        }
        EXPECT_TRUE(run.err.isEmpty() ? result.err.isEmpty() : result.err.contains(run.err))
            << what << "\n"
            << result.err.toStdString();
    }
}

// A piece of output as the data files write it: "\n" is a line end; "(none)" means that
// nothing at all is printed.
inline void expectPiece(const QString& output, const QString& cell, const std::string& where) {
    if (cell == QLatin1String("(none)")) {
        EXPECT_TRUE(output.isEmpty()) << where << "\n" << output.toStdString();
        return;
    }
    const QString piece = QString(cell).replace(QStringLiteral("\\n"), QStringLiteral("\n"));
    EXPECT_TRUE(output.contains(piece)) << where << "\n" << output.toStdString();
}

// Runs each row of a data file, in order: the arguments (split at blanks), the exit code,
// pieces of standard output separated by " | ", a piece of standard error, each cell
// passed through filled first (to put in the database, a folder).
inline void expectRunsOfFile(const QString& file, const std::function<QString(QString)>& filled) {
    for (const DataRow& row : dataRows(file)) {
        const ProgramRun run = runTvrx(filled(row.cells[0]).split(u' ', Qt::SkipEmptyParts));
        EXPECT_EQ(run.exitCode, row.cells[1].toInt()) << row.where << "\n" << run.err.toStdString();
        for (const QString& piece : row.cells[2].split(QStringLiteral(" | ")))
            expectPiece(run.out, filled(piece), row.where);
        expectPiece(run.err, row.cells[3], row.where);
    }
}

}  // namespace tvrx::test
