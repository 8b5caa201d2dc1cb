#include "prescription/FillRow.h"
#include "prescription/RefillDialogs.h"
#include "prescription/clsPrescription.h"

#include "session/data/Catalogue.h"
#include "session/data/MainConnection.h"
#include "session/data/Procedures.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "session/text/Conversions.h"

namespace tvrx {

namespace {

const QString kFindRxNumber = QStringLiteral("dbo_FindRxNumber");

double orZeroNumber(const RecordSet& rs, const char* name) {
    return conv::ToDouble(fillrow::orZero(rs, name));
}

}  // namespace

// The new number is an original fill of the same therapy: the last fill's quantity, its
// refills and what remained, whatever state that fill is in (voided included). No
// ingredients go with it. The fill counts as a refill for the labels and the log; the
// record set of the old number's fills stays open for the caller.
bool clsPrescription::GeneratePrescription(qint32 RPhID, qint32 StartNumber, qint32& lRxNumber,
                                           qint32 /*lPatientID*/, qint32 TechID) {
    if (lRxNumber <= 0) return false;
    Frame frame("clsPrescription:GeneratePrescription");
    const qint32 oldNumber = lRxNumber;
    Catalogue& catalogue = mdlMain::catalogue();
    RecordSet& fills = catalogue.rs(kFindRxNumber);
    frame([&] {
        if (fills.State() == 1) fills.Close();
        catalogue.Run(kFindRxNumber, {lRxNumber});
    });
    bool empty = true;
    frame([&] { empty = fills.RecordCount() == 0; });
    if (empty) {
        refill::sayNotFound(lRxNumber);
        frame([&] {
            if (fills.State() == 1) fills.Close();
        });
        return false;
    }
    fillrow::NewFill fill{0, 0, 0, 0, 0, RPhID, TechID};
    frame([&] { fills.MoveLast(); });
    frame([&] { fill.qty = orZeroNumber(fills, "Qty"); });
    frame([&] { fill.refills = orZeroNumber(fills, "Refills"); });
    frame([&] { fill.qtyRemain = orZeroNumber(fills, "QtyRemain"); });
    frame([&] {
        catalogue.Run(QStringLiteral("dbo_MaxRxNumber"));
        lRxNumber = conv::ToLong(catalogue.returnValue(QStringLiteral("dbo_MaxRxNumber"))) + 1;
    });
    if (lRxNumber < StartNumber) lRxNumber = StartNumber;
    fill.number = lRxNumber;
    PrescriptionType = RefillRx;
    QString units;
    frame([&] { units = fillrow::text(fills, "Units"); });
    qint32 newId = 0;
    const int failuresBefore = frame.failures();
    frame([&] {
        const Procedures::Result created =
            Procedures::call(records::mainConnection(), QStringLiteral("dbo.NewRefill"),
                             fillrow::newRefillValues(fills, fill));
        newId = conv::ToLong(created.ReturnValue);
    });
    // A fill that could not be stored ends here: going on would load the fill the object
    // held before and overwrite it.
    if (frame.failures() > failuresBefore) return false;
    RXInfoID = newId;
    GetData();
    OriginalDate = fillrow::today();
    GeneratedRx = oldNumber;
    Units = units;
    fillrow::carryOver(frame, *this, fills);
    return true;
}

}  // namespace tvrx
