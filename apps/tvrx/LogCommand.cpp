#include "Command.h"
#include "RecordSession.h"
#include "ShowKinds.h"

#include "session/data/DbConnection.h"
#include "session/runtime/Frame.h"

#include <QXmlStreamReader>

#include <cstdio>
#include <optional>

namespace tvrx::cli {

namespace {

const char* kUsage =
    "tvrx log rx ID [--db URL]\n"
    "Lists the change log of the fill with RXInfoID ID, oldest first: when each change\n"
    "was saved, the pharmacist and technician of the edit (0 when none was named), and\n"
    "each changed value as \"old -> new\".\n"
    "  Without --db the database is taken from TVRX_DB.";

struct LogOptions {
    qint32 key = 0;
    QString database;
};

struct ChangedItem {
    QString item;
    QString before;
    QString after;
};

// The items of one log entry; the reader's complaint when the entry is not the change
// document the fill writes.
struct ReadChanges {
    QList<ChangedItem> items;
    QString error;
};

std::optional<LogOptions> parseOptions(QStringList args, QString& problem) {
    LogOptions options;
    const std::optional<QString> database = RecordSession::databaseOption(args, problem);
    if (!database) return std::nullopt;
    options.database = *database;
    if (args.size() != 2 || args[0] != QLatin1String("rx")) {
        problem = QStringLiteral("expected 'rx' and a fill's RXInfoID");
        return std::nullopt;
    }
    const std::optional<qint32> key = RecordSession::keyOption(args[1], problem);
    if (!key) return std::nullopt;
    options.key = *key;
    return options;
}

// A log entry is <RX_Changes> holding one empty element per changed item, the old and
// new value in its attributes.
ReadChanges readChanges(const QString& document) {
    ReadChanges read;
    QXmlStreamReader xml(document);
    if (xml.readNextStartElement() && xml.name() != QLatin1String("RX_Changes")) {
        xml.raiseError(QStringLiteral("the root element is <%1>, not <RX_Changes>")
                           .arg(xml.name().toString()));
    }
    while (!xml.hasError() && xml.readNextStartElement()) {
        const QXmlStreamAttributes attributes = xml.attributes();
        read.items.append({xml.name().toString(),
                           attributes.value(QLatin1String("Original_Value")).toString(),
                           attributes.value(QLatin1String("New_Value")).toString()});
        xml.skipCurrentElement();
    }
    if (!xml.hasError()) xml.readNext();
    if (xml.hasError()) {
        read.error = QStringLiteral("%1 (line %2, column %3)")
                         .arg(xml.errorString())
                         .arg(xml.lineNumber())
                         .arg(xml.columnNumber());
    }
    return read;
}

QString quotedWhenEmpty(const QString& value) {
    return value.isEmpty() ? QStringLiteral("\"\"") : value;
}

void printEntry(const RecordSet& rs) {
    std::printf("%s  pharmacist %s  technician %s\n",
                qPrintable(shownText(rs.Fields(QStringLiteral("LogDate")))),
                qPrintable(shownText(rs.Fields(QStringLiteral("RPhID")))),
                qPrintable(shownText(rs.Fields(QStringLiteral("TechID")))));
    const QString document = rs.Fields(QStringLiteral("Changes")).toString();
    const ReadChanges read = readChanges(document);
    if (!read.error.isEmpty()) {
        std::printf("  not a readable change list: %s\n  as stored: %s\n", qPrintable(read.error),
                    qPrintable(document));
        return;
    }
    for (const ChangedItem& item : read.items) {
        std::printf("  %s: %s -> %s\n", qPrintable(item.item),
                    qPrintable(quotedWhenEmpty(item.before)),
                    qPrintable(quotedWhenEmpty(item.after)));
    }
}

int runLog(const LogOptions& options) {
    RecordSession session(QStringLiteral("log"));
    const auto connection = session.open(options.database);
    if (!connection) return kExitFailed;
    if (!rowExists(*connection, QStringLiteral("RXINFO"), QStringLiteral("RXInfoID"), options.key,
                   "tvrx:log rx")) {
        session.printReports();
        std::fprintf(stderr, "tvrx log: no fill with RXInfoID %d\n", options.key);
        return kExitFailed;
    }
    RecordSet rs;
    Frame frame("tvrx:log rx");
    frame([&] {
        rs = connection->OpenRecordSet(
            QStringLiteral("SELECT LogDate, RPhID, TechID, Changes FROM LOG_RX "
                           "WHERE RxInfoID = ? ORDER BY LogDate, LogRxID"),
            {options.key});
    });
    if (session.printReports() > 0) return kExitFailed;
    if (rs.Eof()) std::printf("No changes are logged for fill %d.\n", options.key);
    for (; !rs.Eof(); rs.MoveNext()) printEntry(rs);
    return kExitOk;
}

int usage(const QString& problem) {
    return usageError(logCommand(), problem);
}

int run(const QStringList& args) {
    QString problem;
    const std::optional<LogOptions> options = parseOptions(args, problem);
    return options ? runLog(*options) : usage(problem);
}

}  // namespace

Command logCommand() {
    return {QStringLiteral("log"), QStringLiteral("list the change log of a fill"),
            QString::fromLatin1(kUsage), run};
}

}  // namespace tvrx::cli
