#include "Command.h"
#include "RecordSession.h"

#include "session/data/DbConnection.h"
#include "session/data/SamplePharmacy.h"
#include "session/data/Schema.h"
#include "session/runtime/Failure.h"

#include <cstdio>

namespace tvrx::cli {

namespace {

const QString kSample = QStringLiteral("sample");

void declare(CommandLine& line) {
    line.addDatabaseOption();
    line.addFlag(kSample, QStringLiteral("load the sample pharmacy into an empty database"));
}

void printSchema(const SchemaReport& report) {
    if (report.applied.isEmpty()) {
        std::printf("Schema: version %d, up to date\n", report.versionAfter);
    } else {
        std::printf("Schema: version %d (was %d; applied %s)\n", report.versionAfter,
                    report.versionBefore, qPrintable(report.applied.join(QStringLiteral(", "))));
    }
}

void printSample(const SampleLoad& load) {
    if (load.loaded) {
        std::printf("Sample pharmacy: loaded, %d rows\n", load.rows);
    } else {
        std::printf("Sample pharmacy: not loaded, the database already holds records (table %s)\n",
                    qPrintable(load.occupiedTable));
    }
}

void printContents(DbConnection& connection) {
    const QVariant store =
        connection.Scalar(QStringLiteral("SELECT Name FROM Store ORDER BY StoreID"));
    std::printf("Store: %s\n", store.isNull() ? "(none)" : qPrintable(store.toString()));
    std::printf("Rows per table:\n");
    for (const QString& table : schemaTables()) {
        const qlonglong rows =
            connection.Scalar(QStringLiteral("SELECT COUNT(*) FROM %1").arg(table)).toLongLong();
        std::printf("  %-16s %lld\n", qPrintable(table), rows);
    }
}

int run(const CommandLine& line) {
    RecordSession session(line);
    const auto connection = session.open();
    if (!connection) return kExitFailed;
    try {
        printSchema(applySchema(*connection));
        if (line.isSet(kSample)) printSample(loadSamplePharmacy(*connection));
        printContents(*connection);
    } catch (const Failure& failure) {
        return line.failed(QStringLiteral("%1: %2").arg(shownDatabase(line.database()),
                                                        failure.description().simplified()));
    }
    return kExitOk;
}

}  // namespace

Command initCommand() {
    return {QStringLiteral("init"),
            QStringLiteral(
                "create or upgrade a pharmacy database, optionally with the sample pharmacy"),
            QStringLiteral("Creates the pharmacy's tables or brings them up to date, then counts\n"
                           "their rows. URL: sqlite:///path/to/pharmacy.db, a bare path (SQLite),\n"
                           "or postgresql://user@host:port/database."),
            declare, run};
}

}  // namespace tvrx::cli
