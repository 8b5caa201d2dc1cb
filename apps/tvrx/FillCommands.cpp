#include "Command.h"
#include "FillPricing.h"
#include "JsonOutput.h"
#include "RecordSession.h"

#include "prescription/clsPrescription.h"
#include "records/clsDoc.h"
#include "records/clsDrug.h"
#include "records/clsPatient.h"
#include "responses/ResponseJson.h"
#include "session/data/Catalogue.h"
#include "session/data/DbConnection.h"
#include "session/runtime/ConsoleUserInteraction.h"
#include "session/runtime/Session.h"

#include <cstdio>

namespace tvrx::cli {

namespace {

using Presence = CommandLine::Presence;

// ---- tvrx new ----------------------------------------------------------------------

// The records a new prescription points to: option, table, key column.
struct Pointer {
    const char* option;
    const char* table;
    const char* key;
};
const Pointer kPointers[] = {
    {"patient", "PATIENT", "PatientID"},
    {"drug", "DRUG", "DrugID"},
    {"prescriber", "PHYSIC", "MDID"},
};

void declareNew(CommandLine& line) {
    for (const Pointer& pointer : kPointers) {
        line.addOption(QString::fromLatin1(pointer.option), QStringLiteral("ID"),
                       QStringLiteral("the %1's key").arg(QString::fromLatin1(pointer.option)),
                       Presence::Required);
    }
    line.addOption(QStringLiteral("qty"), QStringLiteral("Q"), QStringLiteral("the quantity"),
                   Presence::Required);
    line.addOption(QStringLiteral("ds"), QStringLiteral("D"), QStringLiteral("the days supply"),
                   Presence::Required);
    line.addOption(QStringLiteral("refills"), QStringLiteral("N"),
                   QStringLiteral("the refills authorised"), Presence::Required);
    line.addOption(QStringLiteral("rph"), QStringLiteral("ID"), QStringLiteral("the pharmacist"),
                   Presence::Required);
    line.addOption(QStringLiteral("tech"), QStringLiteral("ID"), QStringLiteral("the technician"));
    line.addOption(QStringLiteral("sig"), QStringLiteral("TEXT"),
                   QStringLiteral("the directions; else the drug's default"));
    declarePricingOptions(line);
    line.addDatabaseOption();
    line.addJsonOption();
}

// A record the prescription names that does not exist, or none.
std::optional<QString> missingRecord(const CommandLine& line, DbConnection& db) {
    for (const Pointer& pointer : kPointers) {
        const QString option = QString::fromLatin1(pointer.option);
        const QVariant found = db.Scalar(
            QStringLiteral("SELECT COUNT(*) FROM %1 WHERE %2 = ?").arg(pointer.table, pointer.key),
            {line.value(option).toInt()});
        if (found.toInt() == 0)
            return QStringLiteral("no %1 with %2 %3").arg(option, pointer.key, line.value(option));
    }
    return std::nullopt;
}

QString fullName(const QString& last, const QString& first) {
    return first.isEmpty() ? last : last + QStringLiteral(", ") + first;
}

// What the prescription takes from its patient, prescriber and drug, and from the order:
// names as filled, the patient's coverage and its plan, the drug's extended AWP and cost.
void fillIn(const CommandLine& line, clsPrescription& rx) {
    rx.setPatientID(line.value(QStringLiteral("patient")).toInt());
    rx.setMDID(line.value(QStringLiteral("prescriber")).toInt());
    rx.setDrugID(line.value(QStringLiteral("drug")).toInt());
    const auto patient = rx.PatientClass();
    const auto doctor = rx.DoctorClass();
    const auto drug = rx.DrugClass();
    rx.Patient = fullName(patient->LastName, patient->FirstName);
    rx.Doctor = fullName(doctor->LastName, doctor->FirstName);
    rx.PatInsID = patient->PatInsID;
    Catalogue& catalogue = mdlMain::catalogue();
    catalogue.Run(QStringLiteral("dbo_PatientIns"), {rx.PatInsID});
    rx.InsID = catalogue.returnValue(QStringLiteral("dbo_PatientIns")).toInt();
    rx.Drug = drug->Name;
    rx.DNDC = drug->NDC;
    rx.Schedule = drug->Schedule;
    rx.SIG =
        line.isSet(QStringLiteral("sig")) ? line.value(QStringLiteral("sig")) : drug->DefaultSig;
    rx.Qty = line.value(QStringLiteral("qty")).toDouble();
    rx.OriginalQty = rx.Qty;
    rx.setDS(line.value(QStringLiteral("ds")));
    rx.Refills = line.value(QStringLiteral("refills")).toInt();
    rx.OriginalRefills = qint32(rx.Refills);
    rx.QtyRemain = rx.Qty * rx.Refills;
    rx.AWP = drug->AWP * rx.Qty;
    rx.Cost = drug->Cost * rx.Qty;
}

int runNew(const CommandLine& line) {
    RecordSession session(line);
    const auto db = session.open();
    if (!db || !useAlternateSource(line)) return kExitFailed;
    if (const auto missing = missingRecord(line, *db)) return line.failed(*missing);
    clsPrescription rx;
    rx.setConnection(db);
    rx.RPh = line.value(QStringLiteral("rph")).toInt();
    if (!rx.NewPrescription(rx.RPh, 0, line.value(QStringLiteral("tech")).toInt())) {
        session.printReports();
        return line.failed(QStringLiteral("no new prescription number could be had"));
    }
    fillIn(line, rx);
    priceAndSave(line, *db, rx);
    rx.GetData();
    if (line.json()) {
        JsonObjectText object = fillJson(rx);
        object.add(QStringLiteral("reports"), reportsJson(session.reports()));
        printJson(object);
        return session.reports().isEmpty() ? kExitOk : kExitFailed;
    }
    printFill(rx);
    return session.printReports() == 0 ? kExitOk : kExitFailed;
}

// ---- tvrx refill -------------------------------------------------------------------

void declareRefill(CommandLine& line) {
    line.addArgument(QStringLiteral("RX-NUMBER"), QStringLiteral("the prescription number"));
    line.addOption(QStringLiteral("rph"), QStringLiteral("ID"), QStringLiteral("the pharmacist"),
                   Presence::Required);
    line.addOption(QStringLiteral("tech"), QStringLiteral("ID"), QStringLiteral("the technician"));
    line.addOption(QStringLiteral("patient"), QStringLiteral("ID"),
                   QStringLiteral("refuse a prescription of another patient"));
    line.addOption(QStringLiteral("start"), QStringLiteral("N"),
                   QStringLiteral("the lowest number a new prescription number may take"));
    line.addFlag(QStringLiteral("control-ii-override"),
                 QStringLiteral("only the one-year rule applies to controlled substances"));
    line.addOption(QStringLiteral("answer"), QStringLiteral("A"),
                   QStringLiteral("the answer to the next question, in order (OK, Cancel, Yes, "
                                  "No, a button's number or caption, a text)"),
                   Presence::Repeatable);
    declarePricingOptions(line);
    line.addDatabaseOption();
    line.addJsonOption();
}

// What a refill that made no fill tells the user.
QString notFilled(qint16 code) {
    switch (code) {
        case 10:
            return QStringLiteral("not filled: print the call-doctor form");
        case 11:
            return QStringLiteral("not filled: fax the doctor");
        default:
            return QStringLiteral("not filled");
    }
}

int runRefill(const CommandLine& line) {
    const std::optional<qint32> number = line.key(0);
    if (!number) return line.usageError(notAKey(line.arguments().at(0)));
    RecordSession session(line);
    const auto db = session.open();
    if (!db || !useAlternateSource(line)) return kExitFailed;
    auto console = std::make_shared<ConsoleUserInteraction>();
    for (const QString& answer : line.values(QStringLiteral("answer"))) console->addAnswer(answer);
    mdlMain::UserService = console;
    clsPrescription rx;
    rx.setConnection(db);
    qint32 filled = *number;
    const qint16 code = rx.RefillPrescription(line.value(QStringLiteral("rph")).toInt(),
                                              line.value(QStringLiteral("start")).toInt(), filled,
                                              line.value(QStringLiteral("patient")).toInt(),
                                              line.value(QStringLiteral("tech")).toInt(),
                                              line.isSet(QStringLiteral("control-ii-override")));
    if (code == -1) priceAndSave(line, *db, rx);
    if (line.json()) {
        JsonObjectText object;
        object.add(QStringLiteral("code"), code);
        object.add(QStringLiteral("number"), filled);
        if (code == -1) object.add(QStringLiteral("fill"), fillJson(rx));
        object.add(QStringLiteral("reports"), reportsJson(session.reports()));
        printJson(object);
    } else if (code == -1) {
        printFill(rx);
    } else {
        std::printf("Prescription %d: %s (code %d)\n", filled, qPrintable(notFilled(code)), code);
    }
    const int reported = line.json() ? int(session.reports().size()) : session.printReports();
    return code == 0 || reported > 0 ? kExitFailed : kExitOk;
}

}  // namespace

Command newCommand() {
    return {QStringLiteral("new"), QStringLiteral("start a new prescription, priced and saved"),
            QStringLiteral("Gives the prescription the next number with its original fill, fills\n"
                           "in its patient, prescriber and drug, prices it by the pharmacy's\n"
                           "price tables and saves it."),
            declareNew, runNew};
}

Command refillCommand() {
    return {
        QStringLiteral("refill"), QStringLiteral("refill a prescription under the refill rules"),
        QStringLiteral("Refills the prescription as the pharmacy's refill rules allow, asking\n"
                       "on the terminal where a rule objects (--answer gives the answers in\n"
                       "order, for scripts), then prices and saves the new fill. Exit code 0\n"
                       "when it was filled or the user chose to call or fax the doctor, 1 when\n"
                       "nothing was filled."),
        declareRefill, runRefill};
}

}  // namespace tvrx::cli
