#include "claims/ClaimLayout.h"
#include "claims/ClaimPreparation.h"
#include "claims/ClaimSources.h"
#include "claims/Layouts.h"
#include "claims/PlanRows.h"
#include "prescription/clsPrescription.h"
#include "records/clsDoc.h"
#include "records/clsPatient.h"
#include "session/data/ColumnTable.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Frame.h"
#include "session/text/Conversions.h"
#include "session/text/Encodings.h"

#include <array>

// The body of one prescription's claim. The shared preparation works out the values every
// layout uses, in the order the pharmacy's claims have always been prepared in; then the
// plan's Form picks the layout, which may add values of its own. The builder changes the
// prescription in one place (a retail price of 0 becomes the price) and writes nothing to
// the database.
namespace tvrx {

namespace {

using V = claims::Value;
using I = claims::ItemValue;
using claims::Flag;

const QString kNoPrice = QStringLiteral("A dollar amount was not entered for RX ");
const QString kNoPriceTitle = QStringLiteral("RE-ENTER PRICE");
const QString kNoIngredients = QStringLiteral("No compound ingredients found");

const QString kFirstFill =
    QStringLiteral("SELECT Refills, QtyRemain FROM RXINFO WHERE Number = ? AND RefillNumber = 0");
const QString kSalesTax = QStringLiteral("SELECT SalesTax FROM Options WHERE OptionsID = 1");
const QString kPrimaryCare = QStringLiteral("SELECT Provider2 FROM PHYSIC WHERE MDID = ?");
// In the order of their key, so that an ingredient keeps its counter after an edit.
const QString kIngredients =
    QStringLiteral("SELECT * FROM Ingredients WHERE RxInfoID = ? ORDER BY IngredientID");

constexpr double kMostFills = 99;
constexpr double kMostRefillsSent = 5;

// The text "0" followed by the field, converted: a null reads 0, a negative value fails.
double zeroText(const QVariant& field) {
    return conv::ToDouble(QString(QStringLiteral("0") + columns::textOf(field)));
}

// Which number of the prescriber a plan asks for, and under which qualifier: the plan's
// DoctorID holds a number or a word.
enum class DoctorNumberFrom { Provider1, Provider2, StateLic, DEA };
struct DoctorIDRule {
    QLatin1StringView word;  // empty for a rule of a number
    double number;
    QLatin1StringView qualifier;
    DoctorNumberFrom from;
};
constexpr std::array kDoctorIDRules{
    DoctorIDRule{{}, 0, QLatin1StringView(""), DoctorNumberFrom::Provider2},
    DoctorIDRule{{}, 15, QLatin1StringView("99"), DoctorNumberFrom::Provider2},
    DoctorIDRule{{}, 6, QLatin1StringView("06"), DoctorNumberFrom::Provider1},
    DoctorIDRule{{}, 8, QLatin1StringView("08"), DoctorNumberFrom::StateLic},
    DoctorIDRule{{}, 13, QLatin1StringView("13"), DoctorNumberFrom::StateLic},
    DoctorIDRule{{}, 12, QLatin1StringView("12"), DoctorNumberFrom::DEA},
    DoctorIDRule{QLatin1StringView("UPIN"), 0, QLatin1StringView("06"),
                 DoctorNumberFrom::Provider1},
    DoctorIDRule{QLatin1StringView("OTHER"), 0, QLatin1StringView("08"),
                 DoctorNumberFrom::Provider2},
    DoctorIDRule{QLatin1StringView("STATE"), 0, QLatin1StringView("08"),
                 DoctorNumberFrom::StateLic},
    DoctorIDRule{QLatin1StringView("MEDICAID"), 0, QLatin1StringView("05"),
                 DoctorNumberFrom::StateLic},
    DoctorIDRule{QLatin1StringView("STATE IS."), 0, QLatin1StringView("13"),
                 DoctorNumberFrom::StateLic},
};

struct DoctorChoice {
    QString qualifier;
    DoctorNumberFrom from;
};

// A number not listed is its own qualifier, with the second provider number; a word not
// listed asks for the DEA number.
DoctorChoice doctorChoice(const QString& asked) {
    const bool numeric = conv::IsNumeric(asked);
    const double number = numeric ? conv::ToDouble(asked) : 0;
    for (const auto& rule : kDoctorIDRules) {
        const bool matches = numeric ? rule.word.isEmpty() && rule.number == number
                                     : !rule.word.isEmpty() && asked == rule.word;
        if (matches) return {rule.qualifier, rule.from};
    }
    if (numeric) return {conv::Format(number, QStringLiteral("00")), DoctorNumberFrom::Provider2};
    return {QStringLiteral("12"), DoctorNumberFrom::DEA};
}

QString doctorNumber(const clsDoc& doctor, DoctorNumberFrom from) {
    switch (from) {
        case DoctorNumberFrom::Provider1:
            return doctor.Provider1;
        case DoctorNumberFrom::Provider2:
            return doctor.Provider2;
        case DoctorNumberFrom::StateLic:
            return doctor.StateLic;
        case DoctorNumberFrom::DEA:
            return doctor.DEA;
    }
    return {};
}

}  // namespace

namespace claims {

const QString& StoredTexts::daysSupply(const clsPrescription& rx) {
    return rx.m_sDS;
}

const QString& StoredTexts::productIDQualifier(const clsPrescription& rx) {
    return rx.m_sProductIDQualifier;
}

ClaimPreparation::ClaimPreparation(clsPrescription& rx, RecordSet& plan, bool sendingOther,
                                   Frame& frame)
    : rx_(rx), plan_(plan), sendingOther_(sendingOther), frame_(frame) {}

QString ClaimPreparation::planText(const char* column) {
    return columnText(plan_, QString::fromLatin1(column));
}

bool ClaimPreparation::shared() {
    frame_([&] { patient_ = rx_.PatientClass(); });
    frame_([&] { doctor_ = rx_.DoctorClass(); });
    readSwitches();
    remainingFills();
    salesTaxRate();
    primaryCare();
    if (!priceEntered()) return false;
    productAndAmounts();
    priorAuthorization();
    prescriber();
    fieldValues();
    frame_([&] { form_ = planText("Form"); });
    return true;
}

// A switch is on when its code stands anywhere in the plan's ClaimFields; a null column
// has none on.
void ClaimPreparation::readSwitches() {
    frame_([&] {
        values[V::ClaimFields].text = planText("ClaimFields");
        medicare_ = values[V::ClaimFields].text.contains(QLatin1String("MED"));
    });
    values.setFlag(Flag::Medicare, medicare_);
}

// The fills the payer is told remain: the original's refills, or when it has none left
// this fill's quantity over the quantity remaining, at most 99.
void ClaimPreparation::remainingFills() {
    double remaining = 0;
    RecordSet first;
    bool found = false;
    frame_([&] { first = records::mainConnection().OpenRecordSet(kFirstFill, {rx_.Number}); });
    frame_([&] { found = !first.Eof(); });
    if (found) {
        frame_([&] { remaining = zeroText(first.Fields(QStringLiteral("Refills"))); });
        if (remaining <= 0) {
            double quantityRemaining = 0;
            frame_(
                [&] { quantityRemaining = zeroText(first.Fields(QStringLiteral("QtyRemain"))); });
            frame_([&] {
                remaining =
                    quantityRemaining > 0 ? conv::RoundHalfEven(rx_.Qty / quantityRemaining) : 0;
            });
        }
    }
    values[V::RemainingFills].number = remaining > kMostFills ? kMostFills : remaining;
}

void ClaimPreparation::salesTaxRate() {
    RecordSet options;
    frame_([&] { options = records::mainConnection().OpenRecordSet(kSalesTax); });
    frame_([&] {
        salesTaxRate_ = conv::Val(QStringLiteral("0") +
                                  columns::textOf(options.Fields(QStringLiteral("SalesTax"))));
    });
}

// The patient's primary care provider, or "NOPCP".
void ClaimPreparation::primaryCare() {
    QString id = QStringLiteral("NOPCP");
    frame_([&] {
        const qint32 mdid = patient_->MDID;
        if (mdid <= 0) return;
        const RecordSet rs = records::mainConnection().OpenRecordSet(kPrimaryCare, {mdid});
        if (!rs.Eof()) id = conv::Trim(columnText(rs, QStringLiteral("Provider2")));
    });
    values[V::PrimaryCareID].text = id;
}

bool ClaimPreparation::priceEntered() {
    if (rx_.Price > 0) return true;
    tellUser(kNoPrice + conv::NumberText(rx_.Number), Icon::Critical, kNoPriceTitle);
    return false;
}

void ClaimPreparation::productAndAmounts() {
    frame_([&] { values[V::DispensedNDC].text = without(conv::Trim(rx_.DNDC), u"-_"); });
    frame_([&] { values[V::BasisCode].text = nullFails("Basis").leftJustified(2, u' ', true); });
    const bool compound = rx_.Compound != 0;
    values[V::CompoundCode].text = compound ? QStringLiteral("2") : QStringLiteral("1");
    values[V::ClaimProductID].text =
        compound ? QStringLiteral("00000000000") : values[V::DispensedNDC].text;
    const auto cents = [&](Value value, double amount) {
        frame_([&] { values[value].number = conv::LongFromDouble(conv::WholeHundredths(amount)); });
    };
    cents(V::AWPCents, rx_.AWP);
    cents(V::PriceCents, rx_.Price);
    if (rx_.RetailPrice <= 0) rx_.RetailPrice = rx_.Price;
    cents(V::CopayCents, rx_.Copay);
    cents(V::OtherPayorCents, rx_.OtherPayor);
}

// The prior authorization number as eleven digits, after its type: the first character of
// PAMC, or "0".
void ClaimPreparation::priorAuthorization() {
    frame_([&] {
        values[V::PANumberText].text =
            conv::Format(conv::Val(rx_.PANumber), QStringLiteral("00000000000"));
    });
    const QString first = rx_.PAMC.left(1);
    values[V::PAMCFlag].text =
        first.isEmpty() || first == QLatin1String(" ") ? QStringLiteral("0") : first;
    values[V::PriorAuthorization].text = values[V::PAMCFlag].text + values[V::PANumberText].text;
    frame_([&] {
        values[V::RefillsText].text = rx_.Refills > kMostRefillsSent
                                          ? QStringLiteral("05")
                                          : conv::Format(rx_.Refills, QStringLiteral("00"));
    });
}

// The prescriber's number the plan asks for, and its qualifier.
void ClaimPreparation::prescriber() {
    values[V::DoctorQualifier].text = QStringLiteral("00");
    frame_([&] {
        const DoctorChoice choice = doctorChoice(planText("DoctorID"));
        values[V::DoctorQualifier].text = choice.qualifier;
        values[V::DoctorNumber].text = doctorNumber(*doctor_, choice.from);
    });
}

// The values single fields take straight from the prescription, its patient, its
// prescriber and the plan.
void ClaimPreparation::fieldValues() {
    values[V::Number].number = rx_.Number;
    values[V::RefillNumber].number = rx_.RefillNumber;
    values[V::Qty].number = rx_.Qty;
    values[V::QtyTimes1000].number = rx_.Qty * 1000;
    values[V::MetricQtyTimes1000].number = rx_.MetricQty * 1000;
    values.setNumber(V::DaysSupply, [&] { return conv::Val(StoredTexts::daysSupply(rx_)); });
    values.setNumber(V::DAW, [&] { return conv::Val(rx_.DAWField); });
    values[V::OriginalDate].date = rx_.OriginalDate;
    values[V::Refills].number = rx_.Refills;
    values.setNumber(V::OtherDenial, [&] { return conv::Val(rx_.OtherDenial); });
    values.setText(V::Basis, [&] { return nullFails("Basis"); });
    values[V::Diagnosis].text = rx_.Diagnosis;
    values[V::DURConflict].text = rx_.DURConflict;
    values[V::DURIntervention].text = rx_.DURIntervention;
    values[V::DUROutcome].text = rx_.DUROutcome;
    values[V::DenialDate].date = rx_.DenialDate;
    values[V::HCPC].text = rx_.HCPC;
    values[V::RxForm].text = QString::number(rx_.Form);
    values[V::FillDate].date = rx_.DateFilled;
    values.setText(V::DoctorLastName, [&] { return doctor_->LastName; });
    values.setDate(V::InjuryDate, [&] { return patient_->InjuryDate; });
    values.setText(V::InjuryType, [&] { return patient_->InjuryType; });
    values.setText(V::PlanID, [&] { return planText("ID"); });
}

QString ClaimPreparation::nullFails(const char* column) {
    return requiredText(plan_, QString::fromLatin1(column));
}

bool ClaimPreparation::forLayout(QLatin1StringView layout) {
    if (layout == QLatin1String("51")) return segmented();
    if (layout == QLatin1String("40")) return compound40();
    return true;
}

// An ingredient's product, basis of cost, quantity and cost; its cost (a null is 0) goes
// to `cost`.
ItemSlots ClaimPreparation::ingredient(const RecordSet& row, double& cost) {
    ItemSlots item;
    prepareSlot(at(item, I::IngredientNDC),
                [&](Slot& slot) { slot.text = columnText(row, QStringLiteral("NDC")); });
    prepareSlot(at(item, I::IngredientBasis),
                [&](Slot& slot) { slot.text = columnText(row, QStringLiteral("CostBasis")); });
    prepareSlot(at(item, I::IngredientQty), [&](Slot& slot) {
        slot.number = conv::WholeThousandths(
            conv::ToDouble(mdlMain::ScreenForNull(row.Fields(QStringLiteral("Qty")), 0)));
    });
    prepareSlot(at(item, I::IngredientCost), [&](Slot& slot) {
        cost = conv::ToDouble(mdlMain::ScreenForNull(row.Fields(QStringLiteral("Cost")), 0));
        slot.number = conv::WholeHundredths(cost);
    });
    return item;
}

// The compound's ingredients in the order of their key, or a box when there are none.
qint32 ClaimPreparation::ingredientRows(RecordSet& rows) {
    qint32 count = 0;
    frame_([&] { rows = records::mainConnection().OpenRecordSet(kIngredients, {rx_.RXInfoID}); });
    frame_([&] { count = rows.RecordCount(); });
    if (count == 0) tellUser(kNoIngredients, Icon::Critical);
    return count;
}

bool ClaimPreparation::medicarePlan() {
    bool medicare = false;
    frame_([&] { medicare = planText("InsCode").contains(QLatin1String("MEDICARE")); });
    return medicare;
}

// The ingredients of a compound in layout "40": without any the claim must not go out.
bool ClaimPreparation::compound40() {
    if (values[V::CompoundCode].text != QLatin1String("2")) return true;
    RecordSet rows;
    if (ingredientRows(rows) == 0) return false;
    auto& items = values.items(List::Ingredients);
    frame_([&] {
        for (rows.MoveFirst(); !rows.Eof(); rows.MoveNext()) {
            double cost = 0;
            ItemSlots item = ingredient(rows, cost);
            const bool medicare = medicarePlan();
            at(item, I::Counter).number = static_cast<double>(items.size() + 1);
            prepareSlot(at(item, I::IngredientHCPC), [&](Slot& slot) {
                slot.text =
                    medicare
                        ? columnText(rows, QStringLiteral("HCPC")).leftJustified(13, u' ', true)
                        : QStringLiteral("  ");
            });
            items.push_back(std::move(item));
        }
    });
    values.setFlag(Flag::Compound, true);
    values.setFlag(Flag::MedicarePlan, medicarePlan());
    return true;
}

}  // namespace claims

QString clsPrescription::BuildClaim(RecordSet& rsIns, bool SendingOther, bool DebugMode) {
    Frame frame("clsPrescription:BuildClaim");
    RecordSet otherRow;
    if (SendingOther && !claims::openOtherInsurance(frame, OPatInsID, otherRow, DebugMode)) {
        return {};
    }
    claims::ClaimPreparation preparation(*this, SendingOther ? otherRow : rsIns, SendingOther,
                                         frame);
    if (!preparation.shared()) return {};
    const claims::Layout& layout = claims::claimLayout(preparation.form());
    if (!preparation.forLayout(layout.name)) return {};
    QString body;
    claims::writeLayout(body, layout, preparation.values, frame, claims::FailurePolicy::LeaveOut);
    return body;
}

}  // namespace tvrx
