#include "claims/Layouts.h"

#include "session/text/Encodings.h"

#include <array>

// The transaction header opens every claim: the plan and the patient, once for all the
// prescriptions of the claim. The fixed-head forms share one head and differ in the
// identified fields after it; version 5.1 has a head of its own and two segments.
namespace tvrx::claims {

namespace {

using V = Value;
using namespace field;

constexpr char16_t kStart = mdlMain::kStartOfText;

constexpr std::array kFixedHead{
    fill("", "Bank identification number", V::BIN, 6),
    fill("", "Version", V::PlanForm, 2),
    digits("", "Prescription count", V::PrescriptionCount, 2),
    fill("", "Processor control number", V::ProcNumb, 10),
    fill("", "Pharmacy ID", V::PlanID, 12),
    fill("", "Group number", V::GroupNumber, 15),
    fill("", "Cardholder ID", V::CardNumber, 18),
    fill("", "Person code", V::PersonNumber, 3),
    fill("", "Date of birth", V::BirthText, 8),
    fill("", "Patient gender code", V::GenderCode, 1),
    text("", "Patient relationship code", V::RelationshipCode, 1),
    text("", "Other coverage code", V::OtherCoverage, 1),
    day("", "Date filled", V::FillDate),
};

constexpr Field kClarification = fill("C9", "Eligibility clarification code", V::Clarification, 1);
constexpr Field kFirstName = fill("CA", "Patient first name", V::PatientFirstName, 12);
constexpr Field kLastName = fill("CB", "Patient last name", V::PatientLastName, 15);
constexpr Field kLocation = digits("C7", "Patient location", V::Location, 2);

// Form A: the employer goes along, blank when the patient has none.
constexpr std::array kFieldsA{
    kClarification,
    kFirstName,
    kLastName,
    fill("CF", "Employer name", V::EmployerName, 30),
    fill("CG", "Employer street address", V::EmployerAddress, 30),
    fill("CH", "Employer city", V::EmployerCity, 20),
    fill("CI", "Employer state", V::EmployerState, 2),
    fill("CJ", "Employer zip code", V::EmployerZip, 9),
    literal("CR", "          ", "Carrier ID"),
};

// Form B: a Medicare claim carries the patient's address and telephone.
constexpr Condition kMedicare = when(Flag::Medicare);
constexpr std::array kFieldsB{
    kLocation,
    kClarification,
    kFirstName,
    kLastName,
    text("CQ", "Patient phone number", V::PatientPhone, 10, kMedicare),
    fill("CO", "Patient state", V::PatientState, 2, kMedicare),
    fill("CM", "Patient street address", V::PatientAddress, 30, kMedicare),
    fill("CP", "Patient zip code", V::PatientZip, 9, kMedicare),
    fill("CN", "Patient city", V::PatientCity, 20, kMedicare),
};

// Form C: the plan's switches pick the employer, address and telephone blocks.
constexpr Condition kEmployerBlock = onSwitch("CF");
constexpr Condition kAddressBlock = onSwitch("CM");
constexpr std::array kFieldsC{
    kLocation,
    kClarification,
    kFirstName,
    kLastName,
    fill("CF", "Employer name", V::EmployerName, 30, kEmployerBlock),
    fill("CG", "Employer street address", V::EmployerAddress, 30, kEmployerBlock),
    fill("CH", "Employer city", V::EmployerCity, 20, kEmployerBlock),
    fill("CI", "Employer state", V::EmployerState, 2, kEmployerBlock),
    fill("CJ", "Employer zip code", V::EmployerZip, 9, kEmployerBlock),
    text("CK", "Employer phone number", V::EmployerPhone, 10, kEmployerBlock),
    fill("CM", "Patient street address", V::PatientAddress, 30, kAddressBlock),
    fill("CN", "Patient city", V::PatientCity, 20, kAddressBlock),
    fill("CO", "Patient state", V::PatientState, 2, kAddressBlock),
    fill("CP", "Patient zip code", V::PatientZip, 9, kAddressBlock),
    text("CQ", "Patient phone number", V::PatientPhone, 10, onSwitch("CQ")),
};

constexpr std::array kFieldsE{
    literal("C7", "00", "Patient location"),
    kClarification,
    kFirstName,
    kLastName,
};

// Form D, version 5.1.
constexpr std::array kHead51{
    fill("", "Bank identification number", V::BIN, 6),
    fill("", "Version", V::PlanForm, 2),
    headLiteral("B1", "Transaction code"),
    fill("", "Processor control number", V::ProcNumb, 10),
    digits("", "Transaction count", V::PrescriptionCount, 1),
    digits("", "Service provider ID qualifier", V::IDQualifier, 2),
    fill("", "Service provider ID", V::PlanID, 15),
    day("", "Date of service", V::FillDate),
    fill("", "Software vendor ID", V::VendorID, 10),
};

constexpr Condition kPatientID = onSwitch("CX");
constexpr Condition kPatientName = onSwitch("CA");
constexpr std::array kPatient51{
    literal("CX", "99", "Patient ID qualifier", kPatientID),
    fill("CY", "Patient ID", V::PatientSSN, 20, kPatientID),
    text("C4", "Date of birth", V::BirthText, 8),
    text("C5", "Patient gender code", V::GenderCode, 1),
    fill("CA", "Patient first name", V::PatientFirstName, 12, kPatientName),
    fill("CB", "Patient last name", V::PatientLastName, 15, kPatientName),
    fill("CM", "Patient street address", V::PatientAddress, 30, kAddressBlock),
    fill("CN", "Patient city", V::PatientCity, 20, kAddressBlock),
    fill("CO", "Patient state", V::PatientState, 2, kAddressBlock),
    fill("CP", "Patient zip code", V::PatientZip, 15, kAddressBlock),
    text("CQ", "Patient phone number", V::PatientPhone, 10, onSwitch("CQ")),
    kLocation,
    literal("CZ", "    ", "Employer ID"),
    text("1C", "Smoker code", V::SmokerCode, 1),
    text("2C", "Pregnancy indicator", V::PregnancyCode, 1),
};

constexpr std::array kInsurance51{
    fill("C2", "Cardholder ID", V::CardNumber, 20),
    text("CC", "Cardholder first name", V::SubscriberFirstName, kNoWidth),
    text("CD", "Cardholder last name", V::SubscriberLastName, kNoWidth),
    kClarification,
    fill("C1", "Group ID", V::GroupNumber, 15),
    fill("C3", "Person code", V::PersonNumber, 2),
    text("C6", "Patient relationship code", V::RelationshipCode, 1),
};

// An eligibility request ("E1"), version 5.1: the head with the date of coverage as its
// date of service, the patient without an ID and with smoker and pregnancy only when the
// record holds a number above 0, and the insurance segment of a claim.
constexpr std::array kEligibilityHead{
    fill("", "Bank identification number", V::BIN, 6),
    headLiteral("51", "Version"),
    headLiteral("E1", "Transaction code"),
    fill("", "Processor control number", V::ProcNumb, 10),
    headLiteral("1", "Transaction count"),
    digits("", "Service provider ID qualifier", V::IDQualifier, 2),
    fill("", "Service provider ID", V::PlanID, 15),
    day("", "Date of service", V::FillDate),
    fill("", "Software vendor ID", V::VendorID, 10),
};

constexpr std::array kEligibilityPatient{
    text("C4", "Date of birth", V::BirthText, 8),
    text("C5", "Patient gender code", V::GenderCode, 1),
    fill("CA", "Patient first name", V::PatientFirstName, 12, kPatientName),
    fill("CB", "Patient last name", V::PatientLastName, 15, kPatientName),
    fill("CM", "Patient street address", V::PatientAddress, 30, kAddressBlock),
    fill("CN", "Patient city", V::PatientCity, 20, kAddressBlock),
    fill("CO", "Patient state", V::PatientState, 2, kAddressBlock),
    fill("CP", "Patient zip code", V::PatientZip, 15, kAddressBlock),
    text("CQ", "Patient phone number", V::PatientPhone, 10, onSwitch("CQ")),
    kLocation,
    literal("CZ", "    ", "Employer ID"),
    text("1C", "Smoker code", V::SmokerCode, 1, when(Flag::Smoker)),
    text("2C", "Pregnancy indicator", V::PregnancyCode, 1, when(Flag::Pregnant)),
};

constexpr std::array kEligibilityParts{
    head("Header", kEligibilityHead, kStart),
    segment("AM01", "Patient", kEligibilityPatient),
    segment("AM04", "Insurance", kInsurance51),
};

constexpr Layout kEligibility{QLatin1StringView("E1"), kEligibilityParts};

constexpr std::array kPartsA{head("Header", kFixedHead, kStart), fields(kFieldsA)};
constexpr std::array kPartsB{head("Header", kFixedHead, kStart), fields(kFieldsB)};
constexpr std::array kPartsC{head("Header", kFixedHead, kStart), fields(kFieldsC)};
constexpr std::array kPartsE{head("Header", kFixedHead, kStart), fields(kFieldsE)};
constexpr std::array kPartsD{
    head("Header", kHead51, kStart),
    segment("AM01", "Patient", kPatient51),
    segment("AM04", "Insurance", kInsurance51),
};

constexpr Layout kHeaderA{QLatin1StringView("3B"), kPartsA};
constexpr Layout kHeaderB{QLatin1StringView("40"), kPartsB};
constexpr Layout kHeaderC{QLatin1StringView("32"), kPartsC};
constexpr Layout kHeaderD{QLatin1StringView("51"), kPartsD};
constexpr Layout kHeaderE{QLatin1StringView("other"), kPartsE};

constexpr std::array<const Layout*, 5> kHeaders{&kHeaderA, &kHeaderB, &kHeaderC, &kHeaderD,
                                                &kHeaderE};

}  // namespace

const Layout& eligibilityLayout() {
    return kEligibility;
}

std::span<const Layout* const> headerLayouts() {
    return kHeaders;
}

}  // namespace tvrx::claims
