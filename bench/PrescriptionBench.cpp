// How long reading and saving one fill takes: GetData then Update of a refill (so that the
// original's read, the count of fills used and the write to the original's row all run),
// with its patient, prescriber and drug read as GetData reads them and one watched value
// changed each time so that every save writes a change-log row, as an edit does. Targets:
// a median under 0.5 ms on SQLite and under 3 ms on a local PostgreSQL.
//
//     bench_PrescriptionBench [--pg postgresql://user@host:port/db] [--iterations N]
//                             [benchmark options]
//
// Without --pg the PostgreSQL run takes TVRX_TEST_PG_URL; with neither it is skipped.
#include "prescription/clsPrescription.h"
#include "session/data/DbConnection.h"
#include "session/data/SamplePharmacy.h"
#include "session/data/Schema.h"
#include "session/runtime/RecordingErrorReporter.h"
#include "session/runtime/ScriptedUserInteraction.h"
#include "session/runtime/Session.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QUrl>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace tvrx;
using Clock = std::chrono::steady_clock;

// The sample's first refill of prescription 100001.
constexpr qint32 kRefill = 2;

double percentile(std::vector<double> values, double share) {
    std::sort(values.begin(), values.end());
    return values[static_cast<size_t>(share * static_cast<double>(values.size() - 1))];
}

void preparePharmacy(DbConnection& db) {
    applySchema(db);
    loadSamplePharmacy(db);
}

QString durability(DbConnection& db) {
    if (db.backend() == Backend::SQLite) {
        return QStringLiteral("journal_mode=%1 synchronous=%2")
            .arg(db.Scalar(QStringLiteral("PRAGMA journal_mode")).toString(),
                 db.Scalar(QStringLiteral("PRAGMA synchronous")).toString());
    }
    return QStringLiteral("fsync=%1 synchronous_commit=%2")
        .arg(db.Scalar(QStringLiteral("SHOW fsync")).toString(),
             db.Scalar(QStringLiteral("SHOW synchronous_commit")).toString());
}

// One read and save; the statements it sent.
qint64 readAndSave(clsPrescription& rx, const DbConnection& db, double qty) {
    const qint64 before = db.statementsRun();
    rx.GetData();
    rx.Qty = qty;
    rx.Update();
    return db.statementsRun() - before;
}

void timeReadAndSave(benchmark::State& state, const QString& database, const QString& setting) {
    mdlMain::resetSession();
    auto reporter = std::make_shared<RecordingErrorReporter>();
    mdlMain::ErrorReporter = reporter;
    mdlMain::UserService = std::make_shared<ScriptedUserInteraction>();
    auto db = std::make_shared<DbConnection>(database);
    db->Open();
    if (!setting.isEmpty()) db->Execute(setting);
    preparePharmacy(*db);
    const qint64 logBefore = db->Scalar(QStringLiteral("SELECT COUNT(*) FROM LOG_RX")).toLongLong();
    // Handing over the connection opens the catalogue's own connection: a screen does it
    // once when it makes its fill, so it stays out of the timed read and save.
    clsPrescription rx;
    rx.setConnection(db);
    rx.RXInfoID = kRefill;
    std::vector<double> milliseconds;
    qint64 statements = 0;

    for (auto _ : state) {
        const double qty = milliseconds.size() % 2 == 0 ? 60 : 30;
        const Clock::time_point start = Clock::now();
        statements = readAndSave(rx, *db, qty);
        const double elapsed =
            std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        state.SetIterationTime(elapsed / 1000.0);
        milliseconds.push_back(elapsed);
    }
    const qint64 logged =
        db->Scalar(QStringLiteral("SELECT COUNT(*) FROM LOG_RX")).toLongLong() - logBefore;
    if (!reporter->reports().isEmpty()) {
        state.SkipWithError(("a read or save reported a failure: " +
                             reporter->reports().first().description.toStdString())
                                .c_str());
    } else if (logged != qint64(milliseconds.size())) {
        state.SkipWithError("not every save wrote one change-log row");
    } else if (!milliseconds.empty()) {
        state.counters["median_ms"] = percentile(milliseconds, 0.5);
        state.counters["p90_ms"] = percentile(milliseconds, 0.9);
        state.counters["statements"] = double(statements);
        state.SetLabel(durability(*db).toStdString());
    }
    mdlMain::resetSession();
}

