#include "claims/Layouts.h"

#include "session/text/Encodings.h"

#include <array>

// The bodies of the fixed 3.2 family: one per prescription, after the header. Each opens
// with the group separator and a head without separators, then identified fields.
namespace tvrx::claims {

namespace {

using V = Value;
using I = ItemValue;
using namespace field;

constexpr char16_t kGroup = mdlMain::kGroupSeparator;

constexpr Field kNumber = digits("", "Prescription number", V::Number, 7);
constexpr Field kRefillNumber = digits("", "Refill number", V::RefillNumber, 2);
constexpr Field kQty = digits("", "Quantity dispensed", V::Qty, 5);
constexpr Field kDaysSupply = digits("", "Days supply", V::DaysSupply, 3);
constexpr Field kCompoundCode = fill("", "Compound code", V::CompoundCode, 1);
constexpr Field kDispensed = fill("", "Product ID (NDC)", V::DispensedNDC, 11);
constexpr Field kDAW = digits("", "Dispense as written", V::DAW, 1);
constexpr Field kAWPCost = digits("", "Ingredient cost", V::AWPCents, 6);
constexpr Field kPrescriber = fill("", "Prescriber ID", V::DoctorNumber, 10);
constexpr Field kWritten = day("", "Date prescription written", V::OriginalDate);
constexpr Field kZero = headLiteral("0", "Constant 0");
constexpr Field kOtherDenial = digits("", "Other coverage denial", V::OtherDenial, 2);
constexpr Field kPrice = digits("", "Price", V::PriceCents, 6);

// "32", "3B" and the default.
constexpr std::array kHead32{
    kNumber,
    kRefillNumber,
    kQty,
    kDaysSupply,
    kCompoundCode,
    kDispensed,
    kDAW,
    kAWPCost,
    kPrescriber,
    kWritten,
    digits("", "Refills authorized", V::Refills, 2),
    kZero,
    kOtherDenial,
    kPrice,
};

// "40": zeros for a compound's product, and the price in the cost's place.
constexpr std::array kHead40{
    kNumber,
    kRefillNumber,
    kQty,
    kDaysSupply,
    kCompoundCode,
    fill("", "Product ID (NDC)", V::ClaimProductID, 11),
    kDAW,
    digits("", "Ingredient cost", V::PriceCents, 6),
    kPrescriber,
    kWritten,
    text("", "Refills authorized", V::RefillsText, 2),
    kZero,
    kOtherDenial,
    kPrice,
};

constexpr std::array kHead3C{
    kNumber, kRefillNumber, kQty,        kDaysSupply, kCompoundCode, kDispensed,
    kDAW,    kAWPCost,      kPrescriber, kWritten,    kPrice,
};

constexpr Field kPriorAuth =
    text("DG", "Prior authorization type and number", V::PriorAuthorization, 12);
constexpr Field kGrossAmount = digits("DU", "Gross amount due", V::PriceCents, 6);
constexpr Field kConflict = fill("E4", "Reason for service (DUR conflict)", V::DURConflict, 2);
constexpr Field kIntervention =
    fill("E5", "Professional service (DUR intervention)", V::DURIntervention, 2);
constexpr Field kOutcome = fill("E6", "Result of service (DUR outcome)", V::DUROutcome, 2);
constexpr Field kMetricQty = digits("E7", "Metric quantity", V::MetricQtyTimes1000, 8);
constexpr Field kBasis = fill("DN", "Basis of cost determination", V::Basis, 2);
constexpr Field kDiagnosis = fill("DO", "Diagnosis code", V::Diagnosis, 6);
constexpr Field kZeroAmountDA = literal("DA", "000000", "Amount DA (zeros)");
constexpr Field kLevelOfService = literal("DI", "00", "Level of service");
constexpr Field kNoDiagnosis = literal("DO", "      ", "Diagnosis code");
constexpr Field kNoCopay = literal("DX", "000000", "Patient paid amount");
constexpr Field kPrimaryPrescriber = fill("DL", "Primary prescriber", V::DoctorNumber, 10);
constexpr Field kClinic = literal("DM", "00000", "Clinic ID");

// The fields of "32" and of the default layout; "32" adds three by the plan's switches.
constexpr std::array kFields32{
    kZeroAmountDA,
    literal("DC", "000500", "Dispensing fee"),
    kPriorAuth,
    kLevelOfService,
    kPrimaryPrescriber,
    kClinic,
    kBasis,
    kNoDiagnosis,
    kGrossAmount,
    kNoCopay,
    kConflict,
    kIntervention,
    kOutcome,
    kMetricQty,
};
constexpr std::array kSwitches32{
    fill("DR", "Prescriber last name", V::DoctorLastName, 15, onSwitch("DR")),
    day("DY", "Date of injury", V::InjuryDate, onSwitch("DY")),
    fill("DZ", "Claim reference ID (injury type)", V::InjuryType, 14, onSwitch("DZ")),
};

constexpr std::array kFields3B{
    kZeroAmountDA,
    literal("DC", "000500", "Dispensing fee"),
    kPriorAuth,
    kBasis,
    kDiagnosis,
    kGrossAmount,
    kNoCopay,
    day("DY", "Date of injury", V::InjuryDate),
    literal("DZ", "              ", "Claim reference ID"),
    literal("E1", " ", "Product ID qualifier"),
    literal("E2", "             ", "Procedure code (HCPCS)"),
    kConflict,
    kIntervention,
    kOutcome,
    kMetricQty,
};

constexpr std::array kFields3C{
    kPriorAuth,
    kLevelOfService,
    kNoDiagnosis,
    literal("DT", "0", "Unit dose indicator"),
    kGrossAmount,
    literal("DV", "000000", "Other payer amount"),
    kNoCopay,
    literal("E3", "000500", "Incentive amount"),
    kConflict,
    kIntervention,
    kOutcome,
    kMetricQty,
    literal("E8", "        ", "Other payer date"),
};

// "40" has a Medicare form and another; both end with the same three fields.
constexpr Condition kMedicare = when(Flag::Medicare);
constexpr Condition kNotMedicare = unless(Flag::Medicare);
constexpr std::array kFields40{
    // Medicare.
    text("DG", "Prior authorization type and number", V::PriorAuthorization, 12, kMedicare),
    fill("DN", "Basis of cost determination", V::Basis, 2, kMedicare),
    fill("DO", "Diagnosis code", V::Diagnosis, 6, kMedicare),
    literal("DC", "000500", "Dispensing fee", kMedicare),
    digits("DU", "Gross amount due", V::PriceCents, 6, kMedicare),
    digits("DX", "Patient paid amount", V::CopayCents, 6, kMedicare),
    digits("DV", "Other payer amount", V::OtherPayorCents, 6, kMedicare),
    digits("E7", "Quantity dispensed", V::QtyTimes1000, 8, kMedicare),
    day("E8", "Other payer date (denial)", V::DenialDate, kMedicare),
    literal("DA", "000000", "Amount DA (zeros)", kMedicare),
    fill("DR", "Prescriber last name", V::DoctorLastName, 15, kMedicare),
    fill("E2", "Procedure code (HCPCS)", V::HCPC, 13, kMedicare),
    // Not Medicare.
    literal("DA", "000000", "Amount DA (zeros)", kNotMedicare),
    literal("DC", "001500", "Dispensing fee", kNotMedicare),
    text("DG", "Prior authorization type and number", V::PriorAuthorization, 12, kNotMedicare),
    literal("DI", "00", "Level of service", kNotMedicare),
    fill("DL", "Primary prescriber", V::DoctorNumber, 10, kNotMedicare),
    literal("DM", "00000", "Clinic ID", kNotMedicare),
    text("DN", "Basis of cost determination", V::BasisCode, 2, kNotMedicare),
    literal("DO", "      ", "Diagnosis code", kNotMedicare),
    digits("DU", "Gross amount due", V::PriceCents, 6, kNotMedicare),
    literal("DX", "000000", "Patient paid amount", kNotMedicare),
    fill("E4", "Reason for service (DUR conflict)", V::DURConflict, 2, kNotMedicare),
    // Both.
    kIntervention,
    kOutcome,
    kMetricQty,
};

constexpr std::array kIngredients40{
    digits("EC", "Compound ingredient counter", I::Counter, 2),
    fill("D7", "Ingredient product ID (NDC)", I::IngredientNDC, 11),
    fill("DN", "Ingredient basis of cost", I::IngredientBasis, 2),
    literal("E1", " ", "Product ID qualifier"),
    text("E2", "Ingredient procedure code (HCPCS)", I::IngredientHCPC, 13),
    digits("ED", "Ingredient quantity", I::IngredientQty, 8),
    digits("EE", "Ingredient cost", I::IngredientCost, 8),
};

constexpr Condition kMedicarePlan = when(Flag::MedicarePlan);
constexpr Condition kOtherPlan = unless(Flag::MedicarePlan);
constexpr std::array kCompoundTrailer40{
    literal("EF", "00", "Compound dosage form", kMedicarePlan),
    fill("EG", "Compound dispensing unit form", V::RxForm, 1, kMedicarePlan),
    literal("EH", "00", "Compound route of administration", kMedicarePlan),
    literal("EF", "07", "Compound dosage form", kOtherPlan),
    literal("EG", "3", "Compound dispensing unit form", kOtherPlan),
    literal("EH", "11", "Compound route of administration", kOtherPlan),
};

constexpr std::array kParts32{
    head("Claim", kHead32, kGroup),
    fields(kFields32),
    fields(kSwitches32),
};
constexpr std::array kPartsDefault{head("Claim", kHead32, kGroup), fields(kFields32)};
constexpr std::array kParts3B{head("Claim", kHead32, kGroup), fields(kFields3B)};
constexpr std::array kParts3C{head("Claim", kHead3C, kGroup), fields(kFields3C)};
constexpr std::array kParts40{
    head("Claim", kHead40, kGroup),
    fields(kFields40),
    fields(kIngredients40, when(Flag::Compound), List::Ingredients),
    fields(kCompoundTrailer40, when(Flag::Compound)),
};

constexpr Layout kClaim3B{QLatin1StringView("3B"), kParts3B};
constexpr Layout kClaim40{QLatin1StringView("40"), kParts40};
constexpr Layout kClaim3C{QLatin1StringView("3C"), kParts3C};
constexpr Layout kClaim32{QLatin1StringView("32"), kParts32};
constexpr Layout kClaimDefault{QLatin1StringView("other"), kPartsDefault};

}  // namespace

std::span<const Layout* const> claimLayouts() {
    static const std::array<const Layout*, 6> all{
        &kClaim3B, &kClaim40, &kClaim3C, &kClaim32, &segmentedClaimLayout(), &kClaimDefault};
    return all;
}

}  // namespace tvrx::claims
