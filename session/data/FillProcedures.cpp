#include "session/data/FillProcedures.h"

#include "session/data/DbConnection.h"
#include "session/data/Transaction.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"

#include <QStringList>

namespace tvrx {

namespace {

// Two workstations starting a prescription at the same moment take turns on this name.
const QString kNumberLock = QStringLiteral("RXINFO.Number");

// The original fill of a new prescription: the number after the highest ever given, the
// pharmacist, the server's time; every other column empty.
Procedures::Result newRxNewNumber(DbConnection& connection, const QVariantList& args) {
    const QString now = connection.dialect().serverTime();
    const QString insert =
        QStringLiteral(
            "INSERT INTO RXINFO (Number, RefillNumber, RPhID, Date, DateChanged, "
            "Deleted, Voided, OnHold) VALUES ((SELECT COALESCE(MAX(Number), 0) + 1 "
            "FROM RXINFO), 0, ?, %1, %1, 0, 0, 0) RETURNING RXInfoID, Number")
            .arg(now);
    // The lock is held until the row is in, so that the next workstation reads it.
    const Dialect& dialect = connection.dialect();
    Transaction transaction(connection, dialect.beginLocked());
    if (!dialect.lockStatement().isEmpty())
        connection.Scalar(dialect.lockStatement(), {kNumberLock});
    RecordSet created = connection.OpenRecordSet(insert, {args.value(0)});
    transaction.commit();
    Procedures::Result result{created.Fields(0), RecordSet()};
    result.Output.insert(QStringLiteral("@RxNumber"), created.Fields(1));
    return result;
}

Procedures::Result maxRxNumber(DbConnection& connection, const QVariantList&) {
    return {connection.Scalar(QStringLiteral("SELECT COALESCE(MAX(Number), 0) FROM RXINFO"))};
}

Procedures::Result maxRefill(DbConnection& connection, const QVariantList& args) {
    return {connection.Scalar(
        QStringLiteral("SELECT COALESCE(MAX(RefillNumber), 0) FROM RXINFO WHERE Number = ?"),
        {args.value(0)})};
}

Procedures::Result newRefill(DbConnection& connection, const QVariantList& args) {
    const auto& columns = newRefillColumns();
    if (args.size() != qsizetype(columns.size())) {
        fail(err::StatementError, QStringLiteral("Procedure NewRefill expects %1 values, got %2.")
                                      .arg(columns.size())
                                      .arg(args.size()));
    }
    QStringList names;
    for (const char* column : columns) names << QString::fromLatin1(column);
    const QStringList marks(names.size(), QStringLiteral("?"));
    const QString insert =
        QStringLiteral(
            "INSERT INTO RXINFO (%1, Deleted, Voided, OnHold, "
            "DateChanged) VALUES (%2, 0, 0, 0, %3) RETURNING RXInfoID")
            .arg(names.join(QStringLiteral(", ")), marks.join(QStringLiteral(", ")),
                 connection.dialect().serverTime());
    return {connection.Scalar(insert, args)};
}

}  // namespace

const std::vector<const char*>& newRefillColumns() {
    static const std::vector<const char*> columns{
        "Number", "RefillNumber", "PatientID", "Patient",  "PatInsID", "MDID",      "Doctor",
        "Drug",   "DrugID",       "Compound",  "Qty",      "Refills",  "QtyRemain", "Cost",
        "Price",  "Copay",        "SIG",       "Date",     "LogID",    "DS",        "RPhID",
        "TechID", "PriceTableID", "SigCodes",  "Schedule",
    };
    return columns;
}

std::vector<std::pair<const char*, Procedures::Procedure>> fillProcedures() {
    return {
        {"spr_NewRxNewNumber", newRxNewNumber},
        {"MaxRxNumber", maxRxNumber},
        {"MaxRefill", maxRefill},
        {"NewRefill", newRefill},
    };
}

}  // namespace tvrx
