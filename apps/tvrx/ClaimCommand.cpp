#include "Command.h"
#include "JsonOutput.h"
#include "RecordSession.h"
#include "ShowKinds.h"
#include "common/NotationFile.h"

#include "claims/ClaimReader.h"
#include "claims/Layouts.h"
#include "claims/PlanRows.h"
#include "claims/Wrapper.h"
#include "prescription/clsPrescription.h"
#include "responses/ResponseJson.h"
#include "session/runtime/ConsoleUserInteraction.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "session/text/ClaimNotation.h"

#include <QJsonArray>

#include <algorithm>
#include <cstdio>
#include <optional>

namespace tvrx::cli {

namespace {

const QString kOther = QStringLiteral("other");
const QString kReversal = QStringLiteral("reversal");
const QString kHex = QStringLiteral("hex");
const QString kAnswer = QStringLiteral("answer");
const QString kForm = QStringLiteral("form");

// The console asks, and every box is kept for the JSON object.
class RecordedConsole : public ConsoleUserInteraction {
public:
    QStringList boxes;

    Answer MsgBox(const QString& text, Buttons buttons, Icon icon, int defaultButton,
                  const QString& title) override {
        const Answer answer =
            ConsoleUserInteraction::MsgBox(text, buttons, icon, defaultButton, title);
        boxes.append(QStringLiteral("[%1] %2 -> %3").arg(title, text, answerName(answer)));
        return answer;
    }
};

// ---- tvrx claim build ------------------------------------------------------------------

const char* kBuildDescription =
    "Builds the claim of the fill with RXInfoID ID as a submission would: the header\n"
    "(Wrapper.BuildHeader) and the fill's body (clsPrescription.BuildClaim) for the plan of\n"
    "the fill's coverage, or with --reversal the reversal (BuildReverseClaim). --other bills\n"
    "the patient's other insurance. Prints the texts in the readable notation\n"
    "(docs/CLAIM-NOTATION.md), with --hex also their bytes; the message boxes appear on\n"
    "standard error as they come, answered by --answer in order and then by the terminal.\n"
    "Nothing is written to the database. Exits 1 when a text came out empty or the library\n"
    "reported a failure.";

void declareBuild(CommandLine& line) {
    line.addArgument(QStringLiteral("ID"), QStringLiteral("the fill's RXInfoID"));
    line.addFlag(kOther, QStringLiteral("bill the patient's other insurance"));
    line.addFlag(kReversal, QStringLiteral("build the reversal instead of the claim"));
    line.addFlag(kHex, QStringLiteral("also print the bytes in hexadecimal"));
    line.addOption(kAnswer, QStringLiteral("TEXT"),
                   QStringLiteral("the next answer to a message box"),
                   CommandLine::Presence::Repeatable);
    line.addDatabaseOption();
    line.addJsonOption();
}

QString hexOf(const QString& text) {
    return QString::fromLatin1(text.toLatin1().toHex(' ')).toUpper();
}

// The texts of one build, each under its name ("header", "body", "reversal").
struct Built {
    QString form;
    QList<QPair<QString, QString>> texts;
};

// The fill is read as a host reads it, into the claim's collection of prescriptions.
Built buildTexts(qint32 key, bool reversal, bool other) {
    Built built;
    Wrapper wrapper;
    const std::shared_ptr<clsPrescription> rx = wrapper.colRX()->Item(1);
    rx->RXInfoID = key;
    rx->PrescriptionType = EditRx;
    rx->GetData();
    PlanRows rows;
    Frame frame("tvrx:claim build");
    frame([&] { rows = openPlanRows(rx->PatInsID); });
    frame([&] { built.form = rows.rsIns.Fields(QStringLiteral("Form")).toString(); });
    if (reversal) {
        built.texts.append({QStringLiteral("reversal"), rx->BuildReverseClaim(rows.rsIns, other)});
        return built;
    }
    const QString header = wrapper.BuildHeader(rows.rsPatIns, rows.rsIns, other);
    built.texts.append({QStringLiteral("header"), header});
    if (!header.isEmpty()) {
        built.texts.append({QStringLiteral("body"), rx->BuildClaim(rows.rsIns, other)});
    }
    return built;
}

QString layoutsOf(const Built& built, bool reversal) {
    if (reversal) {
        return QStringLiteral("reversal %1").arg(claims::reversalLayout(built.form).name);
    }
    return QStringLiteral("header %1, body %2")
        .arg(claims::headerLayout(built.form).name, claims::claimLayout(built.form).name);
}

void printBuilt(const CommandLine& line, qint32 key, const Built& built,
                const RecordedConsole& user, const RecordSession& session) {
    const bool reversal = line.isSet(kReversal);
    if (line.json()) {
        JsonObjectText object;
        object.add(QStringLiteral("RXInfoID"), key);
        object.add(QStringLiteral("Form"), built.form);
        object.add(QStringLiteral("layouts"), layoutsOf(built, reversal));
        for (const auto& [name, text] : built.texts) {
            object.add(name, toNotation(text));
            if (line.isSet(kHex)) object.add(name + QStringLiteral("Hex"), hexOf(text));
        }
        object.add(QStringLiteral("boxes"), QJsonArray::fromStringList(user.boxes));
        object.add(QStringLiteral("reports"), reportsJson(session.reports()));
        printJson(object);
        return;
    }
    std::printf("Fill %d, plan Form \"%s\": %s\n", key, qPrintable(built.form),
                qPrintable(layoutsOf(built, reversal)));
    for (const auto& [name, text] : built.texts) {
        std::printf("%-9s %s\n", qPrintable(name + u':'),
                    text.isEmpty() ? "(empty)" : qPrintable(toNotation(text)));
        if (line.isSet(kHex) && !text.isEmpty()) {
            std::printf("%-9s %s\n", "", qPrintable(hexOf(text)));
        }
    }
}

int runBuild(const CommandLine& line) {
    const std::optional<qint32> key = line.key(0);
    if (!key) return line.usageError(notAKey(line.arguments().first()));
    RecordSession session(line);
    auto user = std::make_shared<RecordedConsole>();
    for (const QString& answer : line.values(kAnswer)) user->addAnswer(answer);
    mdlMain::UserService = user;
    const auto connection = session.open();
    if (!connection) return kExitFailed;
    if (!rowExists(*connection, QStringLiteral("RXINFO"), QStringLiteral("RXInfoID"), *key,
                   "tvrx:claim build")) {
        if (!line.json()) session.printReports();
        return line.failed(QStringLiteral("no fill with RXInfoID %1").arg(*key));
    }
    clsPrescription().setConnection(connection);
    const Built built = buildTexts(*key, line.isSet(kReversal), line.isSet(kOther));
    printBuilt(line, *key, built, *user, session);
    const bool empty = std::any_of(built.texts.begin(), built.texts.end(),
                                   [](const auto& text) { return text.second.isEmpty(); });
    const int reported =
        line.json() ? static_cast<int>(session.reports().size()) : session.printReports();
    return empty || reported > 0 ? kExitFailed : kExitOk;
}

// ---- tvrx claim explain ----------------------------------------------------------------

const char* kExplainDescription =
    "Prints a claim text field by field: each transaction (the header, each claim body, or\n"
    "a reversal) with the layout it was read with, then one line per field: its segment,\n"
    "its code, its name and its value in the readable notation between quotes, so that\n"
    "every blank shows. A fixed head is cut into its items by their widths when it has the\n"
    "length they add up to; otherwise it is shown whole and the difference is said. FILE\n"
    "holds the text in the readable notation ('-' reads standard input); a claim's own\n"
    "header names its Form, and a body alone (it starts with <GS>) is read as --form says.";

void declareExplain(CommandLine& line) {
    line.addArgument(QStringLiteral("FILE"),
                     QStringLiteral("the claim text, '-' for standard input"));
    line.addOption(kForm, QStringLiteral("FORM"),
                   QStringLiteral("the plan's Form of a body given alone"));
}

void printTransaction(const claims::Transaction& transaction) {
    std::printf("%s (layout %s)\n", qPrintable(transaction.title), qPrintable(transaction.layout));
    for (const claims::ReadField& field : transaction.reading.fields) {
        std::printf("  %-4s %-4s %-48s \"%s\"\n", qPrintable(field.segment), qPrintable(field.code),
                    qPrintable(field.name), qPrintable(toNotation(field.value)));
    }
    for (const QString& problem : transaction.reading.problems) {
        std::printf("  ! %s\n", qPrintable(problem));
    }
}

int runExplain(const CommandLine& line) {
    const NotationFile file = readNotationFile(line.arguments().first());
    if (!file.text) return line.failed(file.error);
    const QString& text = *file.text;
    const bool whole = text.startsWith(QChar(u'\x02'));
    if (!whole && !line.isSet(kForm)) {
        return line.usageError(QStringLiteral("a body given alone needs --form"));
    }
    const QList<claims::Transaction> transactions =
        claims::readTransmission(text, line.value(kForm));
    bool problems = false;
    for (const claims::Transaction& transaction : transactions) {
        printTransaction(transaction);
        problems = problems || !transaction.reading.problems.isEmpty();
    }
    return problems ? kExitFailed : kExitOk;
}

}  // namespace

Command claimBuildCommand() {
    return {QStringLiteral("claim build"),
            QStringLiteral("build a fill's claim or reversal and print it"),
            QString::fromLatin1(kBuildDescription), declareBuild, runBuild};
}

Command claimExplainCommand() {
    return {QStringLiteral("claim explain"), QStringLiteral("print a claim text field by field"),
            QString::fromLatin1(kExplainDescription), declareExplain, runExplain};
}

}  // namespace tvrx::cli
