#include "support/DatabaseFixture.h"
#include "support/TvrxProgram.h"

namespace tvrx {
namespace {

using test::runTvrx;

// "tvrx edit" and "tvrx generate" over the sample pharmacy, one run after the other: the
// sample's prescription 100001 has three fills; it moves to a new number, which a refill
// of the old number then follows (its refill 1; the old number would have made refill 3).
class EditCommandsTest : public test::DatabaseFixture {};

TEST_P(EditCommandsTest, EditsAndMovesPrescriptions) {
    if (!test::programBuilt()) GTEST_SKIP() << "the command-line host is not built";
    const QString url = connectionString();
    const test::ExpectedRun runs[] = {
        {{"init", "--db", url, "--sample"}, 0, {"Sample pharmacy: loaded"}, ""},
        {{"edit", "100001", "--rph", "1", "--db", url, "--answer", "2"},
         0,
         {"Fill 2: prescription 100001, refill 1\n"},
         "[RX 100001 FOR BRENNAN, THOMAS]"},
        {{"edit", "100001", "--rph", "1", "--db", url, "--answer", "c"},
         1,
         {"Prescription 100001: not loaded for editing"},
         "      RXInfoID | Number | Refill | Date | Quantity | Qty Left | Voided | Cost | Price"},
        {{"edit", "100001", "--refill", "7", "--db", url},
         1,
         {"Prescription 100001: not loaded for editing"},
         "The Refill Number entered,  7\n was not found."},
        {{"generate", "100001", "--rph", "1", "--db", url, "--json"},
         0,
         {"\"result\": true", "\"RefillNumber\": 0", "\"GeneratedRx\": 100001"},
         ""},
        {{"refill", "100001", "--rph", "1", "--db", url, "--answer", "Yes", "--answer", "OK",
          "--answer", "OK"},
         0,
         {", refill 1\n"},
         "was generated to a newer rx number"},
    };
    test::expectRuns(runs);
}

TVRX_BACKENDS(EditCommandsTest);

}  // namespace
}  // namespace tvrx
