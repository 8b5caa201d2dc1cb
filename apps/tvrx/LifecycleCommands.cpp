#include "Command.h"
#include "JsonOutput.h"
#include "RecordSession.h"

#include "prescription/clsPrescription.h"
#include "responses/ResponseJson.h"
#include "session/data/DbConnection.h"
#include "session/data/Procedures.h"
#include "session/runtime/ConsoleUserInteraction.h"
#include "session/runtime/Session.h"
#include "session/text/Conversions.h"

#include <QJsonArray>
#include <QJsonObject>

#include <cstdio>
#include <optional>

namespace tvrx::cli {

namespace {

using Presence = CommandLine::Presence;

// The questions of the library are asked on the terminal, the answers of "--answer" first.
void askOnTheConsole(const CommandLine& line) {
    auto console = std::make_shared<ConsoleUserInteraction>();
    for (const QString& answer : line.values(QStringLiteral("answer"))) console->addAnswer(answer);
    mdlMain::UserService = console;
}

void declareAnswers(CommandLine& line) {
    line.addOption(QStringLiteral("answer"), QStringLiteral("A"),
                   QStringLiteral("the answer to the next question, in order (Yes, No, a "
                                  "button's number or caption)"),
                   Presence::Repeatable);
}

// A fill as it stands in the database after the command, and its drug's stock.
struct FillState {
    bool present = false;
    bool voided = false;
    bool onHold = false;
    bool deleted = false;
    QVariant qtyRemain;
    QVariant refills;
    QVariant stock;
};

FillState stateOf(DbConnection& db, qint32 rxInfoId, qint32 drugId) {
    FillState state;
    state.stock = db.Scalar(QStringLiteral("SELECT Stock FROM DRUG WHERE DrugID = ?"), {drugId});
    RecordSet row = db.OpenRecordSet(
        QStringLiteral("SELECT Voided, OnHold, Deleted, QtyRemain, Refills FROM RXINFO "
                       "WHERE RXInfoID = ?"),
        {rxInfoId});
    if (row.Eof()) return state;
    state.present = true;
    state.voided = row.Fields(0).toInt() != 0;
    state.onHold = row.Fields(1).toInt() != 0;
    state.deleted = row.Fields(2).toInt() != 0;
    state.qtyRemain = row.Fields(3);
    state.refills = row.Fields(4);
    return state;
}

QString stateText(const FillState& state) {
    if (!state.present) return QStringLiteral("removed");
    if (state.deleted) return QStringLiteral("deleted");
    if (state.voided)
        return state.onHold ? QStringLiteral("voided and held") : QStringLiteral("voided");
    return QStringLiteral("not voided");
}

void addState(JsonObjectText& object, const FillState& state) {
    object.add(QStringLiteral("present"), state.present);
    object.add(QStringLiteral("Voided"), state.voided);
    object.add(QStringLiteral("OnHold"), state.onHold);
    object.add(QStringLiteral("Deleted"), state.deleted);
    object.add(QStringLiteral("QtyRemain"), jsonValueOf(state.qtyRemain));
    object.add(QStringLiteral("Refills"), jsonValueOf(state.refills));
    object.add(QStringLiteral("Stock"), jsonValueOf(state.stock));
}

// What the command did to the fill, in text or JSON; the exit code.
int printOutcome(const CommandLine& line, RecordSession& session, const clsPrescription& rx,
                 qint32 rxInfoId, bool done, const FillState& state) {
    if (line.json()) {
        JsonObjectText object;
        object.add(QStringLiteral("done"), done);
        object.add(QStringLiteral("RXInfoID"), rxInfoId);
        object.add(QStringLiteral("Number"), rx.Number);
        object.add(QStringLiteral("RefillNumber"), rx.RefillNumber);
        addState(object, state);
        object.add(QStringLiteral("reports"), reportsJson(session.reports()));
        printJson(object);
    } else {
        std::printf("Fill %d: prescription %d, refill %d: %s%s\n", rxInfoId, rx.Number,
                    rx.RefillNumber, qPrintable(stateText(state)), done ? "" : ", nothing changed");
        if (state.present)
            std::printf("  remaining %s, refills %s\n", qPrintable(shownText(state.qtyRemain)),
                        qPrintable(shownText(state.refills)));
        std::printf("  stock of %s: %s\n", qPrintable(rx.Drug), qPrintable(shownText(state.stock)));
    }
    const int reported = line.json() ? int(session.reports().size()) : session.printReports();
    return done && reported == 0 ? kExitOk : kExitFailed;
}

// ---- tvrx void ---------------------------------------------------------------------

void declareVoid(CommandLine& line) {
    line.addArgument(QStringLiteral("RX-NUMBER"), QStringLiteral("the prescription number"));
    line.addOption(QStringLiteral("refill"), QStringLiteral("N"),
                   QStringLiteral("the refill number; else the latest fill"));
    declareAnswers(line);
    line.addDatabaseOption();
    line.addJsonOption();
}

// The key of the number's fill that is not deleted, with that refill number or the latest.
std::optional<qint32> fillOf(DbConnection& db, qint32 number, std::optional<qint32> refill) {
    RecordSet fills = Procedures::call(db, QStringLiteral("FindRxNumber"), {number}).rows;
    std::optional<qint32> found;
    for (; !fills.Eof(); fills.MoveNext()) {
        if (!refill || fills.Fields(QStringLiteral("RefillNumber")).toInt() == *refill)
            found = fills.Fields(QStringLiteral("RXInfoID")).toInt();
    }
    return found;
}

int runVoid(const CommandLine& line) {
    const std::optional<qint32> number = line.key(0);
    if (!number) return line.usageError(notAKey(line.arguments().at(0)));
    std::optional<qint32> refill;
    if (line.isSet(QStringLiteral("refill"))) {
        bool whole = false;
        refill = line.value(QStringLiteral("refill")).toInt(&whole);
        if (!whole) return line.usageError(notAKey(line.value(QStringLiteral("refill"))));
    }
    RecordSession session(line);
    const auto db = session.open();
    if (!db) return kExitFailed;
    const std::optional<qint32> id = fillOf(*db, *number, refill);
    if (!id) {
        return line.failed(refill ? QStringLiteral("prescription %1 has no refill %2 that is not "
                                                   "deleted")
                                        .arg(*number)
                                        .arg(*refill)
                                  : QStringLiteral("no prescription number %1").arg(*number));
    }
    askOnTheConsole(line);
    clsPrescription rx;
    rx.setConnection(db);
    rx.RXInfoID = *id;
    rx.GetData();
    const bool done = rx.VoidPrescription();
    return printOutcome(line, session, rx, *id, done, stateOf(*db, *id, rx.DrugID()));
}

// ---- tvrx delete -------------------------------------------------------------------

void declareDelete(CommandLine& line) {
    line.addArgument(QStringLiteral("RX-ID"), QStringLiteral("the fill's RXInfoID"));
    line.addFlag(QStringLiteral("override"),
                 QStringLiteral("remove the row; else it is marked deleted and can be recovered"));
    line.addDatabaseOption();
    line.addJsonOption();
}

int runDelete(const CommandLine& line) {
    const std::optional<qint32> id = line.key(0);
    if (!id) return line.usageError(notAKey(line.arguments().at(0)));
    RecordSession session(line);
    const auto db = session.open();
    if (!db) return kExitFailed;
    const QVariant deleted = db->Scalar(
        QStringLiteral("SELECT COALESCE(Deleted, 0) FROM RXINFO WHERE RXInfoID = ?"), {*id});
    if (deleted.isNull()) return line.failed(QStringLiteral("no fill with RXInfoID %1").arg(*id));
    // A deleted fill gave its quantity back already; a second delete would give it again.
    if (deleted.toInt() != 0)
        return line.failed(QStringLiteral("fill %1 is already deleted").arg(*id));
    // A delete asks nothing; a box the library shows (a lost link) goes to the terminal.
    mdlMain::UserService = std::make_shared<ConsoleUserInteraction>();
    clsPrescription rx;
    rx.setConnection(db);
    rx.RXInfoID = *id;
    rx.GetData();
    rx.Delete(line.isSet(QStringLiteral("override")));
    return printOutcome(line, session, rx, *id, true, stateOf(*db, *id, rx.DrugID()));
}

// ---- tvrx wantbook -----------------------------------------------------------------

void declareWantbook(CommandLine& line) {
    line.addDatabaseOption();
    line.addJsonOption();
}

const char* const kWantColumns[] = {"DrugID", "Name",        "Stock",    "MinReorderQty",
                                    "ParQty", "PackageSize", "OrderQty", "Date"};

int runWantbook(const CommandLine& line) {
    RecordSession session(line);
    const auto db = session.open();
    if (!db) return kExitFailed;
    RecordSet lines = db->OpenRecordSet(QStringLiteral(
        "SELECT WANTBOOK.DrugID, DRUG.Name, DRUG.Stock, DRUG.MinReorderQty, DRUG.ParQty, "
        "DRUG.PackageSize, WANTBOOK.OrderQty, WANTBOOK.Date FROM WANTBOOK LEFT OUTER JOIN DRUG "
        "ON WANTBOOK.DrugID = DRUG.DrugID ORDER BY DRUG.Name, WANTBOOK.DrugID"));
    if (line.json()) {
        QJsonArray array;
        for (; !lines.Eof(); lines.MoveNext()) {
            QJsonObject entry;
            for (int i = 0; i < lines.FieldCount(); ++i)
                entry.insert(QString::fromLatin1(kWantColumns[i]), jsonValueOf(lines.Fields(i)));
            array.append(entry);
        }
        JsonObjectText object;
        object.add(QStringLiteral("lines"), array);
        object.add(QStringLiteral("reports"), reportsJson(session.reports()));
        printJson(object);
        return kExitOk;
    }
    if (lines.Eof())
        std::printf("The want list is empty.\n");
    else
        std::printf("%-7s %-32s %9s %9s %9s %9s\n", "DrugID", "Drug", "Stock", "Reorder", "Par",
                    "Packages");
    for (; !lines.Eof(); lines.MoveNext()) {
        std::printf("%-7s %-32s %9s %9s %9s %9s\n", qPrintable(shownText(lines.Fields(0))),
                    qPrintable(shownText(lines.Fields(1))), qPrintable(shownText(lines.Fields(2))),
                    qPrintable(shownText(lines.Fields(3))), qPrintable(shownText(lines.Fields(4))),
                    qPrintable(shownText(lines.Fields(6))));
    }
    return kExitOk;
}

}  // namespace

Command voidCommand() {
    return {QStringLiteral("void"), QStringLiteral("void, hold or delete a fill, or lift its void"),
            QStringLiteral("Asks, as the pharmacy's screens do, whether to void the fill (an\n"
                           "original without refills may also be held or deleted) or to lift\n"
                           "its void; the quantity goes back to the prescription and the stock.\n"
                           "--answer gives the answers in order, for scripts. Exit code 0 when\n"
                           "something was done, 1 when nothing was."),
            declareVoid, runVoid};
}

Command deleteCommand() {
    return {QStringLiteral("delete"), QStringLiteral("delete a fill, giving its quantity back"),
            QStringLiteral("Gives the fill's quantity back to stock, removes its ingredients and\n"
                           "marks it deleted (with --override removes the row), and logs it. A\n"
                           "fill already deleted is refused."),
            declareDelete, runDelete};
}

Command wantbookCommand() {
    return {QStringLiteral("wantbook"), QStringLiteral("the want list: what to reorder"),
            QStringLiteral("Lists each drug on the want list with its stock, reorder point, par\n"
                           "level and the packages to order."),
            declareWantbook, runWantbook};
}

}  // namespace tvrx::cli
