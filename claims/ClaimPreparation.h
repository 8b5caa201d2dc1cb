#pragma once

#include "claims/ClaimValues.h"

#include <QLatin1StringView>
#include <QString>

#include <memory>

namespace tvrx {

class Frame;
class RecordSet;
class clsDoc;
class clsPatient;
class clsPrescription;

namespace claims {

// The prescription's stored days supply and product code qualifier, which a claim sends
// as stored whatever the getters show.
struct StoredTexts {
    static const QString& daysSupply(const clsPrescription& rx);
    static const QString& productIDQualifier(const clsPrescription& rx);
};

// The values of one claim body, worked out from the prescription, its patient and
// prescriber, and the plan row. The working values of the shared preparation keep their
// earlier value when a step fails (the failure is reported at once); the values of single
// fields keep their failure for the field, which is then left out.
class ClaimPreparation {
public:
    ClaimPreparation(clsPrescription& rx, RecordSet& plan, bool sendingOther, Frame& frame);

    Values values;

    // The preparation every layout shares. False when the price is missing and the claim
    // must not go out (the user has been told).
    bool shared();
    // The plan's Form, which picks the layout.
    QString form() const { return form_; }
    // The values of the chosen layout. False when the claim must not go out.
    bool forLayout(QLatin1StringView layout);

private:
    // Shared.
    void readSwitches();
    void remainingFills();
    void salesTaxRate();
    void primaryCare();
    bool priceEntered();
    void productAndAmounts();
    void priorAuthorization();
    void prescriber();
    void fieldValues();
    // The fixed layouts.
    bool compound40();
    // Version 5.1 (BuildClaim51.cpp).
    bool segmented();
    void claimSegment();
    void modifiers();
    void intermediary();
    void prescriberSegment();
    void otherPayer();
    void workersComp();
    void dur();
    void pricing();
    bool compound51();
    void compoundTags();
    void clinical();

    // Opens the compound's ingredients into `rows` and returns their count; with none the
    // user is told.
    qint32 ingredientRows(RecordSet& rows);
    static ItemSlots ingredient(const RecordSet& row, double& cost);
    // A plan column the claim takes as it stands: a null fails with 94.
    QString nullFails(const char* column);
    // Whether the plan's code names a Medicare plan, read afresh each time.
    bool medicarePlan();
    QString planText(const char* column);

    clsPrescription& rx_;
    RecordSet& plan_;
    bool sendingOther_;
    Frame& frame_;
    std::shared_ptr<clsPatient> patient_;
    std::shared_ptr<clsDoc> doctor_;
    QString form_;
    bool medicare_ = false;
    double salesTaxRate_ = 0;
};

}  // namespace claims
}  // namespace tvrx
