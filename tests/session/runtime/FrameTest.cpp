#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Frame.h"
#include "support/SessionFixture.h"

#include <stdexcept>

namespace tvrx {
namespace {

using FrameTest = test::SessionFixture;

// Failures of the platform's own, foreign exceptions and anything else thrown are each
// reported, and the steps after them still run.
TEST_F(FrameTest, ReportsEachFailedStepAndRunsToTheEnd) {
    int steps = 0;
    Frame frame("clsTest:Method");
    frame([&] { fail(err::TypeMismatch); });
    frame([&] { ++steps; });
    frame([&] { throw std::runtime_error("disk on fire"); });
    frame([&] { throw 42; });
    frame([&] { ++steps; });
    EXPECT_EQ(steps, 2);
    ASSERT_EQ(reporter->reports().size(), 3);
    const ErrorReport& first = reporter->reports().at(0);
    EXPECT_EQ(first.location, "clsTest:Method");
    EXPECT_EQ(first.number, "13");
    EXPECT_EQ(first.description, "Type mismatch");
    EXPECT_EQ(first.source, "TVRX1");
    EXPECT_EQ(first.details, "");
    EXPECT_TRUE(first.flag1);
    EXPECT_FALSE(first.flag2);
    EXPECT_TRUE(first.flag3);
    EXPECT_TRUE(first.flag4);
    EXPECT_EQ(reporter->reports().at(1).number, "51");
    EXPECT_EQ(reporter->reports().at(1).description, "disk on fire");
}

TEST_F(FrameTest, SpecialHandlersTakeTheirOwnPath) {
    struct Case {
        OnFailure handling;
        bool boxShown;
        bool laterStepRuns;
    };
    const Case cases[] = {
        {OnFailure::BoxAndLeave, true, false},
        {OnFailure::BoxAndContinue, true, true},
        {OnFailure::LeaveSilently, false, false},
        {OnFailure::ContinueSilently, false, true},
    };
    for (const Case& c : cases) {
        reporter->clear();
        bool boxShown = false;
        bool laterStepRan = false;
        Frame frame("clsTest:Special");
        frame.on(err::LostLink, c.handling, [&] { boxShown = true; });
        frame([] { fail(err::LostLink); });
        frame([&] { laterStepRan = true; });
        frame([] { fail(err::Overflow); });
        EXPECT_EQ(boxShown, c.boxShown);
        EXPECT_EQ(laterStepRan, c.laterStepRuns);
        EXPECT_EQ(frame.left(), !c.laterStepRuns);
        // The special number is never reported; any other number still takes the standard path.
        ASSERT_EQ(reporter->reports().size(), c.laterStepRuns ? 1 : 0);
        if (c.laterStepRuns) {
            EXPECT_EQ(reporter->reports().at(0).number, "6");
        }
    }
}

TEST_F(FrameTest, DetailsAreBuiltWhenTheFailureIsReported) {
    int position = 1;
    Frame frame("mdlMain:GetField");
    frame.withDetails([&] { return QStringLiteral("Field Pos: %1").arg(position); });
    frame([&] {
        position = 32767;
        fail(err::Overflow);
    });
    ASSERT_EQ(reporter->reports().size(), 1);
    EXPECT_EQ(reporter->reports().at(0).details, "Field Pos: 32767");
}

TEST_F(FrameTest, AReportBeforeAnyReporterExistsCreatesOne) {
    mdlMain::ErrorReporter.reset();
    std::shared_ptr<RecordingErrorReporter> created;
    mdlMain::setReporterFactory([&] {
        created = std::make_shared<RecordingErrorReporter>();
        return created;
    });
    Frame frame("clsTest:Early");
    frame([] { fail(err::FileNotFound); });
    mdlMain::setReporterFactory({});
    ASSERT_TRUE(created);
    ASSERT_EQ(created->reports().size(), 1);
    EXPECT_EQ(created->reports().at(0).description, "File not found");
}

}  // namespace
}  // namespace tvrx
