// How fast a 5.1 claim body with every segment is built. Two figures:
//
//  - BM_ClaimText51/engine: the layout engine alone, writing the text from values already
//    prepared (no database). Target: at least 500,000 claims a second on one core.
//  - BM_BuildClaim51/SQLite: the whole clsPrescription::BuildClaim of the same claim on a
//    SQLite file, with the statements it runs each time (nothing is cached between calls).
//
// The claim is a fill of the sample pharmacy made to carry every segment: other coverage,
// an injured worker's employer, DUR codes, sales tax, a compound of two ingredients,
// diagnoses, a control number and intermediary tags. A run fails if a build reports a
// failure, asks anything, or leaves a segment out.
//
//     bench_ClaimBench [benchmark options]
#include "claims/ClaimLayout.h"
#include "claims/ClaimPreparation.h"
#include "claims/Layouts.h"
#include "claims/PlanRows.h"
#include "prescription/clsPrescription.h"
#include "session/data/DbConnection.h"
#include "session/data/SamplePharmacy.h"
#include "session/data/Schema.h"
#include "session/runtime/Frame.h"
#include "session/runtime/RecordingErrorReporter.h"
#include "session/runtime/ScriptedUserInteraction.h"
#include "session/runtime/Session.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QList>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <memory>

namespace {

using namespace tvrx;

// Fill 9 of the sample, on the 5.1 plan, made into a claim with every segment.
constexpr qint32 kFill = 9;

// Each statement with its values, bound as everywhere else in the library.
struct Statement {
    const char* sql;
    QVariantList values;
};

const QList<Statement>& everySegment() {
    static const QList<Statement> statements{
        {"UPDATE INSURANCE SET ClaimFields = ? WHERE InsID = ?",
         {QStringLiteral("CX,CA,CM,CQ,DR,EJ,EA,EB,2E,AM06,DX,AM13"), 3}},
        {"UPDATE PATIENT SET EmployerID = ?, InjuryType = ?, InjuryDate = ? WHERE PatientID = ?",
         {5, QStringLiteral("LIFTING"), QDateTime(QDate(2026, 2, 2), QTime(0, 0)), 7}},
        {"UPDATE RXINFO SET OtherCoverage = ?, OPatInsID = ?, OtherType = ?, "
         "OtherIDQualifier = ?, PaidQualifier = ?, OInsAmount = ?, DURConflict = ?, "
         "DUROutcome = ?, Diagnosis = ?, Compound = ?, ControlNumber = ?, InsData = ?, AWP = ? "
         "WHERE RXInfoID = ?",
         {QStringLiteral("03"), 8, QStringLiteral("01"), QStringLiteral("03"), QStringLiteral("07"),
          4.25, QStringLiteral("DD"), QStringLiteral("1B"), QStringLiteral("F41.1,I10"), 1,
          QStringLiteral("CII-0042"), QStringLiteral("-EF02-EG2-EH18-EW05-EX000012345"), 9.375,
          kFill}},
        {"INSERT INTO Ingredients (RxInfoID, NAME, NDC, CostBasis, Qty, Cost) "
         "VALUES (?, ?, ?, ?, ?, ?)",
         {kFill, QStringLiteral("BUSPIRONE POWDER"), QStringLiteral("38779052403"),
          QStringLiteral("01"), 0.6, 6.25}},
        {"INSERT INTO Ingredients (RxInfoID, NAME, NDC, CostBasis, Qty, Cost) "
         "VALUES (?, ?, ?, ?, ?, ?)",
         {kFill, QStringLiteral("SUSPENSION BASE"), QStringLiteral("72140001607"),
          QStringLiteral("01"), 59.4, 3.125}},
    };
    return statements;
}

const char* const kSegments[] = {"AM07", "AM02", "AM03", "AM05", "AM06",
                                 "AM08", "AM11", "AM10", "AM13"};

// A session on a SQLite copy of the sample pharmacy with the claim above.
struct Pharmacy {
    QTemporaryDir folder;
    std::shared_ptr<RecordingErrorReporter> reporter = std::make_shared<RecordingErrorReporter>();
    std::shared_ptr<ScriptedUserInteraction> user = std::make_shared<ScriptedUserInteraction>();
    std::shared_ptr<DbConnection> db;

    Pharmacy() {
        mdlMain::resetSession();
        mdlMain::ErrorReporter = reporter;
        mdlMain::UserService = user;
        db = std::make_shared<DbConnection>(QStringLiteral("sqlite://") +
                                            folder.filePath(QStringLiteral("pharmacy.db")));
        db->Open();
        applySchema(*db);
        loadSamplePharmacy(*db);
        for (const Statement& statement : everySegment())
            db->Execute(QString::fromLatin1(statement.sql), statement.values);
        clsPrescription().setConnection(db);
    }
    ~Pharmacy() { mdlMain::resetSession(); }
    Pharmacy(const Pharmacy&) = delete;
    Pharmacy& operator=(const Pharmacy&) = delete;

    // Why the run does not count, or nothing.
    std::string fault(const QString& text) const {
        if (!reporter->reports().isEmpty()) {
            return "a build reported: " + reporter->reports().first().description.toStdString();
        }
        if (!user->calls().isEmpty())
            return "a build asked: " + user->calls().first().text().toStdString();
        for (const char* code : kSegments) {
            if (!text.contains(QLatin1String(code))) return std::string("no segment ") + code;
        }
        return {};
    }
};

std::unique_ptr<clsPrescription> loadedFill() {
    auto rx = std::make_unique<clsPrescription>();
    rx->RXInfoID = kFill;
    rx->PrescriptionType = EditRx;
    rx->GetData();
    return rx;
}

void BM_ClaimText51(benchmark::State& state) {
    Pharmacy pharmacy;
    const auto rx = loadedFill();
    PlanRows rows = openPlanRows(rx->PatInsID);
    Frame preparing("bench:prepare");
    claims::ClaimPreparation preparation(*rx, rows.rsIns, false, preparing);
    if (!preparation.shared() || !preparation.forLayout(QLatin1StringView("51"))) {
        state.SkipWithError("the claim's values could not be prepared");
        return;
    }
    const claims::Layout& layout = claims::segmentedClaimLayout();
    QString text;
    for (auto _ : state) {
        text.clear();
        Frame frame("bench:write");
        claims::writeLayout(text, layout, preparation.values, frame,
                            claims::FailurePolicy::LeaveOut);
        benchmark::DoNotOptimize(text.data());
    }
    state.SetItemsProcessed(state.iterations());
    state.counters["characters"] = double(text.size());
    if (const std::string fault = pharmacy.fault(text); !fault.empty()) {
        state.SkipWithError(fault.c_str());
    }
}

void BM_BuildClaim51(benchmark::State& state) {
    Pharmacy pharmacy;
    const auto rx = loadedFill();
    PlanRows rows = openPlanRows(rx->PatInsID);
    QString text;
    qint64 statements = 0;
    for (auto _ : state) {
        const qint64 before = pharmacy.db->statementsRun();
        text = rx->BuildClaim(rows.rsIns);
        statements = pharmacy.db->statementsRun() - before;
    }
    state.SetItemsProcessed(state.iterations());
    state.counters["statements"] = double(statements);
    if (const std::string fault = pharmacy.fault(text); !fault.empty()) {
        state.SkipWithError(fault.c_str());
    }
}

BENCHMARK(BM_ClaimText51)->Name("BM_ClaimText51/engine");
BENCHMARK(BM_BuildClaim51)->Name("BM_BuildClaim51/SQLite")->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
