#include "support/SampleProgramFixture.h"
#include "support/TvrxProgram.h"

#include <QFile>
#include <QTemporaryDir>

namespace tvrx {
namespace {

class ScreenCommandTest : public test::SampleProgramFixture {};

TEST_P(ScreenCommandTest, ScreensFillsAndKeepsTheirImages) {
    QTemporaryDir folder;
    QFile scan(folder.filePath(QStringLiteral("scan.png")));
    ASSERT_TRUE(scan.open(QIODevice::WriteOnly));
    scan.write("scanned");
    scan.close();
    test::expectRunsOfFile(QStringLiteral("screen-commands.tsv"), [&](QString cell) {
        return cell.replace(QStringLiteral("$DB"), connectionString())
            .replace(QStringLiteral("$DIR"), folder.path());
    });
    QFile pdf(folder.filePath(QStringLiteral("report-1.pdf")));
    ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
    EXPECT_TRUE(pdf.read(5) == "%PDF-");
}

TVRX_BACKENDS(ScreenCommandTest);

}  // namespace
}  // namespace tvrx
