#include "Command.h"

#include "session/data/DbConnection.h"
#include "session/data/SamplePharmacy.h"
#include "session/data/Schema.h"
#include "session/runtime/Failure.h"

#include <QUrl>

#include <cstdio>
#include <optional>

namespace tvrx::cli {

namespace {

struct InitOptions {
    QString database;
    bool sample = false;
};

// "--db URL" or "--db=URL", and "--sample"; nothing else.
std::optional<InitOptions> parseOptions(const QStringList& args, QString& problem) {
    InitOptions options;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString& arg = args[i];
        if (arg == QLatin1String("--sample")) {
            options.sample = true;
        } else if (arg == QLatin1String("--db") && i + 1 < args.size()) {
            options.database = args[++i];
        } else if (arg.startsWith(QLatin1String("--db="))) {
            options.database = arg.mid(5);
        } else {
            problem = arg == QLatin1String("--db")
                          ? QStringLiteral("--db needs a database")
                          : QStringLiteral("unexpected argument '%1'").arg(arg);
            return std::nullopt;
        }
    }
    if (options.database.isEmpty()) {
        problem = QStringLiteral("--db is required");
        return std::nullopt;
    }
    return options;
}

// The database as the messages name it, without a password.
QString shown(const QString& database) {
    const QUrl url(database);
    return url.scheme().isEmpty() ? database : url.toDisplayString(QUrl::RemovePassword);
}

QString oneLine(const QString& text) {
    return text.simplified();
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

int runInit(const InitOptions& options) {
    DbConnection connection;
    try {
        connection.setConnectionString(options.database);
        connection.Open();
    } catch (const Failure& failure) {
        std::fprintf(stderr, "tvrx init: cannot open the database %s: %s\n",
                     qPrintable(shown(options.database)),
                     qPrintable(oneLine(failure.description())));
        return kExitFailed;
    }
    try {
        printSchema(applySchema(connection));
        if (options.sample) printSample(loadSamplePharmacy(connection));
        printContents(connection);
    } catch (const Failure& failure) {
        std::fprintf(stderr, "tvrx init: %s: %s\n", qPrintable(shown(options.database)),
                     qPrintable(oneLine(failure.description())));
        return kExitFailed;
    }
    return kExitOk;
}

}  // namespace

Command initCommand() {
    Command command{
        QStringLiteral("init"),
        QStringLiteral(
            "create or upgrade a pharmacy database, optionally with the sample pharmacy"),
        QStringLiteral("tvrx init --db URL [--sample]\n"
                       "  URL: sqlite:///path/to/pharmacy.db, a bare path (SQLite), or\n"
                       "       postgresql://user@host:port/database"),
        {}};
    command.run = [command](const QStringList& args) {
        QString problem;
        const std::optional<InitOptions> options = parseOptions(args, problem);
        return options ? runInit(*options) : usageError(command, problem);
    };
    return command;
}

}  // namespace tvrx::cli
