#include "session/runtime/RecordingErrorReporter.h"
#include "session/runtime/Session.h"
#include "session/text/ClaimNotation.h"
#include "session/text/Encodings.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace {

using namespace tvrx;

// A paid response of the 5.1 layout, the text GetField scans field by field.
const QString& paidResponse() {
    static const QString text =
        *fromNotation(
             u"<STX>D0B1PCN12345671011234567890     20260314<RS><FS>AM20<FS>F4CLAIM PAID"
             u"<RS><FS>AM21<FS>ANP<FS>F3U123456789012345<FS>UF1<FS>UH01<RS><FS>AM23<FS>F50000123}"
             u"<FS>F60000250{<FS>FM1<FS>F90000373{<FS>FQ00000500{<GS><ETX>")
             .text;
    return text;
}

void BM_GetField(benchmark::State& state) {
    mdlMain::ErrorReporter = std::make_shared<RecordingErrorReporter>();
    const QString code = QStringLiteral("F9");
    QString separator;
    QString scan = paidResponse();
    for (auto _ : state) {
        benchmark::DoNotOptimize(mdlMain::GetField(code, {}, separator, scan));
    }
    mdlMain::resetSession();
}
BENCHMARK(BM_GetField);

void BM_OverPunch(benchmark::State& state) {
    const QString amount = QStringLiteral("0000123}");
    for (auto _ : state) {
        QString text = amount;
        benchmark::DoNotOptimize(mdlMain::OverPunch(text));
    }
}
BENCHMARK(BM_OverPunch);

}  // namespace

BENCHMARK_MAIN();
