#include "support/DataRows.h"
#include "support/TvrxProgram.h"

#include <QFile>

namespace tvrx {
namespace {

using test::expectPiece;

QByteArray standardInput(const QString& path) {
    if (path.isEmpty()) return {};
    QFile file(QStringLiteral(TVRX_SOURCE_DIR "/") + path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

// Reading the arguments, help and usage errors, standard input as "-", and the JSON form:
// every command the same way.
TEST(CommandLine, ReadsArgumentsAlikeInEveryCommand) {
    if (!test::programBuilt()) GTEST_SKIP() << "the command-line host is not built";
    for (const test::DataRow& row : test::dataRows(QStringLiteral("command-line.tsv"))) {
        ASSERT_EQ(row.cells.size(), 5) << row.where;
        const QStringList args = QString(row.cells[0])
                                     .replace(QStringLiteral("$SAMPLES"),
                                              QStringLiteral(TVRX_SOURCE_DIR "/samples/responses"))
                                     .split(QLatin1Char(' '), Qt::SkipEmptyParts);
        const test::ProgramRun run = test::runTvrx(args, {}, standardInput(row.cells[1]));
        EXPECT_EQ(run.exitCode, row.cells[2].toInt()) << row.where << "\n" << run.err.toStdString();
        expectPiece(run.out, row.cells[3], row.where);
        expectPiece(run.err, row.cells[4], row.where);
    }
}

}  // namespace
}  // namespace tvrx
