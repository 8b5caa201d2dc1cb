#include "claims/Layouts.h"

#include "session/text/Encodings.h"

#include <array>

// A reversal is one text that opens with the start byte: a head that names the plan and
// the prescription, and in "3C" and "51" a few fields after it.
namespace tvrx::claims {

namespace {

using V = Value;
using namespace field;

constexpr char16_t kStart = mdlMain::kStartOfText;

constexpr std::array kHeadFixed{
    fill("", "Bank identification number", V::BIN, 6),
    fill("", "Version", V::PlanForm, 2),
    headLiteral("11", "Transaction code"),
    fill("", "Processor control number", V::ProcNumb, 10),
    fill("", "Pharmacy ID", V::PlanID, 12),
    day("", "Date filled", V::FillDate),
    digits("", "Prescription number", V::Number, 7),
};

constexpr std::array kFields3C{
    literal("DI", "00", "Level of service"),
    literal("E3", "000500", "Incentive amount"),
    text("E4", "Reason for service (DUR conflict)", V::DURConflict, 2),
    text("E5", "Professional service (DUR intervention)", V::DURIntervention, 2),
    text("E6", "Result of service (DUR outcome)", V::DUROutcome, 2),
};

constexpr std::array kHead51{
    fill("", "Bank identification number", V::BIN, 6),
    fill("", "Version", V::PlanForm, 2),
    headLiteral("B2", "Transaction code"),
    fill("", "Processor control number", V::ProcNumb, 10),
    headLiteral("1", "Transaction count"),
    digits("", "Service provider ID qualifier", V::IDQualifier, 2),
    fill("", "Service provider ID", V::PlanID, 15),
    day("", "Date of service", V::FillDate),
    fill("", "Software vendor ID", V::VendorID, 10),
};

constexpr std::array kClaim51{
    literal("EM", "1", "Prescription reference number qualifier"),
    digits("D2", "Prescription reference number", V::Number, 7),
    literal("E1", "03", "Product ID qualifier"),
    fill("D7", "Product ID", V::ReversalProduct, 19),
};

constexpr std::array kParts3C{head("Reversal", kHeadFixed, kStart), fields(kFields3C)};
constexpr std::array kParts51{
    head("Reversal", kHead51, kStart),
    segment("AM07", "Claim", kClaim51, always(), mdlMain::kGroupSeparator),
};
constexpr std::array kPartsDefault{head("Reversal", kHeadFixed, kStart)};

constexpr Layout kReversal3C{QLatin1StringView("3C"), kParts3C};
constexpr Layout kReversal51{QLatin1StringView("51"), kParts51};
constexpr Layout kReversalDefault{QLatin1StringView("other"), kPartsDefault};

constexpr std::array<const Layout*, 3> kReversals{&kReversal3C, &kReversal51, &kReversalDefault};

}  // namespace

std::span<const Layout* const> reversalLayouts() {
    return kReversals;
}

}  // namespace tvrx::claims
