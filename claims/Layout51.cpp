#include "claims/Layouts.h"

#include "session/text/Encodings.h"

#include <array>

// The body of a version 5.1 claim: the group separator, then segments in the order the
// payer reads them. The header's patient and insurance segments come before it.
namespace tvrx::claims {

namespace {

using V = Value;
using I = ItemValue;
using namespace field;

constexpr std::array kClaim{
    literal("EM", "1", "Prescription reference number qualifier"),
    digits("D2", "Prescription reference number", V::Number, 7),
    text("E1", "Product ID qualifier", V::ProductQualifier, 2),
    fill("D7", "Product ID", V::DispensedNDC, 19),
    text("SE", "Procedure modifier code count", V::ModifierCount, 1, when(Flag::Modifiers)),
};

constexpr std::array kModifiers{
    text("ER", "Procedure modifier code", I::Modifier, 2),
};

constexpr std::array kClaimRest{
    digits("E7", "Quantity dispensed", V::QtyTimes1000, 10),
    digits("D3", "Fill number", V::RefillNumber, 2),
    digits("D5", "Days supply", V::DaysSupply, 3),
    text("D6", "Compound code", V::CompoundCode, 1),
    digits("D8", "Dispense as written", V::DAW, 1),
    day("DE", "Date prescription written", V::OriginalDate),
    digits("DF", "Number of refills authorized", V::RemainingFills, 2),
    literal("DJ", "0", "Prescription origin code"),
    digits("DK", "Submission clarification code", V::OtherDenial, 2),
    digits("ET", "Quantity prescribed", V::QtyTimes1000, 10),
    text("C8", "Other coverage code", V::OtherCoverageCode, 2),
    literal("DT", "0", "Unit dose indicator"),
    literal("EJ", "03", "Originally prescribed product ID qualifier", onSwitch("EJ")),
    fill("EA", "Originally prescribed product ID", V::DispensedNDC, 19, onSwitch("EA")),
    digits("EB", "Originally prescribed quantity", V::MetricQtyTimes1000, 10, onSwitch("EB")),
    literal("CW", "", "Alternate ID"),
    fill("EK", "Scheduled prescription ID number", V::ControlNumber, 12, when(Flag::ControlNumber)),
    fill("28", "Unit of measure", V::Units, 2),
    digits("DI", "Level of service", V::LevelOfService, 2),
    of("EU", "Prior authorization type code", V::PAMCFlag, Encoding::Text, 1, always(), "0"),
    text("EV", "Prior authorization number", V::PANumberText, 11),
    digits("EW", "Intermediary authorization type ID", V::IntermediaryType, 2,
           when(Flag::Intermediary)),
    text("EX", "Intermediary authorization ID", V::IntermediaryID, 11, when(Flag::IntermediaryID)),
    literal("HF", "0000000000", "Quantity intended to be dispensed"),
    literal("HG", "000", "Days supply intended to be dispensed"),
};

constexpr std::array kPharmacy{
    literal("EY", "99", "Provider ID qualifier"),
    fill("E9", "Provider ID", V::PlanID, 15),
};

constexpr Condition kPrimaryCare = onSwitch("2E");
constexpr std::array kPrescriber{
    text("EZ", "Prescriber ID qualifier", V::DoctorQualifier, 2),
    fill("DB", "Prescriber ID", V::DoctorNumber, 15),
    literal("1E", "   ", "Prescriber location code"),
    fill("DR", "Prescriber last name", V::DoctorLastName, 15, onSwitch("DR")),
    text("PM", "Prescriber phone number", V::DoctorPhone, 10),
    literal("2E", "05", "Primary care provider ID qualifier", kPrimaryCare),
    fill("DL", "Primary care provider ID", V::PrimaryCareID, 15, kPrimaryCare),
};

constexpr std::array kOtherPayer{
    literal("4C", "1", "Coordination of benefits count"),
    digits("5C", "Other payer coverage type", V::OtherType, 2),
    digits("6C", "Other payer ID qualifier", V::OtherIDQualifier, 2),
    fill("7C", "Other payer ID", V::OtherPayerID, 10),
    day("E8", "Other payer date", V::FillDate),
    literal("HB", "1", "Other payer amount paid count"),
    digits("HC", "Other payer amount paid qualifier", V::PaidQualifier, 2),
    punched("DV", "Other payer amount paid", V::OtherPaidAmount),
};

constexpr std::array kWorkersComp{
    day("DY", "Date of injury", V::InjuryDate),
    fill("DZ", "Claim reference ID (injury type)", V::InjuryType, 14),
    fill("CF", "Employer name", V::EmployerName, 30),
    fill("CG", "Employer street address", V::EmployerAddress, 30),
    fill("CH", "Employer city", V::EmployerCity, 20),
    fill("CI", "Employer state", V::EmployerState, 2),
    fill("CJ", "Employer zip code", V::EmployerZip, 15),
    fill("CK", "Employer phone number", V::EmployerPhone, 10),
};

constexpr std::array kDur{
    literal("7E", "1", "DUR/PPS code counter"),
    text("E4", "Reason for service code", V::DURConflict, 2, when(Flag::DurConflict)),
    text("E5", "Professional service code", V::DURIntervention, 2, when(Flag::DurIntervention)),
    text("E6", "Result of service code", V::DUROutcome, 2, when(Flag::DurOutcome)),
    literal("8E", "11", "DUR/PPS level of effort"),
};

constexpr Condition kSalesTax = when(Flag::SalesTax);
constexpr std::array kPricing{
    punched("D9", "Ingredient cost submitted", V::ClaimCost),
    punched("DC", "Dispensing fee submitted", V::ClaimFee),
    punched("DX", "Patient paid amount submitted", V::Copay, when(Flag::Copay)),
    punched("DQ", "Usual and customary charge", V::PriceAmount),
    punched("DU", "Gross amount due", V::PriceAmount),
    digits("HE", "Percentage sales tax rate submitted", V::SalesTaxRate, 7, kSalesTax),
    punched("GE", "Percentage sales tax amount submitted", V::SalesTaxAmount, kSalesTax),
    literal("JE", "02", "Percentage sales tax basis submitted", kSalesTax),
    fill("DN", "Basis of cost determination", V::Basis, 2),
};

constexpr std::array kCompound{
    text("EF", "Compound dosage form description code", V::DosageForm, 2, when(Flag::DosageForm)),
    digits("EG", "Compound dispensing unit form indicator", V::DispensingUnit, 1,
           when(Flag::DispensingUnit)),
    text("EH", "Compound route of administration", V::Route, 2, when(Flag::Route)),
    digits("EC", "Compound ingredient component count", V::IngredientCount, 2),
};

constexpr std::array kIngredients{
    literal("RE", "03", "Compound product ID qualifier"),
    fill("TE", "Compound product ID", I::IngredientNDC, 11),
    digits("ED", "Compound ingredient quantity", I::IngredientQty, 8),
    digits("EE", "Compound ingredient drug cost", I::IngredientCost, 8),
    fill("UE", "Compound ingredient basis of cost determination", I::IngredientBasis, 2),
};

constexpr std::array kClinical{
    text("VE", "Diagnosis code count", V::DiagnosisCount, 1, when(Flag::Diagnoses)),
};

constexpr std::array kDiagnoses{
    literal("WE", "01", "Diagnosis code qualifier"),
    fill("DO", "Diagnosis code", I::DiagnosisCode, 15),
};

constexpr std::array kParts{
    segment("AM07", "Claim", kClaim, always(), mdlMain::kGroupSeparator),
    fields(kModifiers, when(Flag::Modifiers), List::Modifiers),
    fields(kClaimRest),
    segment("AM02", "Pharmacy provider", kPharmacy),
    segment("AM03", "Prescriber", kPrescriber),
    segment("AM05", "Coordination of benefits", kOtherPayer, when(Flag::OtherPayer)),
    segment("AM06", "Workers' compensation", kWorkersComp, when(Flag::WorkersComp)),
    segment("AM08", "DUR", kDur, when(Flag::Dur)),
    segment("AM11", "Pricing", kPricing),
    segment("AM10", "Compound", kCompound, when(Flag::Compound)),
    fields(kIngredients, always(), List::Ingredients),
    segment("AM13", "Clinical", kClinical, onSwitch("AM13")),
    fields(kDiagnoses, always(), List::Diagnoses),
};

constexpr Layout kClaim51{QLatin1StringView("51"), kParts};

}  // namespace

const Layout& segmentedClaimLayout() {
    return kClaim51;
}

}  // namespace tvrx::claims
