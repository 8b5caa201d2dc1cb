#include "responses/ResponseJson.h"
#include "responses/clsClaimResponse.h"
#include "session/runtime/RecordingErrorReporter.h"
#include "session/runtime/ScriptedUserInteraction.h"
#include "session/runtime/Session.h"

#include <QCoreApplication>

#include <benchmark/benchmark.h>

#include <memory>

namespace {

using namespace tvrx;

// The shipped sample texts, read from the source tree beside this file.
QString sampleText(const char* name) {
    const NotationResult read =
        readResponseFile(QStringLiteral(TVRX_SOURCE_DIR "/samples/responses/") + name + ".txt");
    return read.text.value_or(QString());
}

// One session for the whole program, as a host has: the lookup database is opened and its
// reject codes are read by the first decoding, outside the timed loops.
struct Session {
    std::shared_ptr<RecordingErrorReporter> reporter = std::make_shared<RecordingErrorReporter>();
    std::shared_ptr<ScriptedUserInteraction> user = std::make_shared<ScriptedUserInteraction>();

    Session() {
        user->setPermissive(true);
        mdlMain::ErrorReporter = reporter;
        mdlMain::UserService = user;
    }
    bool clean() const { return user->calls().isEmpty() && reporter->reports().isEmpty(); }
};

bool decode(const QString& claim) {
    clsClaimResponse response;
    response.Claim = claim;
    return response.BuildResponse();
}

// Decodes one sample over and over, each time on a fresh object as the file reader does,
// with the reject codes of the shipped lookup database.
void decodeSample(benchmark::State& state, const char* name) {
    static const Session session;
    const QString claim = sampleText(name);
    if (claim.isEmpty() || !decode(claim) || !session.clean()) {
        state.SkipWithError("the sample did not decode cleanly");
        return;
    }
    for (auto _ : state) benchmark::DoNotOptimize(decode(claim));
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK_CAPTURE(decodeSample, paid51_threeDur, "51-paid");
BENCHMARK_CAPTURE(decodeSample, rejected51_threeRejects, "51-rejected");
BENCHMARK_CAPTURE(decodeSample, paid32, "32-paid");

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
