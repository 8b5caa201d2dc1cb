#include "claims/ClaimPreparation.h"
#include "claims/ClaimSources.h"
#include "prescription/clsPrescription.h"
#include "records/clsDoc.h"
#include "records/clsPatient.h"
#include "session/data/ColumnTable.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "session/text/Conversions.h"

// The values of the segmented 5.1 body, segment by segment in the order they go out. The
// segments that depend on other rows (the other payer, the employer, the ingredients) run
// their queries here, and their boxes appear in that order.
namespace tvrx::claims {

namespace {

using V = Value;
using I = ItemValue;

const QString kOtherPayerBIN = QStringLiteral(
    "SELECT INSURANCE.BIN FROM PATINS INNER JOIN INSURANCE ON INSURANCE.InsID = PATINS.InsID "
    "WHERE PATINS.PatInsID = ?");
const QString kEmployer = QStringLiteral(
    "SELECT LastName, AddressLine1, City, State, Telephone, ZipCode FROM PATIENT "
    "WHERE PatientID = ?");
const QString kOtherNotFound = QStringLiteral("Other insurance company not found");
const QString kOtherNotFoundTitle = QStringLiteral("OTHER INS ERROR");
const QString kCostQuestionTitle = QStringLiteral("SUBMIT COST INACCURATE");

constexpr double kBinQualifier = 3;
constexpr double kProductQualifierSentAs99 = 27;
constexpr double kDefaultFee = 5;

QString twoDigits(double number) {
    return conv::Format(number, QStringLiteral("00"));
}

// An amount on its way to a pricing field passes through its text, "0" in front: a
// negative amount makes no number and its field is lost.
double throughText(double amount) {
    return conv::ToDouble(QString(QStringLiteral("0") + conv::NumberText(amount)));
}

QString costQuestion(double total, double cost) {
    const QString money = QStringLiteral("$ #.00");
    return QStringLiteral("The sum of the compound ingredients, ") + conv::Format(total, money) +
           QStringLiteral(", does not \r\nequal the cost (or AWP) submitted, ") +
           conv::Format(cost, money) +
           QStringLiteral(
               ". Click YES to submit anyway or NO to cancel submit and fix the pricing issue.");
}

// A comma list: its parts trimmed.
QStringList trimmedParts(const QString& list) {
    QStringList parts = list.split(u',');
    for (QString& part : parts) part = conv::Trim(part);
    return parts;
}

}  // namespace

bool ClaimPreparation::segmented() {
    claimSegment();
    prescriberSegment();
    otherPayer();
    workersComp();
    dur();
    pricing();
    if (!compound51()) return false;
    clinical();
    return true;
}

void ClaimPreparation::claimSegment() {
    const QString hcpc = conv::Trim(rx_.HCPC);
    const bool hcpcProduct = medicare_ && !hcpc.isEmpty();
    // A Medicare claim sends the procedure code as the product, here and in EA.
    if (hcpcProduct) values[V::DispensedNDC].text = hcpc;
    values.setText(V::ProductQualifier, [&] {
        if (hcpcProduct) return QStringLiteral("09");
        const double qualifier = conv::Val(StoredTexts::productIDQualifier(rx_));
        return qualifier == kProductQualifierSentAs99 ? QStringLiteral("99") : twoDigits(qualifier);
    });
    modifiers();
    values.setText(V::OtherCoverageCode, [&] {
        const double coverage = conv::Val(rx_.OtherCoverage);
        return coverage <= 1 || sendingOther_ ? QStringLiteral("00") : twoDigits(coverage);
    });
    values[V::ControlNumber].text = conv::Trim(rx_.ControlNumber);
    values.setFlag(Flag::ControlNumber, !values[V::ControlNumber].text.isEmpty());
    values[V::Units].text = rx_.Units;
    values.setNumber(V::LevelOfService, [&] { return conv::Val(rx_.LevelOfService); });
    intermediary();
}

// The procedure modifiers of a Medicare claim, a comma list after "-MOD".
void ClaimPreparation::modifiers() {
    if (!medicare_) return;
    const std::optional<QString> tagged = taggedValue(rx_.InsData, QLatin1StringView("-MOD"), 16);
    const QString list = conv::Trim(tagged.value_or(QString()));
    if (list.isEmpty()) return;
    const QStringList parts = trimmedParts(list);
    values[V::ModifierCount].text = QString::number(parts.size());
    for (const QString& part : parts) {
        ItemSlots item;
        at(item, I::Modifier).text = part;
        values.items(List::Modifiers).push_back(std::move(item));
    }
    values.setFlag(Flag::Modifiers, true);
}

// The intermediary's authorization: its type after "-EW", its number after "-EX".
void ClaimPreparation::intermediary() {
    const std::optional<QString> type = taggedValue(rx_.InsData, QLatin1StringView("-EW"), 2);
    if (!type) return;
    const double typeValue = conv::Val(*type);
    if (typeValue <= 0) return;
    values[V::IntermediaryType].number = typeValue;
    values.setFlag(Flag::Intermediary, true);
    const std::optional<QString> id = taggedValue(rx_.InsData, QLatin1StringView("-EX"), 11);
    if (!id) return;
    // A picture formats a number; a text that is none stands as it is.
    const QString pictured = conv::IsNumeric(*id)
                                 ? conv::Format(conv::ToDouble(*id), QStringLiteral("00000000000"))
                                 : *id;
    if (conv::Val(pictured) <= 0) return;
    values[V::IntermediaryID].text = pictured;
    values.setFlag(Flag::IntermediaryID, true);
}

void ClaimPreparation::prescriberSegment() {
    values.setText(V::DoctorPhone, [&] {
        const QString& phone = doctor_->Telephone;
        return phone.size() >= 10 ? phoneDigits(phone) : QStringLiteral("0000000000");
    });
}

// The other payer's segment, for a claim to the main plan of a patient with other coverage.
void ClaimPreparation::otherPayer() {
    bool considered = false;
    frame_([&] { considered = conv::Val(rx_.OtherCoverage) > 1 && !sendingOther_; });
    if (!considered) return;
    RecordSet row;
    bool found = false;
    frame_([&] {
        row = records::mainConnection().OpenRecordSet(kOtherPayerBIN, {rx_.OPatInsID});
        found = !row.Eof();
    });
    if (!found) {
        tellUser(kOtherNotFound, Icon::Critical, kOtherNotFoundTitle);
        return;
    }
    values.setFlag(Flag::OtherPayer, true);
    values.setNumber(V::OtherType, [&] { return conv::Val(rx_.OtherType); });
    values.setNumber(V::OtherIDQualifier, [&] { return conv::Val(rx_.OtherIDQualifier); });
    values.setText(V::OtherPayerID, [&] {
        return conv::Val(rx_.OtherIDQualifier) == kBinQualifier
                   ? columnText(row, QStringLiteral("BIN"))
                   : rx_.OtherID;
    });
    values.setNumber(V::PaidQualifier, [&] { return conv::Val(rx_.PaidQualifier); });
    values.setNumber(V::OtherPaidAmount, [&] { return throughText(rx_.OInsAmount); });
}

// The employer of an injured worker, a row of the patient table. Its address, telephone
// and zip code cannot be used when null; its name reads a null as empty.
void ClaimPreparation::workersComp() {
    if (!values[V::ClaimFields].text.contains(QLatin1String("AM06"))) return;
    qint32 employer = 0;
    frame_([&] { employer = patient_->EmployerID; });
    if (employer <= 0) return;
    RecordSet row;
    bool found = false;
    frame_([&] {
        row = records::mainConnection().OpenRecordSet(kEmployer, {employer});
        found = !row.Eof();
    });
    if (!found) return;
    values.setFlag(Flag::WorkersComp, true);
    const auto required = [&](const char* column) {
        return requiredText(row, QString::fromLatin1(column));
    };
    values.setText(V::EmployerName, [&] { return columnText(row, QStringLiteral("LastName")); });
    values.setText(V::EmployerAddress, [&] { return required("AddressLine1"); });
    values.setText(V::EmployerCity, [&] { return required("City"); });
    values.setText(V::EmployerState, [&] { return required("State"); });
    values.setText(V::EmployerZip, [&] { return without(required("ZipCode"), u"-_"); });
    values.setText(V::EmployerPhone, [&] { return without(required("Telephone"), u"-_() "); });
}

void ClaimPreparation::dur() {
    const bool conflict = !conv::Trim(rx_.DURConflict).isEmpty();
    const bool intervention = !conv::Trim(rx_.DURIntervention).isEmpty();
    const bool outcome = !conv::Trim(rx_.DUROutcome).isEmpty();
    values.setFlag(Flag::DurConflict, conflict);
    values.setFlag(Flag::DurIntervention, intervention);
    values.setFlag(Flag::DurOutcome, outcome);
    values.setFlag(Flag::Dur, conflict || intervention || outcome);
}

// Cost and fee: the AWP and the rest of the price; without an AWP the plan's fee (5 when
// it has none) and the rest of the price.
void ClaimPreparation::pricing() {
    double cost = rx_.AWP;
    double fee = rx_.Price - rx_.AWP;
    if (rx_.AWP <= 0) {
        frame_([&] {
            fee = conv::Val(QStringLiteral("0") +
                            columns::textOf(plan_.Fields(QStringLiteral("Fee"))));
        });
        if (fee <= 0) fee = kDefaultFee;
        cost = rx_.Price - fee;
    }
    values[V::ClaimCost].number = cost;
    values[V::ClaimFee].number = fee;
    values[V::Copay].number = rx_.Copay;
    values.setFlag(Flag::Copay,
                   medicare_ || values[V::ClaimFields].text.contains(QLatin1String("DX")));
    values.setNumber(V::PriceAmount, [&] { return throughText(rx_.Price); });
    values.setFlag(Flag::SalesTax, salesTaxRate_ > 0);
    values[V::SalesTaxRate].number = salesTaxRate_ * 100;
    // The tax is on the AWP, whatever the cost sent.
    values[V::SalesTaxAmount].number = conv::RoundCurrency(salesTaxRate_ / 100 * rx_.AWP);
}

// The compound's ingredients. Without any the claim goes on without the segment; when
// their costs do not add up to the cost sent, the user decides.
bool ClaimPreparation::compound51() {
    if (values[V::CompoundCode].text != QLatin1String("2")) return true;
    RecordSet rows;
    const qint32 count = ingredientRows(rows);
    if (count == 0) return true;
    values.setFlag(Flag::Compound, true);
    compoundTags();
    values[V::IngredientCount].number = count;
    double total = 0;
    frame_([&] {
        for (rows.MoveFirst(); !rows.Eof(); rows.MoveNext()) {
            double cost = 0;
            values.items(List::Ingredients).push_back(ingredient(rows, cost));
            total += cost;
        }
    });
    const double cost = values[V::ClaimCost].number;
    if (total == cost) return true;
    const Answer answer = mdlMain::user().MsgBox(costQuestion(total, cost), Buttons::YesNo,
                                                 Icon::Information, 2, kCostQuestionTitle);
    return answer != Answer::No;
}

// The compound's dosage form, dispensing unit and route, tagged in InsData.
void ClaimPreparation::compoundTags() {
    const QString& tags = rx_.InsData;
    if (const auto form = taggedValue(tags, QLatin1StringView("-EF"), 2)) {
        const double value = conv::Val(*form);
        values[V::DosageForm].text = value > 0 ? twoDigits(value) : QString();
        values.setFlag(Flag::DosageForm, true);
    }
    if (const auto unit = taggedValue(tags, QLatin1StringView("-EG"), 1)) {
        values[V::DispensingUnit].number = conv::Val(*unit);
        values.setFlag(Flag::DispensingUnit, values[V::DispensingUnit].number > 0);
    }
    if (const auto route = taggedValue(tags, QLatin1StringView("-EH"), 2)) {
        const double value = conv::Val(*route);
        values[V::Route].text = value > 0 ? twoDigits(value - 1) : QStringLiteral("00");
        values.setFlag(Flag::Route, true);
    }
}

// The diagnoses, a comma list; the segment stands also without any.
void ClaimPreparation::clinical() {
    const QString diagnosis = conv::Trim(rx_.Diagnosis);
    if (diagnosis.isEmpty()) return;
    const QStringList parts = trimmedParts(diagnosis);
    values[V::DiagnosisCount].text = QString::number(parts.size());
    for (const QString& part : parts) {
        ItemSlots item;
        at(item, I::DiagnosisCode).text = part;
        values.items(List::Diagnoses).push_back(std::move(item));
    }
    values.setFlag(Flag::Diagnoses, true);
}

}  // namespace tvrx::claims
