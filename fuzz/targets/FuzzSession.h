#pragma once

#include "session/runtime/RecordingErrorReporter.h"

#include <memory>
#include <stdexcept>

namespace tvrx::fuzz {

// A fresh session for one input: a recording reporter and a user who answers every
// question with its default. The session is forgotten again when the input is done, so
// no input sees what another left behind.
class FuzzSession {
public:
    FuzzSession();
    ~FuzzSession();
    FuzzSession(const FuzzSession&) = delete;
    FuzzSession& operator=(const FuzzSession&) = delete;

    RecordingErrorReporter& reporter() { return *reporter_; }

private:
    std::shared_ptr<RecordingErrorReporter> reporter_;
};

// An invariant of a target that an input broke.
class FuzzCheckFailed : public std::logic_error {
public:
    using std::logic_error::logic_error;
};

// Throws FuzzCheckFailed with `what` unless the condition holds.
void check(bool condition, const char* what);

}  // namespace tvrx::fuzz
