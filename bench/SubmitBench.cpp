// How long the road of a claim takes: SubmitClaim from the call to ClaimDone, for one fill
// of the sample pharmacy (SQLite, a temporary file) billed to the payer simulator running as
// a second program with the sample payers. Each run builds the header and the body, writes
// the Claims row, exchanges the files, reads the answer and saves the fill. The same claim
// goes out again and again, so after the first the payer answers it as already paid (the
// same work for the library). It reports the median and the 90th percentile; the target is
// a median under 50 ms.
#include "Timings.h"
#include "claims/PlanRows.h"
#include "claims/ScriptedTransmitFace.h"
#include "claims/Wrapper.h"
#include "session/data/DbConnection.h"
#include "session/data/SamplePharmacy.h"
#include "session/data/Schema.h"
#include "session/runtime/RecordingErrorReporter.h"
#include "session/runtime/ScriptedUserInteraction.h"
#include "session/runtime/Session.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <vector>

namespace {

using namespace tvrx;
using Clock = std::chrono::steady_clock;

// The payer simulator on an exchange directory of its own; started() once it watches it.
class Simulator {
public:
    explicit Simulator(const QTemporaryDir& work) : exchange_(work.filePath("exchange")) {
        QDir().mkpath(exchange_);
        process_.start(QStringLiteral(TVRX_BINARY_DIR "/apps/tvrx-switch"),
                       {"--dir", exchange_, "--payers",
                        QStringLiteral(TVRX_SOURCE_DIR "/samples/payers/sample-pharmacy.json"),
                        "--history", work.filePath("history.db")});
        while (process_.waitForReadyRead(10000)) {
            log_ += process_.readAllStandardOutput();
            if (log_.contains("watching")) return;
        }
    }
    ~Simulator() {
        process_.terminate();
        process_.waitForFinished(5000);
    }
    bool started() const { return log_.contains("watching"); }
    const QString& exchange() const { return exchange_; }

private:
    QString exchange_;
    QProcess process_;
    QByteArray log_;
};

void BM_SubmitClaimToClaimDone(benchmark::State& state) {
    mdlMain::resetSession();
    auto reporter = std::make_shared<RecordingErrorReporter>();
    mdlMain::ErrorReporter = reporter;
    auto user = std::make_shared<ScriptedUserInteraction>();
    user->setPermissive(true);
    mdlMain::UserService = user;
    auto face = std::make_shared<ScriptedTransmitFace>();
    face->tickEvery(1000);
    face->abortAfterTicks(10);
    setTransmitFace(face);

    QTemporaryDir work;
    auto db =
        std::make_shared<DbConnection>(QStringLiteral("sqlite://") + work.filePath("pharmacy.db"));
    db->Open();
    applySchema(*db);
    loadSamplePharmacy(*db);
    const Simulator simulator(work);
    if (!simulator.started()) {
        state.SkipWithError("tvrx-switch did not start");
        return;
    }
    Wrapper().setConnection(db);
    std::vector<double> milliseconds;

    for (auto _ : state) {
        const Clock::time_point start = Clock::now();
        Wrapper wrapper;
        wrapper.colRX()->Item(1)->RXInfoID = 1;
        wrapper.colRX()->Item(1)->GetData();
        PlanRows rows = openPlanRows(wrapper.colRX()->Item(1)->PatInsID);
        const bool done = wrapper.SubmitClaim(simulator.exchange(), rows.rsPatIns, rows.rsIns);
        const double elapsed =
            std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        if (!done || !reporter->reports().isEmpty()) {
            state.SkipWithError("the claim was not answered cleanly");
            break;
        }
        state.SetIterationTime(elapsed / 1000.0);
        milliseconds.push_back(elapsed);
    }
    reportTimings(state, milliseconds, false);
    setTransmitFace(nullptr);
    mdlMain::resetSession();
}
BENCHMARK(BM_SubmitClaimToClaimDone)
    ->UseManualTime()
    ->Iterations(50)
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
