#include "support/SampleProgramFixture.h"
#include "support/TvrxProgram.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace tvrx {
namespace {

using test::runTvrx;

// "tvrx claim build" and "tvrx claim explain" over the sample pharmacy, which has a fill on
// a plan of every layout. The texts themselves are checked byte for byte in tests/claims;
// here the command's plumbing: the layouts chosen, the boxes, --hex, --json, and that what
// build prints, explain reads back.
class ClaimCommandsTest : public test::SampleProgramFixture {};

TEST_P(ClaimCommandsTest, BuildsEveryLayoutOfTheSample) {
    const QString url = connectionString();
    const test::ExpectedRun runs[] = {
        {{"claim", "build", "1", "--db", url},
         0,
         {"header 32, body 32", "header:   <STX>0044103201SCI", "body:     <GS>0100001"},
         ""},
        {{"claim", "build", "4", "--db", url}, 0, {"header 40, body 40"}, ""},
        {{"claim", "build", "6", "--db", url}, 0, {"header 51, body 51", "<RS><FS>AM11"}, ""},
        {{"claim", "build", "11", "--db", url}, 0, {"header 3B, body 3B"}, ""},
        {{"claim", "build", "12", "--db", url}, 0, {"header other, body 3C"}, ""},
        {{"claim", "build", "13", "--db", url}, 0, {"header other, body other"}, ""},
        {{"claim", "build", "6", "--reversal", "--hex", "--db", url},
         0,
         {"reversal 51", "reversal: <STX>00468251B2F51", "02 30 30 34 36 38 32 35 31 42 32"},
         ""},
        {{"claim", "build", "1", "--other", "--answer", "ok", "--db", url},
         1,
         {"header:   (empty)"},
         "[Tessivar (critical)] Other insurance not found."},
        {{"claim", "build", "99", "--db", url}, 1, {}, "no fill with RXInfoID 99"},
        {{"claim", "build", "x", "--db", url}, 2, {}, "not a whole number"},
    };
    test::expectRuns(runs);
}

TEST_P(ClaimCommandsTest, ExplainsWhatBuildPrinted) {
    const test::ProgramRun built =
        runTvrx({"claim", "build", "11", "--json", "--db", connectionString()});
    ASSERT_EQ(built.exitCode, 0) << built.err.toStdString();
    const QJsonObject object = QJsonDocument::fromJson(built.out.toUtf8()).object();
    EXPECT_EQ(object.value("Form").toString(), "3B");
    EXPECT_TRUE(object.value("boxes").toArray().isEmpty());
    EXPECT_TRUE(object.value("reports").toArray().isEmpty());
    const QString claim = object.value("header").toString() + object.value("body").toString();

    const test::ProgramRun explained = runTvrx({"claim", "explain", "-"}, {}, claim.toLatin1());
    EXPECT_EQ(explained.exitCode, 0) << explained.err.toStdString();
    for (const char* line : {"Header (layout 3B)", "Bank identification number", "\"017010\"",
                             "CA   Patient first name", "\"Owen        \"", "Claim 1 (layout 3B)",
                             "Prescription number", "\"0100007\"", "DU   Gross amount due"}) {
        EXPECT_TRUE(explained.out.contains(QLatin1String(line))) << line;
    }

    const test::ProgramRun alone =
        runTvrx({"claim", "explain", "-"}, {}, object.value("body").toString().toLatin1());
    EXPECT_EQ(alone.exitCode, 2);
    const test::ProgramRun withForm = runTvrx({"claim", "explain", "-", "--form", "3C"}, {},
                                              object.value("body").toString().toLatin1());
    EXPECT_EQ(withForm.exitCode, 1) << "a 3B body is no 3C body";
    EXPECT_TRUE(
        withForm.out.contains("! The fixed head is 65 characters long; the layout's head has 60"))
        << withForm.out.toStdString();
}

TVRX_BACKENDS(ClaimCommandsTest);

}  // namespace
}  // namespace tvrx
