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

const char* kDescription =
    "Lists the change log of the fill with RXInfoID ID, oldest first: when each change\n"
    "was saved, the pharmacist and technician of the edit (0 when none was named), and\n"
    "each changed value as \"old -> new\".";

void declare(CommandLine& line) {
    line.addArgument(QStringLiteral("ID"), QStringLiteral("the fill's RXInfoID"));
    line.addDatabaseOption();
}

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

int run(const CommandLine& line) {
    const std::optional<qint32> key = line.key(0);
    if (!key) return line.usageError(notAKey(line.arguments().first()));
    RecordSession session(line);
    const auto connection = session.open();
    if (!connection) return kExitFailed;
    if (!rowExists(*connection, QStringLiteral("RXINFO"), QStringLiteral("RXInfoID"), *key,
                   "tvrx:log rx")) {
        session.printReports();
        return line.failed(QStringLiteral("no fill with RXInfoID %1").arg(*key));
    }
    RecordSet rs;
    Frame frame("tvrx:log rx");
    frame([&] {
        rs = connection->OpenRecordSet(
            QStringLiteral("SELECT LogDate, RPhID, TechID, Changes FROM LOG_RX "
                           "WHERE RxInfoID = ? ORDER BY LogDate, LogRxID"),
            {*key});
    });
    if (session.printReports() > 0) return kExitFailed;
    if (rs.Eof()) std::printf("No changes are logged for fill %d.\n", *key);
    for (; !rs.Eof(); rs.MoveNext()) printEntry(rs);
    return kExitOk;
}

}  // namespace

Command logCommand() {
    return {QStringLiteral("log rx"), QStringLiteral("list the change log of a fill"),
            QString::fromLatin1(kDescription), declare, run};
}

}  // namespace tvrx::cli
