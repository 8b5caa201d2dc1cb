#include "claims/PlanRows.h"

#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"

namespace tvrx {

namespace {

const QString kPlanRow = QStringLiteral(
    "SELECT INSURANCE.*, PATINS.CardNumber, PATINS.SubscribersName, PATINS.Clarification, "
    "PATINS.GroupNumber, PATINS.PersonNumber FROM PATINS INNER JOIN INSURANCE ON "
    "INSURANCE.InsID = PATINS.InsID WHERE PATINS.PatInsID = ?");

const QString kCoverageRow = QStringLiteral("SELECT * FROM PATINS WHERE PatInsID = ?");

}  // namespace

RecordSet openPlanRow(qint32 patInsID) {
    return records::mainConnection().OpenRecordSet(kPlanRow, {patInsID});
}

PlanRows openPlanRows(qint32 patInsID) {
    PlanRows rows;
    rows.rsIns = openPlanRow(patInsID);
    rows.rsPatIns = records::mainConnection().OpenRecordSet(kCoverageRow, {patInsID});
    return rows;
}

}  // namespace tvrx
