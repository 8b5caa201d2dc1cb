#include "fuzz/targets/FuzzSession.h"

#include "session/runtime/ScriptedUserInteraction.h"
#include "session/runtime/Session.h"

namespace tvrx::fuzz {

FuzzSession::FuzzSession() : reporter_(std::make_shared<RecordingErrorReporter>()) {
    mdlMain::resetSession();
    auto user = std::make_shared<ScriptedUserInteraction>();
    user->setPermissive(true);
    mdlMain::ErrorReporter = reporter_;
    mdlMain::UserService = user;
}

FuzzSession::~FuzzSession() {
    mdlMain::resetSession();
}

void check(bool condition, const char* what) {
    if (!condition) throw FuzzCheckFailed(what);
}

}  // namespace tvrx::fuzz