// A database of its own on the server, dropped when the run ends.
class PostgresBenchDatabase {
public:
    explicit PostgresBenchDatabase(const QString& serverUrl) : server_(serverUrl) {
        server_.Open();
        server_.Execute(QStringLiteral("DROP DATABASE IF EXISTS %1 WITH (FORCE)").arg(name()));
        server_.Execute(QStringLiteral("CREATE DATABASE %1").arg(name()));
        QUrl url(serverUrl);
        url.setPath(QLatin1Char('/') + name());
        url_ = url.toString();
    }
    ~PostgresBenchDatabase() {
        server_.Execute(QStringLiteral("DROP DATABASE IF EXISTS %1 WITH (FORCE)").arg(name()));
    }
    PostgresBenchDatabase(const PostgresBenchDatabase&) = delete;
    PostgresBenchDatabase& operator=(const PostgresBenchDatabase&) = delete;

    const QString& url() const { return url_; }

private:
    static QString name() {
        return QStringLiteral("tvrx_bench_%1").arg(QCoreApplication::applicationPid());
    }

    DbConnection server_;
    QString url_;
};

struct Options {
    QString postgresUrl = qEnvironmentVariable("TVRX_TEST_PG_URL");
    int iterations = 2000;
};

// Takes "--pg URL" and "--iterations N" out of the arguments and leaves the rest to the
// benchmark library.
Options ownOptions(int& argc, char** argv) {
    Options options;
    int kept = 1;
    for (int i = 1; i < argc; ++i) {
        const std::string argument(argv[i]);
        if (argument == "--pg" && i + 1 < argc) {
            options.postgresUrl = QString::fromLocal8Bit(argv[++i]);
        } else if (argument == "--iterations" && i + 1 < argc) {
            options.iterations = std::max(1, std::atoi(argv[++i]));
        } else {
            argv[kept++] = argv[i];
        }
    }
    argc = kept;
    return options;
}

// setting: a statement the host runs on its connection before the pharmacy's work.
void registerRun(const char* name, int iterations, const std::function<QString()>& database,
                 const QString& setting = {}) {
    benchmark::RegisterBenchmark(name,
                                 [database, setting](benchmark::State& state) {
                                     timeReadAndSave(state, database(), setting);
                                 })
        ->UseManualTime()
        ->Iterations(iterations)
        ->Unit(benchmark::kMillisecond);
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const Options options = ownOptions(argc, argv);
    QTemporaryDir folder;
    const auto sqliteFile = [&folder](const char* name) {
        return [&folder, name] {
            return QStringLiteral("sqlite://") + folder.filePath(QString::fromLatin1(name));
        };
    };
    registerRun("BM_GetDataUpdate/SQLite", options.iterations, sqliteFile("pharmacy.db"));
    // Write-ahead logging with NORMAL syncs the log at checkpoints rather than at each
    // commit: a power cut may lose the latest saves, never the file's consistency.
    registerRun("BM_GetDataUpdate/SQLite-sync-normal", options.iterations, sqliteFile("normal.db"),
                QStringLiteral("PRAGMA synchronous=NORMAL"));
    std::unique_ptr<PostgresBenchDatabase> postgres;
    if (options.postgresUrl.isEmpty()) {
        std::printf("BM_GetDataUpdate/PostgreSQL skipped: give --pg URL or set TVRX_TEST_PG_URL\n");
    } else {
        postgres = std::make_unique<PostgresBenchDatabase>(options.postgresUrl);
        registerRun("BM_GetDataUpdate/PostgreSQL", options.iterations,
                    [&postgres] { return postgres->url(); });
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
