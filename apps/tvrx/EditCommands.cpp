#include "Command.h"
#include "FillPricing.h"
#include "JsonOutput.h"
#include "RecordSession.h"

#include "prescription/clsPrescription.h"
#include "responses/ResponseJson.h"
#include "session/runtime/ConsoleUserInteraction.h"
#include "session/runtime/Session.h"

#include <cstdio>

namespace tvrx::cli {

namespace {

using Presence = CommandLine::Presence;

void declareAnswers(CommandLine& line) {
    line.addOption(QStringLiteral("answer"), QStringLiteral("A"),
                   QStringLiteral("the answer to the next question, in order (OK, Cancel, Yes, "
                                  "No, a button's number or caption, a row's number, a text)"),
                   Presence::Repeatable);
}

void declareEdit(CommandLine& line) {
    line.addArgument(QStringLiteral("RX-NUMBER"), QStringLiteral("the prescription number"));
    line.addOption(QStringLiteral("refill"), QStringLiteral("N"),
                   QStringLiteral("the fill: its refill number, 99 the last; without it the "
                                  "refill finder lists the fills"));
    line.addOption(QStringLiteral("rph"), QStringLiteral("ID"),
                   QStringLiteral("the pharmacist editing, given to a fill without one"));
    line.addOption(QStringLiteral("tech"), QStringLiteral("ID"), QStringLiteral("the technician"));
    line.addOption(QStringLiteral("patient"), QStringLiteral("ID"),
                   QStringLiteral("refuse a prescription of another patient"));
    declareAnswers(line);
    line.addDatabaseOption();
    line.addJsonOption();
}

void declareGenerate(CommandLine& line) {
    line.addArgument(QStringLiteral("RX-NUMBER"), QStringLiteral("the prescription number"));
    line.addOption(QStringLiteral("rph"), QStringLiteral("ID"), QStringLiteral("the pharmacist"),
                   Presence::Required);
    line.addOption(QStringLiteral("tech"), QStringLiteral("ID"), QStringLiteral("the technician"));
    line.addOption(QStringLiteral("start"), QStringLiteral("N"),
                   QStringLiteral("the lowest number the new prescription number may take"));
    declareAnswers(line);
    line.addDatabaseOption();
    line.addJsonOption();
}

// The console asks the questions (and lists the fills), prepared answers first.
void askOnConsole(const CommandLine& line) {
    auto console = std::make_shared<ConsoleUserInteraction>();
    for (const QString& answer : line.values(QStringLiteral("answer"))) console->addAnswer(answer);
    mdlMain::UserService = console;
}

// The outcome as text or JSON; the exit code: 0 done without reports, 1 otherwise.
int finish(const CommandLine& line, RecordSession& session, bool done, qint32 number,
           clsPrescription& rx, const QString& notDone) {
    if (line.json()) {
        JsonObjectText object;
        object.add(QStringLiteral("result"), done);
        object.add(QStringLiteral("number"), number);
        if (done) {
            JsonObjectText fill = fillJson(rx);
            fill.add(QStringLiteral("Deleted"), rx.Deleted != 0);
            fill.add(QStringLiteral("RPh"), rx.RPh);
            fill.add(QStringLiteral("GeneratedRx"), rx.GeneratedRx);
            fill.add(QStringLiteral("ClaimReady"), rx.ClaimReady);
            fill.add(QStringLiteral("OtherClaimReady"), rx.OtherClaimReady);
            object.add(QStringLiteral("fill"), fill);
        }
        object.add(QStringLiteral("reports"), reportsJson(session.reports()));
        printJson(object);
    } else if (done) {
        printFill(rx);
    } else {
        std::printf("Prescription %d: %s\n", number, qPrintable(notDone));
    }
    const int reported = line.json() ? int(session.reports().size()) : session.printReports();
    return !done || reported > 0 ? kExitFailed : kExitOk;
}

int runEdit(const CommandLine& line) {
    const std::optional<qint32> number = line.key(0);
    if (!number) return line.usageError(notAKey(line.arguments().at(0)));
    bool refillGiven = true;
    const QString refillText = line.value(QStringLiteral("refill"));
    const int refill = line.isSet(QStringLiteral("refill")) ? refillText.toInt(&refillGiven) : -1;
    if (!refillGiven || refill < -1 || refill > 99)
        return line.usageError(QStringLiteral("--refill takes a refill number from 0 to 99"));
    RecordSession session(line);
    const auto db = session.open();
    if (!db) return kExitFailed;
    askOnConsole(line);
    clsPrescription rx;
    rx.setConnection(db);
    const bool loaded = rx.EditPrescription(
        *number, line.value(QStringLiteral("patient")).toInt(), qint16(refill),
        line.value(QStringLiteral("rph")).toInt(), line.value(QStringLiteral("tech")).toInt());
    return finish(line, session, loaded, *number, rx, QStringLiteral("not loaded for editing"));
}

int runGenerate(const CommandLine& line) {
    const std::optional<qint32> number = line.key(0);
    if (!number) return line.usageError(notAKey(line.arguments().at(0)));
    RecordSession session(line);
    const auto db = session.open();
    if (!db) return kExitFailed;
    askOnConsole(line);
    clsPrescription rx;
    rx.setConnection(db);
    qint32 newNumber = *number;
    const bool made = rx.GeneratePrescription(
        line.value(QStringLiteral("rph")).toInt(), line.value(QStringLiteral("start")).toInt(),
        newNumber, 0, line.value(QStringLiteral("tech")).toInt());
    if (made) {
        rx.Update();
        rx.GetData();
    }
    return finish(line, session, made, newNumber, rx, QStringLiteral("no new number made"));
}

}  // namespace

Command editCommand() {
    return {QStringLiteral("edit"),
            QStringLiteral("load a fill for change, as the edit screen does"),
            QStringLiteral("Loads a fill of the prescription for change: the refill given, or\n"
                           "the one picked from the list of its fills (deleted and voided ones\n"
                           "too). A deleted fill may be recovered, and a fill whose pharmacist\n"
                           "is gone may take the one given with --rph; the console asks (--answer\n"
                           "gives the answers in order, for scripts). Exit code 0 when a fill was\n"
                           "loaded, 1 when not."),
            declareEdit, runEdit};
}

Command generateCommand() {
    return {QStringLiteral("generate"),
            QStringLiteral("move a prescription to a new number and save it"),
            QStringLiteral("Starts a new prescription number for the same therapy: an original\n"
                           "fill with the last fill's quantity, refills and quantity left, which\n"
                           "remembers the old number, so that a refill of the old number leads to\n"
                           "the new one. Exit code 0 when the new fill was saved, 1 when not."),
            declareGenerate, runGenerate};
}

}  // namespace tvrx::cli
