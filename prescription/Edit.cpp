#include "prescription/RefillDialogs.h"
#include "prescription/clsPrescription.h"
#include "prescription/frmFindRefill.h"

#include "responses/clsClaimResponse.h"
#include "session/data/Catalogue.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/runtime/AppConfig.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "session/runtime/UserInteraction.h"
#include "session/text/Conversions.h"

#include <functional>

namespace tvrx {

namespace {

const QString kFindRxNumberAll = QStringLiteral("dbo_FindRxNumberAll");
const QString kPharmacist = QStringLiteral("Select RPhID From RPH Where RPhID = ?");
constexpr qint16 kLastFill = 99;
constexpr qint16 kPickFill = -1;

void closeIfOpen(RecordSet& rs) {
    if (rs.State() == 1) rs.Close();
}

void sayRefillNotFound(qint16 refill) {
    mdlMain::user().MsgBox(QStringLiteral("The Refill Number entered, ") +
                               conv::NumberTextSigned(refill) + QStringLiteral("\n") +
                               QStringLiteral(" was not found."),
                           Buttons::OKOnly, Icon::Information, 1, appConfig().ProductName);
}

Answer askRecoverDeleted() {
    return mdlMain::user().MsgBox(
        QStringLiteral("This prescription number shows to be deleted. Click Yes to recover this "
                       "prescription number and Edit.\r\nClick No to Edit this prescription "
                       "number without recovering or click Cancel to abort Edit."),
        Buttons::YesNoCancel, Icon::Critical, 3, appConfig().Title);
}

bool okToReplacePharmacist() {
    return mdlMain::user().MsgBox(
               QStringLiteral("It appears that the Pharmacist on this prescription has been "
                              "removed. By clicking OK the pharmacist\r\nwill be changed to the "
                              "currently logged in pharmacist. Cancel will continue the edit "
                              "without assigning \r\na pharmacist."),
               Buttons::OKCancel, Icon::Question, 1, appConfig().Title) == Answer::OK;
}

// One edit of one prescription number.
class EditRun {
public:
    EditRun(clsPrescription& rx, qint32 number, qint32 patientId, qint16 refill, qint32 rphId)
        : rx_(rx), number_(number), patientId_(patientId), refill_(refill), rphId_(rphId) {}

    bool run();

private:
    bool findFill();
    bool forThisPatient(RecordSet& fills);
    std::optional<qint32> chosenFill(RecordSet& fills);
    void rebuildStoredResponses();
    void offerRecovery();
    void checkPharmacist();

    // A test whose step fails resumes inside its block, as the original handler did.
    bool test(const std::function<bool()>& condition) {
        bool holds = true;
        frame_([&] { holds = condition(); });
        return holds;
    }
    void reload() {
        rx_.Update();
        rx_.GetData();
    }

