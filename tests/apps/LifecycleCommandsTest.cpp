#include "support/SampleProgramFixture.h"
#include "support/TvrxProgram.h"

namespace tvrx {
namespace {

class LifecycleCommandsTest : public test::SampleProgramFixture {};

TEST_P(LifecycleCommandsTest, VoidsHoldsDeletesAndListsTheWantbook) {
    test::expectRunsOfFile(QStringLiteral("lifecycle-commands.tsv"), [&](QString cell) {
        return cell.replace(QStringLiteral("$DB"), connectionString());
    });
}

TVRX_BACKENDS(LifecycleCommandsTest);

}  // namespace
}  // namespace tvrx
