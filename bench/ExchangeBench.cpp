// How quickly a claim exchange notices its answer: the time from the moment the response
// is renamed into the exchange directory to the moment ExchangeClaimFile returns with it
// read. A second thread plays the transmission program. It reports the median, the 90th
// percentile and the maximum; the target is a 90th percentile below 5 ms.
#include "Timings.h"
#include "claims/ClaimExchange.h"
#include "claims/ScriptedTransmitFace.h"
#include "claims/Wrapper.h"
#include "session/runtime/RecordingErrorReporter.h"
#include "session/runtime/ScriptedUserInteraction.h"
#include "session/runtime/Session.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <thread>
#include <vector>

namespace {

using namespace tvrx;
using Clock = std::chrono::steady_clock;

const QByteArray kAnswer = QByteArrayLiteral(
    "\x02"
    "D0B1"
    "\x1d\x1c"
    "F4CLAIM PAID");

// Collects the request as the transmission program does; its stem, empty if none came.
QString collectRequest(const QDir& folder) {
    const auto deadline = Clock::now() + std::chrono::seconds(5);
    while (Clock::now() < deadline) {
        const QStringList requests = folder.entryList({QStringLiteral("*.clm")}, QDir::Files);
        if (!requests.isEmpty() && QFile::remove(folder.filePath(requests.first()))) {
            return requests.first().chopped(4);
        }
        std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
    return {};
}

// The transmission program: collects the request, waits until the wait is surely under
// way, and renames its answer into place. Returns the moment of landing.
Clock::time_point answerOnce(const QDir& folder) {
    const QString staged = folder.filePath(QStringLiteral(".answer"));
    QFile file(staged);
    if (!file.open(QIODevice::WriteOnly) || file.write(kAnswer) != kAnswer.size()) return {};
    file.close();
    const QString stem = collectRequest(folder);
    if (stem.isEmpty()) return {};
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
    const Clock::time_point landed = Clock::now();
    const bool renamed = QFile::rename(staged, folder.filePath(stem + QStringLiteral(".RSP")));
    return renamed ? landed : Clock::time_point{};
}

void BM_ResponseLandingToReturn(benchmark::State& state) {
    mdlMain::resetSession();
    mdlMain::ErrorReporter = std::make_shared<RecordingErrorReporter>();
    auto user = std::make_shared<ScriptedUserInteraction>();
    user->setPermissive(true);
    mdlMain::UserService = user;
    auto face = std::make_shared<ScriptedTransmitFace>();
    face->tickEvery(1000);
    face->abortAfterTicks(5);
    setTransmitFace(face);
    QTemporaryDir folder;
    const QDir exchange(folder.path());
    Wrapper wrapper;
    std::vector<double> milliseconds;

    for (auto _ : state) {
        Clock::time_point landed;
        std::thread program([&] { landed = answerOnce(exchange); });
        QByteArray read;
        const bool answered = wrapper.ExchangeClaimFile(folder.path(),
                                                        QStringLiteral("\x02"
                                                                       "610066"
                                                                       "\x1c"
                                                                       "AM01"),
                                                        [&read](const QString& path) {
                                                            QFile response(path);
                                                            if (response.open(QIODevice::ReadOnly))
                                                                read = response.readAll();
                                                        });
        const Clock::time_point returned = Clock::now();
        program.join();
        if (!answered || read != kAnswer || landed == Clock::time_point{}) {
            state.SkipWithError("the exchange did not return the answer");
            break;
        }
        const double elapsed = std::chrono::duration<double, std::milli>(returned - landed).count();
        state.SetIterationTime(elapsed / 1000.0);
        milliseconds.push_back(elapsed);
    }
    reportTimings(state, milliseconds, true);
    setTransmitFace(nullptr);
    mdlMain::resetSession();
}
BENCHMARK(BM_ResponseLandingToReturn)
    ->UseManualTime()
    ->Iterations(200)
    ->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    // The file events reach the wait through the application's event loop.
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
