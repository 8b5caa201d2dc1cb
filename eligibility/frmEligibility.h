#pragma once

#include "records/clsPatient.h"
#include "reports/frmPrint.h"

#include <QList>
#include <QString>

#include <memory>

namespace tvrx {

// Which of the eligibility report's buttons can be used, worked out from what the
// patient's latest eligibility answer named and what the pharmacy has of it.
struct EligibilityButtons {
    bool AddPrimary = false;
    bool AddPrimaryPatient = false;
    bool AddSecondary = false;
    bool AddSecondaryPatient = false;
    bool ConfigLink = false;

    bool operator==(const EligibilityButtons&) const = default;
};
EligibilityButtons eligibilityButtons(const clsPatient::EligibilityState& patient);

// The eligibility report: the preview of frmPrint with five buttons beside the document,
// which add the plans the answer names to the pharmacy and to the patient.
class frmEligibility : public frmPrint {
public:
    struct CommandButton {
        QString Caption;
        bool Enabled = false;
    };

    // A form over a new document of the session's kind.
    frmEligibility();
    explicit frmEligibility(std::shared_ptr<PageDocument> document);

    CommandButton cmdAddPrimary;
    CommandButton cmdAddPrimaryPatient;
    CommandButton cmdAddSecondary;
    CommandButton cmdAddSecondaryPatient;
    // Stands on the form with its enabled state only; clicking it does nothing.
    CommandButton cmdConfigLink;

    // The patient whose answer the form shows; the buttons act on it. The patient must
    // outlive the form.
    void setPatientData(clsPatient* patient) { patient_ = patient; }
    clsPatient* PatientData() const { return patient_; }

    void ConfigureButtons();
    void cmdAddPrimary_Click();
    void cmdAddPrimaryPatient_Click();
    void cmdAddSecondary_Click();
    void cmdAddSecondaryPatient_Click();

    QList<SideButton> sideButtons() const override;
    void sideButton_Click(const QString& name) override;

private:
    void setButtons();
    // Runs an addition and, when it worked, works the buttons out again.
    void afterAdding(bool added);

    clsPatient* patient_ = nullptr;
};

}  // namespace tvrx
