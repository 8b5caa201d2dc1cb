#include "eligibility/frmEligibility.h"

#include "session/text/Conversions.h"

#include <array>

namespace tvrx {

namespace {

// Both values of the plan are there (not blank after trimming).
bool named(const QString& bin, const QString& pcn) {
    return !conv::Trim(bin).isEmpty() && !conv::Trim(pcn).isEmpty();
}

using Button = frmEligibility::CommandButton frmEligibility::*;
using Click = void (frmEligibility::*)();

// The buttons beside the document, top to bottom, by the names the faces know them by.
struct ButtonEntry {
    const char* name;
    Button button;
    Click click;
};
const std::array<ButtonEntry, 5> kButtons{{
    {"cmdAddPrimary", &frmEligibility::cmdAddPrimary, &frmEligibility::cmdAddPrimary_Click},
    {"cmdAddPrimaryPatient", &frmEligibility::cmdAddPrimaryPatient,
     &frmEligibility::cmdAddPrimaryPatient_Click},
    {"cmdAddSecondary", &frmEligibility::cmdAddSecondary, &frmEligibility::cmdAddSecondary_Click},
    {"cmdAddSecondaryPatient", &frmEligibility::cmdAddSecondaryPatient,
     &frmEligibility::cmdAddSecondaryPatient_Click},
    {"cmdConfigLink", &frmEligibility::cmdConfigLink, nullptr},
}};

}  // namespace

EligibilityButtons eligibilityButtons(const clsPatient::EligibilityState& patient) {
    const bool primary = named(patient.Primary.BIN, patient.Primary.PCN);
    const bool secondary = named(patient.Secondary.BIN, patient.Secondary.PCN);
    EligibilityButtons on;
    on.AddPrimary = primary && !patient.PrimaryConfigured && patient.PrimaryLookupAvailable;
    on.AddPrimaryPatient =
        primary && patient.PrimaryConfigured && !patient.PatientPrimaryConfigured;
    on.AddSecondary = secondary && !patient.SecondaryConfigured && patient.SecondaryLookupAvailable;
    on.AddSecondaryPatient =
        secondary && patient.SecondaryConfigured && !patient.PatientSecondaryConfigured;
    on.ConfigLink =
        primary && secondary && patient.SecondaryConfigured && patient.PatientSecondaryConfigured;
    return on;
}

frmEligibility::frmEligibility() : frmEligibility(createDocument()) {}

frmEligibility::frmEligibility(std::shared_ptr<PageDocument> document)
    : frmPrint(std::move(document), Kind::Eligibility) {
    setButtons();
}

void frmEligibility::setButtons() {
    cmdAddPrimary.Caption = QStringLiteral("Add P&rmary Ins");
    cmdAddPrimaryPatient.Caption = QStringLiteral("&Add Prmary Ins to Patient");
    cmdAddSecondary.Caption = QStringLiteral("Add &Sec Ins");
    cmdAddSecondaryPatient.Caption = QStringLiteral("Add Sec &Ins to Patient");
    cmdConfigLink.Caption = QStringLiteral("Config Pri-Sec &Link");
}

void frmEligibility::ConfigureButtons() {
    if (!patient_) return;
    const EligibilityButtons on = eligibilityButtons(patient_->eligibilityState());
    cmdAddPrimary.Enabled = on.AddPrimary;
    cmdAddPrimaryPatient.Enabled = on.AddPrimaryPatient;
    cmdAddSecondary.Enabled = on.AddSecondary;
    cmdAddSecondaryPatient.Enabled = on.AddSecondaryPatient;
    cmdConfigLink.Enabled = on.ConfigLink;
}

void frmEligibility::afterAdding(bool added) {
    if (added) ConfigureButtons();
}

void frmEligibility::cmdAddPrimary_Click() {
    if (patient_) afterAdding(patient_->AddInsurance(true));
}

void frmEligibility::cmdAddPrimaryPatient_Click() {
    if (patient_) afterAdding(patient_->AddPatientInsurance(true));
}

void frmEligibility::cmdAddSecondary_Click() {
    if (patient_) afterAdding(patient_->AddInsurance(false));
}

void frmEligibility::cmdAddSecondaryPatient_Click() {
    if (patient_) afterAdding(patient_->AddPatientInsurance(false));
}

QList<frmPrint::SideButton> frmEligibility::sideButtons() const {
    QList<SideButton> buttons;
    for (const ButtonEntry& entry : kButtons) {
        const CommandButton& button = this->*entry.button;
        buttons.append({QString::fromLatin1(entry.name), button.Caption, button.Enabled});
    }
    return buttons;
}

void frmEligibility::sideButton_Click(const QString& name) {
    for (const ButtonEntry& entry : kButtons) {
        if (name == QLatin1String(entry.name) && entry.click) (this->*entry.click)();
    }
}

}  // namespace tvrx
