#pragma once

#include "session/runtime/Clock.h"
#include "session/runtime/RecordingErrorReporter.h"
#include "session/runtime/ScriptedUserInteraction.h"
#include "session/runtime/Session.h"

#include <QDateTime>

#include <gtest/gtest.h>

#include <memory>

namespace tvrx::test {

// A fresh session for every test: a recording reporter, a scripted user who fails the
// test on any question it was not told to expect, and a clock fixed at a known moment.
class SessionFixture : public ::testing::Test {
protected:
    void SetUp() override {
        mdlMain::resetSession();
        reporter = std::make_shared<RecordingErrorReporter>();
        user = std::make_shared<ScriptedUserInteraction>();
        user->setUnexpectedCallHandler(
            [](const QString& message) { ADD_FAILURE() << message.toStdString(); });
        clock = std::make_shared<FixedClock>(QDateTime(QDate(2026, 3, 14), QTime(9, 26, 53)));
        mdlMain::ErrorReporter = reporter;
        mdlMain::UserService = user;
        mdlMain::ClockService = clock;
    }

    void TearDown() override {
        EXPECT_EQ(user->pendingAnswers(), 0) << "answers were queued that nobody asked for";
        mdlMain::resetSession();
    }

    std::shared_ptr<RecordingErrorReporter> reporter;
    std::shared_ptr<ScriptedUserInteraction> user;
    std::shared_ptr<FixedClock> clock;
};

}  // namespace tvrx::test
