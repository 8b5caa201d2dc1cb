#include "Command.h"
#include "RecordSession.h"
#include "ShowKinds.h"

#include "session/data/Dialect.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>

#include <cstdio>

namespace tvrx::cli {

namespace {

// Every kind of record "tvrx show" prints, in the order the usage lists them.
const std::vector<ShowKind>& showKinds() {
    static const std::vector<ShowKind> kinds{
        showPatientKind(),  showPrescriberKind(), showDrugKind(),         showPlanKind(),
        showCoverageKind(), showFacilityKind(),   showPrescriptionKind(),
    };
    return kinds;
}

const ShowKind* kindNamed(const QString& name) {
    for (const ShowKind& kind : showKinds()) {
        if (kind.name == name) return &kind;
    }
    return nullptr;
}

QString usageText() {
    QString text = QStringLiteral("tvrx show KIND ID [--db URL] [--json]\n  KIND:");
    for (const ShowKind& kind : showKinds()) {
        text += QStringLiteral("\n    %1  %2").arg(kind.name, -10).arg(kind.description);
    }
    text += QStringLiteral("\n  Without --db the database is taken from TVRX_DB.");
    return text;
}

QString jsonText(const QJsonValue& value) {
    const QByteArray array = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.mid(1, array.size() - 2));
}

QString jsonValue(const QVariant& value) {
    const QVariant plain = value.typeId() == QMetaType::QDateTime
                               ? QVariant(Dialect::dateTimeText(value.toDateTime()))
                               : value;
    return jsonText(QJsonValue::fromVariant(plain));
}

void printText(const ShownRecord& record) {
    for (const auto& [name, value] : record) {
        std::printf("%-30s %s\n", qPrintable(name + QLatin1Char(':')),
                    qPrintable(shownText(value)));
    }
}

void printText(const Shown& shown) {
    printText(shown.record);
    for (const ShownSection& section : shown.sections) {
        std::printf("\n[%s]\n", qPrintable(section.name));
        printText(section.values);
        for (const QString& line : section.lines) std::printf("%s\n", line.toUtf8().constData());
    }
}

QStringList jsonMembers(const ShownRecord& record) {
    QStringList members;
    for (const auto& [name, value] : record)
        members.append(jsonValue(name) + QStringLiteral(": ") + jsonValue(value));
    return members;
}

QString jsonObject(const QStringList& members) {
    return QStringLiteral("{%1}").arg(members.join(QStringLiteral(", ")));
}

// The record's members in its order, then one member per section.
void printJson(const Shown& shown) {
    QStringList members = jsonMembers(shown.record);
    for (const ShownSection& section : shown.sections) {
        const QString value = section.values.isEmpty() ? jsonText(section.json)
                                                       : jsonObject(jsonMembers(section.values));
        members.append(jsonValue(section.name) + QStringLiteral(": ") + value);
    }
    std::printf("%s\n", qPrintable(jsonObject(members)));
}

struct ShowOptions {
    const ShowKind* kind = nullptr;
    qint32 key = 0;
    QString database;
    bool json = false;
};

std::optional<ShowOptions> parseOptions(QStringList args, QString& problem) {
    ShowOptions options;
    const std::optional<QString> database = RecordSession::databaseOption(args, problem);
    if (!database) return std::nullopt;
    options.database = *database;
    options.json = args.removeAll(QStringLiteral("--json")) > 0;
    if (args.size() != 2) {
        problem = QStringLiteral("expected a kind and a key");
        return std::nullopt;
    }
    options.kind = kindNamed(args[0]);
    if (options.kind == nullptr) {
        problem = QStringLiteral("unknown kind '%1'").arg(args[0]);
        return std::nullopt;
    }
    const std::optional<qint32> key = RecordSession::keyOption(args[1], problem);
    if (!key) return std::nullopt;
    options.key = *key;
    return options;
}

int runShow(const ShowOptions& options) {
    RecordSession session(QStringLiteral("show"));
    const auto connection = session.open(options.database);
    if (!connection) return kExitFailed;
    const std::optional<Shown> record = options.kind->load(connection, options.key);
    session.printReports();
    if (!record) {
        std::fprintf(stderr, "tvrx show: no %s with %s %d\n", qPrintable(options.kind->name),
                     qPrintable(options.kind->keyName), options.key);
        return kExitFailed;
    }
    if (options.json) {
        printJson(*record);
    } else {
        printText(*record);
    }
    return kExitOk;
}

}  // namespace

Command showCommand() {
    Command command{
        QStringLiteral("show"), QStringLiteral("show one record by its key"), usageText(), {}};
    command.run = [command](const QStringList& args) {
        QString problem;
        const std::optional<ShowOptions> options = parseOptions(args, problem);
        return options ? runShow(*options) : usageError(command, problem);
    };
    return command;
}

}  // namespace tvrx::cli
