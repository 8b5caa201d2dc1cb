#include "support/DatabaseFixture.h"
#include "support/TvrxProgram.h"

namespace tvrx {
namespace {

// "tvrx void", "tvrx delete" and "tvrx wantbook" over the sample pharmacy, one run after
// the other, each question answered with --answer as a script would.
class LifecycleCommandsTest : public test::DatabaseFixture {};

TEST_P(LifecycleCommandsTest, VoidsHoldsDeletesAndListsTheWantbook) {
    if (!test::programBuilt()) GTEST_SKIP() << "the command-line host is not built";
    const QString url = connectionString();
    const test::ExpectedRun runs[] = {
        {{"init", "--db", url, "--sample"}, 0, {"Sample pharmacy: loaded"}, ""},
        // An original without refills: the choice, answered Void; a tracked drug's stock
        // takes the quantity back.
        {{"void", "100009", "--db", url, "--answer", "Yes", "--answer", "1"},
         0,
         {"Fill 13: prescription 100009, refill 0: voided\n", "remaining 180, refills 6",
          "stock of ATORVASTATIN 20MG TAB: 150"},
         "Delete, Void or Hold?"},
        {{"void", "100009", "--db", url, "--answer", "Yes"},
         0,
         {"refill 0: not voided\n", "remaining 150, refills 5", "ATORVASTATIN 20MG TAB: 120"},
         "Do you want remove the VOID from this prescription?"},
        {{"void", "100003", "--db", url, "--answer", "Yes", "--answer", "3", "--json"},
         0,
         {"\"done\": true", "\"Voided\": true, \"OnHold\": true, \"Deleted\": false",
          "\"QtyRemain\": 30, \"Refills\": 1, \"Stock\": 300"},
         "Do you want to VOID/HOLD this prescription?"},
        // Deleted from the dialog: the stock takes the quantity back twice.
        {{"void", "100006", "--db", url, "--answer", "Yes", "--answer", "Delete"},
         0,
         {"Fill 10: prescription 100006, refill 0: deleted\n",
          "stock of VENTARIS HFA 90MCG INHALER: 8"},
         "Delete, Void or Hold?"},
        {{"void", "100001", "--refill", "1", "--db", url, "--answer", "No"},
         1,
         {"Fill 2: prescription 100001, refill 1: not voided, nothing changed"},
         "Do you want to VOID/HOLD this prescription?"},
        {{"void", "100001", "--refill", "7", "--db", url},
         1,
         {},
         "tvrx void: prescription 100001 has no refill 7 that is not deleted\n"},
        {{"void", "100006", "--db", url}, 1, {}, "tvrx void: no prescription number 100006\n"},
        {{"delete", "12", "--db", url},
         0,
         {"Fill 12: prescription 100008, refill 0: deleted\n", "stock of LISINOPRIL 10MG TAB: 270"},
         ""},
        {{"delete", "12", "--db", url}, 1, {}, "tvrx delete: fill 12 is already deleted\n"},
        {{"delete", "14", "--override", "--db", url, "--json"},
         0,
         {"\"RXInfoID\": 14, \"Number\": 100010", "\"present\": false", "\"Stock\": 80",
          "\"reports\": []"},
         ""},
        {{"delete", "99", "--db", url}, 1, {}, "tvrx delete: no fill with RXInfoID 99\n"},
        {{"wantbook", "--db", url},
         0,
         {"DrugID  Drug",
          "8       LEVOTHYROXINE 50MCG TAB                 45        90       360 "
          "        4\n"},
         ""},
        {{"wantbook", "--db", url, "--json"},
         0,
         {"{\"lines\": [{\"Date\":\"2026-03-07 16:45:03\",\"DrugID\":8,\"MinReorderQty\":90,"
          "\"Name\":\"LEVOTHYROXINE 50MCG TAB\",\"OrderQty\":4,\"PackageSize\":90,"
          "\"ParQty\":360,\"Stock\":45}], \"reports\": []}\n"},
         ""},
    };
    test::expectRuns(runs);
}

TVRX_BACKENDS(LifecycleCommandsTest);

}  // namespace
}  // namespace tvrx