    clsPrescription& rx_;
    const qint32 number_;
    const qint32 patientId_;
    const qint16 refill_;
    const qint32 rphId_;
    Frame frame_{"clsPrescription:EditPrescription"};
    bool result_ = false;
};

bool EditRun::run() {
    if (number_ > 0) {
        if (!findFill()) return false;
        rebuildStoredResponses();
    }
    // A number of 0 leaves the object as it stands: these checks still run on it.
    offerRecovery();
    checkPharmacist();
    return result_;
}

// Loads the fill chosen among the number's fills, deleted ones included. False when the
// edit ends here; true when it goes on, with a fill loaded or, the finder cancelled, none.
bool EditRun::findFill() {
    Catalogue& catalogue = mdlMain::catalogue();
    RecordSet& fills = catalogue.rs(kFindRxNumberAll);
    frame_([&] {
        closeIfOpen(fills);
        catalogue.Run(kFindRxNumberAll, {number_});
    });
    rx_.PrescriptionType = EditRx;
    if (test([&] { return fills.RecordCount() == 0; })) {
        refill::sayNotFound(number_);
        frame_([&] { closeIfOpen(fills); });
        return false;
    }
    if (!forThisPatient(fills)) return false;
    const std::optional<qint32> chosen = chosenFill(fills);
    if (!chosen) return false;
    if (*chosen <= 0) {
        frame_([&] { closeIfOpen(fills); });
        return true;
    }
    rx_.RXInfoID = *chosen;
    result_ = true;
    rx_.GetData();
    return true;
}

bool EditRun::forThisPatient(RecordSet& fills) {
    if (patientId_ <= 0) return true;
    if (!test([&] {
            fills.MoveFirst();
            const QVariant patient = fills.Fields(QStringLiteral("PatientID"));
            return !patient.isNull() && conv::ToDouble(patient) != patientId_;
        })) {
        return true;
    }
    refill::sayOtherPatient(number_);
    frame_([&] { closeIfOpen(fills); });
    return false;
}

// The RXInfoID of the fill to edit; 0 when the finder was cancelled; none when the edit
// ends (the refill asked for is not there).
std::optional<qint32> EditRun::chosenFill(RecordSet& fills) {
    qint32 chosen = 0;
    const auto fromRow = [&] { chosen = conv::ToLong(fills.Fields(QStringLiteral("RXInfoID"))); };
    if (test([&] { return fills.RecordCount() == 1; })) {
        frame_([&] {
            fills.MoveFirst();
            fromRow();
        });
    } else if (refill_ == kLastFill) {
        frame_([&] {
            fills.MoveLast();
            fromRow();
        });
    } else if (refill_ != kPickFill) {
        frame_([&] {
            fills.MoveFirst();
            fills.Find(QStringLiteral("RefillNumber = ") + QString::number(refill_));
        });
        if (test([&] { return fills.Eof(); })) {
            sayRefillNotFound(refill_);
            frame_([&] { closeIfOpen(fills); });
            return std::nullopt;
        }
        frame_(fromRow);
    } else {
        frmFindRefill finder;
        finder.Show();
        chosen = mdlMain::FindRefillRxInfoID;
    }
    return chosen;
}

// The payers' answers stored with the fill are decoded again, so that the edit shows them.
void EditRun::rebuildStoredResponses() {
    frame_([&] {
        if (rx_.OnlineResult.isEmpty()) return;
        const auto response = rx_.Response();
        response->Claim = rx_.OnlineResult;
        if (response->BuildResponse()) rx_.ClaimReady = true;
    });
    frame_([&] {
        if (rx_.OOnlineResult.size() <= 1) return;
        const auto response = rx_.OtherResponse();
        response->Claim = rx_.OOnlineResult;
        if (response->BuildResponse()) rx_.OtherClaimReady = true;
    });
}

// A deleted fill may be recovered. When a live fill now holds its number and refill
// number the unique rule refuses the write, which is reported, and the fill reloads
// still deleted.
void EditRun::offerRecovery() {
    if (rx_.Deleted == 0) return;
    Answer answer = Answer::Cancel;
    frame_([&] { answer = askRecoverDeleted(); });
    if (answer == Answer::Cancel) {
        result_ = false;
    } else if (answer == Answer::Yes) {
        rx_.Deleted = 0;
        rx_.Voided = false;
        reload();
    }
}

// A fill without a pharmacist takes the one editing; one whose pharmacist was removed
// takes him if the user agrees.
void EditRun::checkPharmacist() {
    if (rx_.RPh == 0) {
        rx_.RPh = rphId_;
        reload();
        return;
    }
    RecordSet pharmacist;
    frame_([&] { pharmacist = records::mainConnection().OpenRecordSet(kPharmacist, {rx_.RPh}); });
    if (test([&] { return pharmacist.Eof(); })) {
        bool replace = false;
        frame_([&] { replace = okToReplacePharmacist(); });
        if (replace) {
            rx_.RPh = rphId_;
            reload();
        }
    }
    frame_([&] { closeIfOpen(pharmacist); });
}

}  // namespace

bool clsPrescription::EditPrescription(qint32 lRxNumber, qint32 lPatientID, qint16 lRefillNumber,
                                       qint32 RPhID, qint32 TechID) {
    m_lEditRPhID = RPhID;
    m_lEditTechID = TechID;
    return EditRun(*this, lRxNumber, lPatientID, lRefillNumber, RPhID).run();
}

}  // namespace tvrx
