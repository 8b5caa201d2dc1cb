#include "support/DatabaseFixture.h"
#include "support/TvrxProgram.h"

namespace tvrx {
namespace {

class LifecycleCommandsTest : public test::DatabaseFixture {};

TEST_P(LifecycleCommandsTest, VoidsHoldsDeletesAndListsTheWantbook) {
    if (!test::programBuilt()) GTEST_SKIP() << "the command-line host is not built";
    ASSERT_EQ(test::runTvrx({"init", "--db", connectionString(), "--sample"}).exitCode, 0);
    test::expectRunsOfFile(QStringLiteral("lifecycle-commands.tsv"), [&](QString cell) {
        return cell.replace(QStringLiteral("$DB"), connectionString());
    });
}

TVRX_BACKENDS(LifecycleCommandsTest);

}  // namespace
}  // namespace tvrx
