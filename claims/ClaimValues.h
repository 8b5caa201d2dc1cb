#pragma once

#include <QDateTime>
#include <QString>

#include <array>
#include <cstddef>
#include <exception>
#include <vector>

// The values a claim text is made of, prepared by the builders before the layout tables
// write them. A value is a text, a number or a date; which one a field takes is the
// field's encoding. A value whose preparation failed keeps its failure, and the field
// that shows it fails the way its builder's failure policy says.
namespace tvrx::claims {

// The values of a transaction, named as the layouts use them.
enum class Value : quint8 {
    // The plan row.
    BIN,
    PlanForm,
    ProcNumb,
    PlanID,
    VendorID,
    IDQualifier,  // numeric value of the qualifier
    ClaimFields,
    Basis,
    BasisCode,  // Basis filled to two characters
    // The coverage row.
    GroupNumber,
    CardNumber,
    PersonNumber,
    Clarification,
    RelationshipCode,
    OtherCoverage,
    Location,  // numeric value
    SubscriberFirstName,
    SubscriberLastName,
    // The patient.
    PatientFirstName,
    PatientLastName,
    PatientAddress,
    PatientCity,
    PatientState,
    PatientZip,
    PatientPhone,
    PatientSSN,
    BirthText,
    GenderCode,
    SmokerCode,
    PregnancyCode,
    InjuryDate,
    InjuryType,
    // The patient's employer (a row of the patient table).
    EmployerName,
    EmployerAddress,
    EmployerCity,
    EmployerState,
    EmployerZip,
    EmployerPhone,
    // The transmission.
    PrescriptionCount,
    FillDate,
    // The prescription.
    Number,
    RefillNumber,
    Qty,
    QtyTimes1000,
    MetricQtyTimes1000,
    DaysSupply,  // numeric value
    CompoundCode,
    DispensedNDC,
    ClaimProductID,
    DAW,  // numeric value
    AWPCents,
    PriceCents,
    CopayCents,
    OtherPayorCents,
    OriginalDate,
    Refills,
    RefillsText,
    OtherDenial,         // numeric value
    PriorAuthorization,  // PAMCFlag then PANumberText
    PAMCFlag,
    PANumberText,
    Diagnosis,
    DURConflict,
    DURIntervention,
    DUROutcome,
    DenialDate,
    HCPC,
    RxForm,  // the prescription's Form as text
    // The prescriber.
    DoctorQualifier,
    DoctorNumber,
    DoctorLastName,
    DoctorPhone,
    PrimaryCareID,
    // The segmented claim.
    ProductQualifier,
    ModifierCount,
    RemainingFills,
    OtherCoverageCode,
    ControlNumber,
    Units,
    LevelOfService,  // numeric value
    IntermediaryType,
    IntermediaryID,
    OtherType,         // numeric value
    OtherIDQualifier,  // numeric value
    OtherPayerID,
    PaidQualifier,  // numeric value
    OtherPaidAmount,
    ClaimCost,
    ClaimFee,
    Copay,
    PriceAmount,
    SalesTaxRate,  // percent times 100
    SalesTaxAmount,
    DosageForm,
    DispensingUnit,
    Route,
    IngredientCount,
    DiagnosisCount,
    ReversalProduct,
};
inline constexpr std::size_t kValueCount = static_cast<std::size_t>(Value::ReversalProduct) + 1;

// The values of one item of a repeated group: a modifier, an ingredient, a diagnosis.
enum class ItemValue : quint8 {
    Counter,
    Modifier,
    IngredientNDC,
    IngredientBasis,
    IngredientHCPC,
    IngredientQty,   // whole thousandths
    IngredientCost,  // whole hundredths
    DiagnosisCode,
};
inline constexpr std::size_t kItemValueCount =
    static_cast<std::size_t>(ItemValue::DiagnosisCode) + 1;

// The lists a group repeats over.
enum class List : quint8 { None, Modifiers, Ingredients, Diagnoses };
inline constexpr std::size_t kListCount = 4;

// The yes-or-no facts the builders work out for the layouts' conditions.
enum class Flag : quint8 {
    Medicare,        // the plan's switches hold "MED"
    MedicarePlan,    // the plan's code holds "MEDICARE" (the compound trailer)
    Compound,        // a compound with its ingredients found
    Modifiers,       // a Medicare claim with procedure modifiers
    ControlNumber,   // a scheduled prescription number to send
    Intermediary,    // an intermediary authorization type to send
    IntermediaryID,  // and its number
    OtherPayer,      // the other payer's amounts go along
    WorkersComp,     // the employer of an injured worker was found
    Dur,             // any DUR code to send
    DurConflict,     // each of the three DUR codes, when not blank
    DurIntervention,
    DurOutcome,
    Copay,       // the patient's paid amount goes along
    SalesTax,    // a sales tax rate above 0
    DosageForm,  // the compound's tags
    DispensingUnit,
    Route,
    Diagnoses,  // the prescription names diagnoses
    Smoker,     // the patient's smoker number is above 0 (an eligibility request)
    Pregnant,   // the patient's pregnancy number is above 0 (an eligibility request)
};
inline constexpr std::size_t kFlagCount = static_cast<std::size_t>(Flag::Pregnant) + 1;

// One prepared value. A failure raised while preparing it stays with it.
struct Slot {
    QString text;
    double number = 0;
    QDateTime date;
    std::exception_ptr failure;
};

using ItemSlots = std::array<Slot, kItemValueCount>;

inline Slot& at(ItemSlots& item, ItemValue value) {
    return item[static_cast<std::size_t>(value)];
}

// Puts what `store` gives into the slot, or keeps the failure it raised.
template <class Store>
void prepareSlot(Slot& slot, Store&& store) noexcept {
    try {
        store(slot);
        slot.failure = nullptr;
    } catch (...) {
        slot.failure = std::current_exception();
    }
}

class Values {
public:
    Slot& operator[](Value value) { return slots_[index(value)]; }
    const Slot& operator[](Value value) const { return slots_[index(value)]; }

    bool flag(Flag flag) const { return flags_[index(flag)]; }
    void setFlag(Flag flag, bool on) { flags_[index(flag)] = on; }

    std::vector<ItemSlots>& items(List list) { return items_[index(list)]; }
    const std::vector<ItemSlots>& items(List list) const { return items_[index(list)]; }

    // Prepares a value whose failure belongs to the field that shows it: the result of
    // `compute`, or the failure it raised, goes into the slot.
    template <class Compute>
    void setText(Value value, Compute&& compute) noexcept {
        prepareSlot((*this)[value], [&](Slot& slot) { slot.text = compute(); });
    }
    template <class Compute>
    void setNumber(Value value, Compute&& compute) noexcept {
        prepareSlot((*this)[value], [&](Slot& slot) { slot.number = compute(); });
    }
    template <class Compute>
    void setDate(Value value, Compute&& compute) noexcept {
        prepareSlot((*this)[value], [&](Slot& slot) { slot.date = compute(); });
    }

private:
    template <class Enum>
    static constexpr std::size_t index(Enum value) {
        return static_cast<std::size_t>(value);
    }

    std::array<Slot, kValueCount> slots_{};
    std::array<bool, kFlagCount> flags_{};
    std::array<std::vector<ItemSlots>, kListCount> items_{};
};

}  // namespace tvrx::claims
