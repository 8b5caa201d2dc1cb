#include "prescription/clsPrescription.h"

#include "session/data/Catalogue.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/data/Procedures.h"
#include "session/runtime/AppConfig.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "session/runtime/UserInteraction.h"
#include "session/text/Conversions.h"

namespace tvrx {

namespace {

const QString kVoidRefill = QStringLiteral("dbo_VoidRefill");
const QString kHold = QStringLiteral("Update RXINFO Set OnHold = 1 Where RXINFOID = ?");
const QString kLiftHold = QStringLiteral("Update RXINFO Set OnHold = 0 Where RXINFOID = ?");
const QString kRemoveIngredients = QStringLiteral("DELETE FROM INGREDIENTS WHERE RxInfoID = ?");
const QString kMarkDeleted =
    QStringLiteral("UPDATE RXINFO Set Deleted = 1, Voided = 1 WHERE RxInfoID = ?");

// What the pharmacist chose for an original fill without refills.
enum class VoidAction { Void, Delete, Hold, Cancel };

// An original without refills may also be deleted or put on hold instead of voided.
VoidAction askVoidDeleteOrHold() {
    const int pressed = mdlMain::user().Choose(
        QStringLiteral("&Void,&Delete,&Hold,&Cancel"), 4, 1,
        QStringLiteral("Delete, Void or Hold?"),
        QStringLiteral("Please select to Delete, Void or Hold this prescription."), 4);
    switch (pressed) {
        case 1:
            return VoidAction::Void;
        case 2:
            return VoidAction::Delete;
        case 3:
            return VoidAction::Hold;
        default:
            return VoidAction::Cancel;
    }
}

bool askYesNo(const QString& question) {
    return mdlMain::user().MsgBox(question, Buttons::YesNo, Icon::Question, 1,
                                  appConfig().ProductName) == Answer::Yes;
}

double number(const RecordSet& rs, const char* name) {
    return conv::ToDouble(rs.Fields(QString::fromLatin1(name)));
}

// The whole refills a quantity left holds: both rounded to whole numbers, the remainder
// dropped; no refills for a fill of no quantity.
qint32 refillsIn(double quantityRemaining, double quantity) {
    if (quantity == 0) return 0;
    const qint32 divisor = conv::LongFromDouble(quantity);
    if (divisor == 0) fail(err::DivisionByZero);
    return conv::LongFromDouble(quantityRemaining) / divisor;
}

void closeIfOpen(RecordSet& rs) {
    if (rs.State() == 1) rs.Close();
}

}  // namespace

bool clsPrescription::VoidPrescription() {
    Frame frame("clsPrescription:VoidPrescription");
    bool done = false;
    frame([&] {
        if (Voided) {
            const QString question =
                OnHold
                    ? QStringLiteral("Do you want remove the HOLD and VOID from this prescription?")
                    : QStringLiteral("Do you want remove the VOID from this prescription?");
            done = askYesNo(question) && Void_Rx(false);
        } else {
            done = askYesNo(QStringLiteral("Do you want to VOID/HOLD this prescription?")) &&
                   Void_Rx(true);
        }
    });
    return done;
}

// Voids (bVoid true) or un-voids the loaded fill: the quantity goes back to stock and to
// the quantity left of this fill and every later one, whose refills are counted again.
// A hold is a void that also sets OnHold; an un-void lifts both.
bool clsPrescription::Void_Rx(bool bVoid) {
    Frame frame("clsPrescription:Void_Rx");
    Catalogue& catalogue = mdlMain::catalogue();
    RecordSet* fills = nullptr;
    frame([&] {
        fills = &catalogue.rs(kVoidRefill);
        closeIfOpen(*fills);
        catalogue.Run(kVoidRefill, {Number, RefillNumber});
    });
    if (!fills || fills->State() == 0) return false;
    qint32 count = 0;
    frame([&] { count = fills->RecordCount(); });
    if (count == 0) {
        frame([&] { closeIfOpen(*fills); });
        return false;
    }
    VoidAction action = VoidAction::Void;
    if (bVoid && RefillNumber == 0 && count == 1) {
        frame([&] { action = askVoidDeleteOrHold(); });
        if (action == VoidAction::Cancel) {
            frame([&] { closeIfOpen(*fills); });
            return false;
        }
    }
    double adjustment = 0;
    frame([&] {
        fills->MoveFirst();
        adjustment = bVoid ? number(*fills, "Qty") : -number(*fills, "Qty");
    });
    AdjustWantbook(adjustment, 0);
    if (action == VoidAction::Delete) {
        // Delete gives the quantity back to stock once more: a delete from this dialog
        // moves the stock by twice the quantity, as the pharmacy's counts have always shown.
        Delete(false);
        RXInfoID = 0;
    } else {
        DbConnection& db = records::mainConnection();
        bool more = true;
        frame([&] { more = !fills->Eof(); });
        while (more) {
            double remaining = 0;
            frame([&] {
                remaining = number(*fills, "QtyRemain") + adjustment;
                fills->setField(QStringLiteral("QtyRemain"), remaining);
            });
            frame([&] {
                if (action == VoidAction::Hold) db.Execute(kHold, {RXInfoID});
            });
            frame([&] {
                fills->setField(QStringLiteral("Refills"),
                                refillsIn(remaining, number(*fills, "Qty")));
            });
            frame([&] {
                if (number(*fills, "RefillNumber") != RefillNumber) return;
                fills->setField(QStringLiteral("Voided"), bVoid ? 1 : 0);
                if (!bVoid) db.Execute(kLiftHold, {RXInfoID});
            });
            frame([&] { fills->Update(); });
            more = false;
            frame([&] {
                fills->MoveNext();
                more = !fills->Eof();
            });
        }
    }
    frame([&] { closeIfOpen(*fills); });
    return true;
}

void clsPrescription::Delete(bool Override) {
    Frame frame("clsPrescription:Delete");
    AdjustWantbook(Qty, 0);
    DbConnection& db = records::mainConnection();
    frame([&] { db.Execute(kRemoveIngredients, {RXInfoID}); });
    frame([&] {
        if (Override)
            Procedures::call(db, QStringLiteral("DeleteRx"), {RXInfoID});
        else
            db.Execute(kMarkDeleted, {RXInfoID});
    });
    AddLogEntry();
}

}  // namespace tvrx
