#include "session/data/LifecycleProcedures.h"

#include "session/data/DbConnection.h"

namespace tvrx {

namespace {

const QString kLive = QStringLiteral("COALESCE(Deleted, 0) = 0");

Procedures::Result findRxNumber(DbConnection& connection, const QVariantList& args) {
    return {QVariant(),
            connection.OpenRecordSet(QStringLiteral("SELECT * FROM RXINFO WHERE Number = ? AND ") +
                                         kLive + QStringLiteral(" ORDER BY RefillNumber"),
                                     {args.value(0)})};
}

Procedures::Result findRxNumberAll(DbConnection& connection, const QVariantList& args) {
    return {QVariant(),
            connection.OpenRecordSet(QStringLiteral("SELECT * FROM RXINFO WHERE Number = ? "
                                                    "ORDER BY RefillNumber, RxInfoID"),
                                     {args.value(0)})};
}

// The columns a void changes and the ones it decides by; the key comes along.
Procedures::Result voidRefill(DbConnection& connection, const QVariantList& args) {
    return {QVariant(),
            connection.OpenUpdatable(
                QStringLiteral("RXINFO"),
                QStringLiteral("RxInfoID, Number, RefillNumber, Qty, QtyRemain, Refills, Voided, "
                               "OnHold"),
                QStringLiteral("Number = ? AND RefillNumber >= ? AND ") + kLive +
                    QStringLiteral(" ORDER BY RefillNumber"),
                {args.value(0), args.value(1)})};
}

Procedures::Result deleteRx(DbConnection& connection, const QVariantList& args) {
    connection.Execute(QStringLiteral("DELETE FROM RXINFO WHERE RxInfoID = ?"), {args.value(0)});
    return {};
}

// The list of automatic refills, every row, updatable by its key.
Procedures::Result allAutoRefill(DbConnection& connection, const QVariantList&) {
    return {QVariant(), connection.OpenUpdatable(QStringLiteral("AutoRefill"), QStringLiteral("*"),
                                                 QStringLiteral("1 = 1 ORDER BY AutoRefillID"))};
}

}  // namespace

std::vector<std::pair<const char*, Procedures::Procedure>> lifecycleProcedures() {
    return {
        {"FindRxNumber", findRxNumber},   {"FindRxNumberAll", findRxNumberAll},
        {"VoidRefill", voidRefill},       {"DeleteRx", deleteRx},
        {"AllAutoRefill", allAutoRefill},
    };
}

}  // namespace tvrx
