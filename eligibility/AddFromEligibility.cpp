// clsPatient::AddInsurance and AddPatientInsurance: the eligibility report's buttons, which
// create a plan the answer named from the plan directory or attach it to the patient.
#include "eligibility/PatientCoverage.h"
#include "records/PATINS.h"
#include "records/clsINSURANCE.h"
#include "records/clsPatient.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "session/text/Conversions.h"

namespace tvrx {

namespace {

// A person code of 1 or less is the cardholder, anything above a dependant.
const QString kCardholder = QStringLiteral("H");
const QString kDependant = QStringLiteral("S");

bool blank(const QString& text) {
    return conv::Trim(text).isEmpty();
}

}  // namespace

bool clsPatient::AddInsurance(bool Primary) {
    Frame frame("clsPatient:AddInsurance");
    const NamedPlan& named = Primary ? eligibility_.Primary : eligibility_.Secondary;
    if (blank(named.BIN) || blank(named.PCN)) return false;
    clsINSURANCE plan;
    frame([&] { plan.setConnection(mdlMain::MainConnection); });
    qint32 insID = 0;
    frame([&] { insID = plan.InsertFromLookup(SelectedNABP, named.BIN, named.PCN); });
    if (insID <= 0) return false;
    frame([&] {
        plan.Phone = named.InsPhone;
        plan.Update();
    });
    (Primary ? eligibility_.PrimaryConfigured : eligibility_.SecondaryConfigured) = true;
    if (patientHasPlan(frame, insID, PatientID)) {
        (Primary ? eligibility_.PatientPrimaryConfigured
                 : eligibility_.PatientSecondaryConfigured) = true;
    }
    return true;
}

bool clsPatient::AddPatientInsurance(bool Primary) {
    Frame frame("clsPatient:AddPatientInsurance");
    const NamedPlan& named = Primary ? eligibility_.Primary : eligibility_.Secondary;
    if (blank(named.BIN) || blank(named.PCN)) return false;
    clsINSURANCE plan;
    frame([&] { plan.setConnection(mdlMain::MainConnection); });
    bool found = false;
    frame([&] { found = plan.FindByBinAndPcn(named.BIN, named.PCN); });
    if (!found) return false;
    if (!patientHasPlan(frame, plan.InsID, PatientID)) {
        PATINS coverage;
        frame([&] { coverage.setConnection(mdlMain::MainConnection); });
        frame([&] { coverage.Insert(); });
        const double person = conv::Val(named.PersonCode);
        frame([&] {
            coverage.PatientID = PatientID;
            coverage.setInsID(plan.InsID);
            coverage.CardNumber = named.MemberID;
            coverage.GroupNumber = named.GroupNumber;
            coverage.Relationship = person <= 1 ? kCardholder : kDependant;
            coverage.PersonNumber = conv::Format(person, QStringLiteral("00"));
            coverage.InsCode = plan.InsCode;
        });
        frame([&] { coverage.Update(); });
        // The patient's default plan becomes the new one, except that a primary plan added
        // while the secondary is attached leaves the default on the secondary.
        if (!Primary || !eligibility_.PatientSecondaryConfigured) PatInsID = coverage.PatInsID;
        Update();
    }
    (Primary ? eligibility_.PatientPrimaryConfigured : eligibility_.PatientSecondaryConfigured) =
        true;
    return true;
}

}  // namespace tvrx
