// Runs a failing step in a failure frame and checks that the report arrived.
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Frame.h"
#include "session/runtime/RecordingErrorReporter.h"
#include "session/runtime/Session.h"

#include <cstdio>
#include <memory>

int main() {
    auto reporter = std::make_shared<tvrx::RecordingErrorReporter>();
    tvrx::mdlMain::ErrorReporter = reporter;
    bool ranOn = false;
    tvrx::Frame frame("clsDoc:GetData");
    frame([] { tvrx::fail(tvrx::err::Overflow); });
    frame([&] { ranOn = true; });

    const bool ok = ranOn && reporter->reports().size() == 1 &&
                    reporter->reports().at(0).location == QStringLiteral("clsDoc:GetData") &&
                    reporter->reports().at(0).number == QStringLiteral("6");
    std::printf("add_subdirectory consumer: %s\n", ok ? "ok" : "FAILED");
    return ok ? 0 : 1;
}
