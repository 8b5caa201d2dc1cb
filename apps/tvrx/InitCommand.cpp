#include "Command.h"
#include "RecordSession.h"

#include "session/data/DbConnection.h"
#include "session/data/SamplePharmacy.h"
#include "session/data/Schema.h"
#include "session/runtime/Failure.h"

#include <cstdio>
#include <functional>

namespace tvrx::cli {

namespace {

const QString kSample = QStringLiteral("sample");
const QString kAltDb = QStringLiteral("alt-db");

void declare(CommandLine& line) {
    line.addDatabaseOption(CommandLine::Presence::Optional);
    line.addOption(kAltDb, QStringLiteral("URL"),
                   QStringLiteral("the alternate price source: its own price tables"));
    line.addFlag(kSample, QStringLiteral(
                              "load the sample pharmacy (or price tables) into an empty database"));
}

void printSchema(const char* what, const SchemaReport& report) {
    if (report.applied.isEmpty()) {
        std::printf("%s: version %d, up to date\n", what, report.versionAfter);
    } else {
        std::printf("%s: version %d (was %d; applied %s)\n", what, report.versionAfter,
                    report.versionBefore, qPrintable(report.applied.join(QStringLiteral(", "))));
    }
}

void printSample(const char* what, const SampleLoad& load) {
    if (load.loaded) {
        std::printf("%s: loaded, %d rows\n", what, load.rows);
    } else {
        std::printf("%s: not loaded, the database already holds records (table %s)\n", what,
                    qPrintable(load.occupiedTable));
    }
}

void printRows(DbConnection& connection, const MigrationSet& set) {
    std::printf("Rows per table:\n");
    for (const QString& table : schemaTables(set)) {
        const qlonglong rows =
            connection.Scalar(QStringLiteral("SELECT COUNT(*) FROM %1").arg(table)).toLongLong();
        std::printf("  %-16s %lld\n", qPrintable(table), rows);
    }
}

void initPharmacy(DbConnection& connection, bool sample) {
    printSchema("Schema", applySchema(connection));
    if (sample) printSample("Sample pharmacy", loadSamplePharmacy(connection));
    const QVariant store =
        connection.Scalar(QStringLiteral("SELECT Name FROM Store ORDER BY StoreID"));
    std::printf("Store: %s\n", store.isNull() ? "(none)" : qPrintable(store.toString()));
    printRows(connection, pharmacySchema());
}

void initPriceSource(DbConnection& connection, bool sample) {
    printSchema("Price source schema", applySchema(connection, priceSourceSchema()));
    if (sample) printSample("Sample price tables", loadPriceSourceSample(connection));
    printRows(connection, priceSourceSchema());
}

// Opens the database and runs the work on it; a failure is one line naming the database.
int initDatabase(const CommandLine& line, const QString& url,
                 const std::function<void(DbConnection&)>& work) {
    DbConnection connection;
    try {
        connection.setConnectionString(url);
        connection.Open();
    } catch (const Failure& failure) {
        return line.failed(QStringLiteral("cannot open the database %1: %2")
                               .arg(shownDatabase(url), failure.description().simplified()));
    }
    try {
        work(connection);
    } catch (const Failure& failure) {
        return line.failed(
            QStringLiteral("%1: %2").arg(shownDatabase(url), failure.description().simplified()));
    }
    return kExitOk;
}

int run(const CommandLine& line) {
    const bool sample = line.isSet(kSample);
    const QString priceSource = line.value(kAltDb);
    if (line.database().isEmpty() && priceSource.isEmpty())
        return line.usageError(QStringLiteral("no database: give --db URL, --alt-db URL or both"));
    RecordSession session(line);
    if (!line.database().isEmpty()) {
        const int done = initDatabase(line, line.database(),
                                      [&](DbConnection& db) { initPharmacy(db, sample); });
        if (done != kExitOk) return done;
    }
    if (priceSource.isEmpty()) return kExitOk;
    return initDatabase(line, priceSource, [&](DbConnection& db) { initPriceSource(db, sample); });
}

}  // namespace

Command initCommand() {
    return {QStringLiteral("init"),
            QStringLiteral(
                "create or upgrade a pharmacy database, optionally with the sample pharmacy"),
            QStringLiteral("Creates the pharmacy's tables or brings them up to date, then counts\n"
                           "their rows; with --alt-db the same for an alternate price source.\n"
                           "URL: sqlite:///path/to/pharmacy.db, a bare path (SQLite), or\n"
                           "postgresql://user@host:port/database."),
            declare, run};
}

}  // namespace tvrx::cli
