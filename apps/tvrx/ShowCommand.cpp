#include "Command.h"
#include "JsonOutput.h"
#include "RecordSession.h"
#include "ShowKinds.h"

#include "responses/ResponseJson.h"

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

QString descriptionText() {
    QString text = QStringLiteral("Shows one record by its key. KIND:");
    for (const ShowKind& kind : showKinds()) {
        text += QStringLiteral("\n    %1  %2").arg(kind.name, -10).arg(kind.description);
    }
    return text;
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

JsonObjectText jsonObject(const ShownRecord& record) {
    JsonObjectText object;
    for (const auto& [name, value] : record) object.add(name, jsonValueOf(value));
    return object;
}

// A section's name as a JSON member: lower camel case, "other response" is "otherResponse".
QString jsonKey(const QString& sectionName) {
    QStringList words = sectionName.split(QLatin1Char(' '));
    for (qsizetype i = 1; i < words.size(); ++i) words[i][0] = words[i][0].toUpper();
    return words.join(QString());
}

// The record's members in its order, then one member per section, then the reports.
void printJson(const Shown& shown, const QList<ErrorReport>& reports) {
    JsonObjectText object = jsonObject(shown.record);
    for (const ShownSection& section : shown.sections) {
        if (section.values.isEmpty()) {
            object.add(jsonKey(section.name), section.json);
        } else {
            object.add(jsonKey(section.name), jsonObject(section.values));
        }
    }
    object.add(QStringLiteral("reports"), reportsJson(reports));
    printJson(object);
}

void declare(CommandLine& line) {
    line.addArgument(QStringLiteral("KIND"), QStringLiteral("what kind of record, listed above"));
    line.addArgument(QStringLiteral("ID"), QStringLiteral("its key"));
    line.addDatabaseOption();
    line.addJsonOption();
}

int run(const CommandLine& line) {
    const ShowKind* kind = kindNamed(line.arguments().at(0));
    if (kind == nullptr) {
        return line.usageError(QStringLiteral("unknown kind '%1'").arg(line.arguments().at(0)));
    }
    const std::optional<qint32> key = line.key(1);
    if (!key) return line.usageError(notAKey(line.arguments().at(1)));

    RecordSession session(line);
    const auto connection = session.open();
    if (!connection) return kExitFailed;
    const std::optional<Shown> record = kind->load(connection, *key);
    if (!line.json()) session.printReports();
    if (!record) {
        return line.failed(
            QStringLiteral("no %1 with %2 %3").arg(kind->name, kind->keyName).arg(*key));
    }
    if (line.json()) {
        printJson(*record, session.reports());
    } else {
        printText(*record);
    }
    return kExitOk;
}

}  // namespace

Command showCommand() {
    return {QStringLiteral("show"), QStringLiteral("show one record by its key"), descriptionText(),
            declare, run};
}

}  // namespace tvrx::cli
