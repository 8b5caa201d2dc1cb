#include "support/DatabaseFixture.h"
#include "support/TvrxProgram.h"

namespace tvrx {
namespace {

using test::programBuilt;
using test::runTvrx;

// "tvrx show plan|coverage" and "tvrx plan add" over the sample pharmacy. The lookups of the
// plan directory itself are tested with fixture plans in tests/records.
class PlanCommandsTest : public test::DatabaseFixture {};

TEST_P(PlanCommandsTest, ShowsAndAddsPlans) {
    if (!programBuilt()) GTEST_SKIP() << "the command-line host is not built";
    const QString url = connectionString();
    ASSERT_EQ(runTvrx({"init", "--db", url, "--sample"}).exitCode, 0);

    const test::ExpectedRun runs[] = {
        {{"show", "plan", "1", "--db", url}, 0, "BIN:                           004410\n", ""},
        {{"show", "coverage", "4", "--db=" + url, "--json"},
         0,
         "\"OPatInsID\": 8, \"InsID\": 3, \"PatientID\": 4, \"InsCode\": \"PASF51\"",
         ""},
        {{"show", "plan", "99", "--db", url}, 1, "", "tvrx show: no plan with InsID 99\n"},
        {{"show", "plan", "40000", "--db", url}, 1, "", "error 6: Overflow"},
        {{"show", "plan", "1"}, 2, "", "no database: give --db URL or set TVRX_DB"},
        {{"plan", "add", "--nabp", "4512345", "--db", url, "--answer", "no"},
         0,
         "Plan 4: , ",
         "Would you like to use the Insurance lookup feature?\nYes/No [Yes]? no\n"},
        {{"show", "plan", "4", "--db", url}, 0, "EA,EB,EW1\n", ""},
        {{"plan", "add", "--nabp", "4512345", "--bin", "999999", "--pcn", "NONE", "--db", url},
         0,
         "No plan was created.\n",
         ""},
        {{"plan", "add", "--nabp", "4512345", "--bin", "999999", "--db", url},
         2,
         "",
         "--bin and --pcn go together"},
    };
    test::expectRuns(runs);
    EXPECT_EQ(runTvrx({"show", "plan", "2"}, url).exitCode, 0) << "the database from TVRX_DB";
}

TVRX_BACKENDS(PlanCommandsTest);

}  // namespace
}  // namespace tvrx
