#include "support/DatabaseFixture.h"
#include "support/TvrxProgram.h"

namespace tvrx {
namespace {

using test::runTvrx;

// "tvrx price", "tvrx new" and "tvrx refill" over the sample pharmacy and its price source,
// one run after the other: the new prescription (100016, made today) is refilled with both
// same-day warnings answered, the sample's schedule 4 prescription 100005 has expired,
// 100013 was transferred, and 100012, past its year, was generated to a newer number.
class FillCommandsTest : public test::DatabaseFixture {};

TEST_P(FillCommandsTest, PricesStartsAndRefillsPrescriptions) {
    if (!test::programBuilt()) GTEST_SKIP() << "the command-line host is not built";
    const QString url = connectionString();
    const QString prices = connectSecond()->ConnectionString();
    const test::ExpectedRun runs[] = {
        {{"init", "--db", url, "--sample", "--alt-db", prices},
         0,
         {"Sample pharmacy: loaded", "Sample price tables: loaded, 16 rows"},
         ""},
        {{"price", "1", "--db", url},
         0,
         {"Tables: retail 22, copay 0, drug 22, patient 0, generic\n"
          "Retail: 6.6, band from 0 to below 5: 2 x base + 3\nCopay: 5\n"},
         ""},
        {{"price", "10", "--db", url, "--alt-db", prices, "--table", "20", "--json"},
         0,
         {"\"retail\": 88.672", "\"band\": {\"from\": 25, \"BreakPoint\": 99999",
          "\"customTable\": 20, \"custom\": 107.92"},
         ""},
        {{"new", "--patient", "1", "--drug", "1", "--prescriber", "1", "--qty", "30", "--ds", "30",
          "--refills", "3", "--rph", "1", "--db", url},
         0,
         {"prescription 100016, refill 0\n", "remaining 90, refills left 3",
          "price 6.60, copay 5.00"},
         ""},
        {{"new", "--patient", "99", "--drug", "1", "--prescriber", "1", "--qty", "30", "--ds", "30",
          "--refills", "3", "--rph", "1", "--db", url},
         1,
         {},
         "tvrx new: no patient with PatientID 99\n"},
        {{"refill", "100016", "--rph", "1", "--db", url, "--answer", "OK", "--answer", "OK"},
         0,
         {"prescription 100016, refill 1\n", "remaining 60, refills left 2"},
         "Less than 75% of the days supply has passed since"},
        {{"refill", "100005", "--rph", "1", "--db", url, "--answer", "2", "--json"},
         0,
         {"{\"code\": 10, \"number\": 100005, \"reports\": []}"},
         "Six months have elapsed since the original date on a controlled prescription."},
        {{"refill", "100003", "--rph", "1", "--patient", "5", "--db", url},
         1,
         {"Prescription 100003: not filled (code 0)"},
         " is not for the current patient."},
        {{"refill", "100013", "--rph", "1", "--db", url},
         1,
         {"Prescription 100013: not filled (code 0)"},
         "has been transferred."},
        {{"refill", "100012", "--rph", "1", "--db", url, "--answer", "No", "--answer", "1"},
         0,
         {"Prescription 100012: not filled: fax the doctor (code 11)"},
         "[Prescription Expired: 100012] A year has elapsed since the original date"},
    };
    test::expectRuns(runs);
}

TVRX_BACKENDS(FillCommandsTest);

}  // namespace
}  // namespace tvrx
