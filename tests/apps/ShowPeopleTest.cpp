#include "support/DatabaseFixture.h"
#include "support/TvrxProgram.h"

namespace tvrx {
namespace {

using test::programBuilt;
using test::runTvrx;

// "tvrx show patient|prescriber|drug|facility" over the sample pharmacy.
class ShowPeopleTest : public test::DatabaseFixture {};

TEST_P(ShowPeopleTest, ShowsTheRecordsAsTheyRead) {
    if (!programBuilt()) GTEST_SKIP() << "the command-line host is not built";
    const QString url = connectionString();
    ASSERT_EQ(runTvrx({"init", "--db", url, "--sample"}).exitCode, 0);

    const test::ExpectedRun runs[] = {
        {{"show", "patient", "1", "--db", url},
         0,
         "Telephone:                     (254) 555-0201\n",
         ""},
        // Patient 12 was entered without a facility: its null FacilityID is a reported fault.
        {{"show", "patient", "12", "--db", url},
         0,
         "LastName:                      Whitaker\n",
         "clsPatient:GetData: error 13: Type mismatch"},
        {{"show", "prescriber", "1", "--db", url, "--json"},
         0,
         "\"FaxNumber\": \"(254) 555-0111\", \"DateLastSeen\": \"2026-03-02 00:00:00\"",
         ""},
        {{"show", "drug", "2", "--db", url},
         0,
         "PackageSize:                   500\nDrugTimes:                     08:00,18:00\n",
         ""},
        {{"show", "facility", "2", "--db", url, "--json"},
         0,
         "\"Contact\": \"Marcus O'Leary\", \"ContactPhone\": \"2545550181\"",
         ""},
        {{"show", "patient", "99", "--db", url},
         1,
         "",
         "tvrx show: no patient with PatientID 99\n"},
        {{"show", "facility", "40000", "--db", url}, 1, "", "error 6: Overflow"},
    };
    test::expectRuns(runs);
}

TVRX_BACKENDS(ShowPeopleTest);

}  // namespace
}  // namespace tvrx
