#include "claims/ClaimSources.h"
#include "claims/Layouts.h"
#include "claims/PlanRows.h"
#include "claims/Wrapper.h"
#include "prescription/clsPrescription.h"
#include "records/clsPatient.h"
#include "responses/TextPositions.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Frame.h"
#include "session/text/Conversions.h"

#include <array>

// The transaction header: the plan's identifiers, the coverage and the patient, once per
// claim. The main plan's Form picks the layout. A failed read leaves its field empty and
// padded; a Medicare claim without the patient's telephone or zip code, or a claim to an
// other insurance that is not there, stops with a box and an empty header.
namespace tvrx {

namespace {

using V = claims::Value;
using claims::columnText;
using claims::Flag;
using claims::Values;

const QString kOnlyOnePrescription =
    QStringLiteral("Only one prescription allowed when using other insurance.");
const QString kMedicarePhone =
    QStringLiteral("For Medicare you will need to enter a complete phone number for this patient");
const QString kMedicareZip =
    QStringLiteral("For Medicare a zip code of at least 5 digits is required");

const QString kEmployer = QStringLiteral(
    "SELECT LastName, AddressLine1, City, State, ZipCode FROM PATIENT WHERE PatientID = ?");
const QString kEmployerWithPhone = QStringLiteral(
    "SELECT LastName, AddressLine1, City, State, ZipCode, Telephone FROM PATIENT "
    "WHERE PatientID = ?");

// The payer's codes of the patient's relationship to the cardholder; any other stored
// value goes out as it is, trimmed.
struct RelationshipCode {
    QLatin1StringView stored;
    QLatin1StringView code;
};
constexpr std::array kRelationshipCodes{
    RelationshipCode{QLatin1StringView("H"), QLatin1StringView("1")},
    RelationshipCode{QLatin1StringView("S"), QLatin1StringView("2")},
    RelationshipCode{QLatin1StringView("C"), QLatin1StringView("3")},
    RelationshipCode{QLatin1StringView("O"), QLatin1StringView("4")},
};

QString relationshipCode(const QString& stored) {
    for (const auto& relationship : kRelationshipCodes) {
        if (stored == relationship.stored) return relationship.code;
    }
    return conv::Trim(stored);
}

// 2 when the patient's record says so, 1 for anything else.
QString yesCode(qint16 stored) {
    return stored == 2 ? QStringLiteral("2") : QStringLiteral("1");
}

// The rows and objects one header is built from.
struct HeaderSources {
    RecordSet& rsIns;
    RecordSet& rsPatIns;
    RecordSet& useIns;
    RecordSet& usePatIns;
    std::shared_ptr<clsPrescription> firstRx;
    std::shared_ptr<clsPatient> patient;

    const clsPrescription& rx() const {
        if (!firstRx) fail(err::ObjectVariableNotSet);
        return *firstRx;
    }
    const clsPatient& person() const {
        if (!patient) fail(err::ObjectVariableNotSet);
        return *patient;
    }
};

class HeaderValues {
public:
    HeaderValues(const HeaderSources& sources, Frame& frame) : s_(sources), frame_(frame) {}

    Values values;

    // The values every form uses, worked out before the form is chosen.
    void prepare(int prescriptionCount) {
        frame_([&] {
            QString qualifier = conv::Trim(columnText(s_.useIns, QStringLiteral("IDQualifier")));
            values[V::IDQualifier].text = qualifier;
        });
        if (values[V::IDQualifier].text.isEmpty())
            values[V::IDQualifier].text = QStringLiteral("07");
        values[V::IDQualifier].number = conv::Val(values[V::IDQualifier].text);
        frame_([&] {
            const QString switches = columnText(s_.useIns, QStringLiteral("ClaimFields"));
            values.setFlag(Flag::Medicare, switches.contains(QLatin1String("MED")));
        });
        frame_([&] { values[V::GenderCode].text = claims::genderCode(s_.person().Gender); });
        frame_([&] {
            values[V::RelationshipCode].text =
                relationshipCode(columnText(s_.rsPatIns, QStringLiteral("Relationship")));
        });
        frame_([&] { values[V::BirthText].text = claims::birthText(s_.person().Birthdate); });
        values[V::PrescriptionCount].number = prescriptionCount;
        values.setDate(V::FillDate, [&] { return s_.rx().DateFilled; });
        values.setText(V::PatientFirstName, [&] { return s_.person().FirstName; });
        values.setText(V::PatientLastName, [&] { return s_.person().LastName; });
    }

    // Form A: the employer goes along.
    bool formA() {
        fixedHead(false);
        employer(false, false);
        return true;
    }

    // Form B: a Medicare claim needs the patient's complete telephone and zip code.
    bool formB() {
        fixedHead(false);
        if (!values.flag(Flag::Medicare)) return true;
        if (!medicareContactComplete()) return false;
        patientAddress(false);
        return true;
    }

    // Form C: the blocks the main plan's switches ask for.
    bool formC() {
        fixedHead(false);
        switchesOf(s_.rsIns);
        if (values[V::ClaimFields].text.contains(QLatin1String("CF"))) employer(true, true);
        patientAddress(false);
        return true;
    }

    // Form D: the paying plan's head, the patient segment and the insurance segment.
    bool formD() {
        planIdentifiers(s_.useIns);
        values.setText(V::VendorID, [&] { return text(s_.useIns, "VendorID"); });
        switchesOf(s_.useIns);
        coverage(s_.usePatIns);
        values.setText(V::CardNumber, [&] { return text(s_.usePatIns, "CardNumber"); });
        values.setText(V::PersonNumber, [&] { return text(s_.usePatIns, "PersonNumber"); });
        location();
        values.setText(V::PatientSSN, [&] { return s_.person().SSN; });
        values.setText(V::SmokerCode, [&] { return yesCode(s_.person().Smoker); });
        values.setText(V::PregnancyCode, [&] { return yesCode(s_.person().Pregnancy); });
        patientAddress(true);
        subscriber();
        return true;
    }

    // Form E, for every other Form: a person code of "01" when the coverage has none.
    bool formE() {
        fixedHead(true);
        return true;
    }

private:
    static QString text(const RecordSet& rs, const char* column,
                        const std::optional<QVariant>& whenNull = std::nullopt) {
        return columnText(rs, QString::fromLatin1(column), whenNull);
    }

    // The fixed head of forms A, B, C and E: always the main plan's identifiers.
    void fixedHead(bool otherForm) {
        planIdentifiers(s_.rsIns);
        coverage(s_.rsPatIns);
        values.setText(V::CardNumber, [&] { return text(s_.rsPatIns, "CardNumber"); });
        values.setText(V::PersonNumber, [&] {
            return otherForm ? text(s_.rsPatIns, "PersonNumber", QStringLiteral("01"))
                             : text(s_.rsPatIns, "PersonNumber");
        });
        values.setText(V::OtherCoverage, [&] {
            return otherForm ? QStringLiteral("0")
                             : text(s_.rsPatIns, "OtherCoverage", QStringLiteral("0"));
        });
        location();
    }

    void location() {
        values.setNumber(V::Location, [&] {
            return conv::Val(text(s_.rsPatIns, "Location", QStringLiteral("0")));
        });
    }

    void switchesOf(RecordSet& plan) {
        values.setText(V::ClaimFields, [&] { return text(plan, "ClaimFields"); });
    }

    // The employer's row of the patient table; without one every field is blank.
    void employer(bool withPhone, bool zipBlanks) {
        RecordSet row;
        bool found = false;
        frame_([&] {
            row = records::mainConnection().OpenRecordSet(
                withPhone ? kEmployerWithPhone : kEmployer, {s_.person().EmployerID});
            found = !row.Eof();
        });
        values[V::EmployerPhone].text = QString(10, u' ');
        if (!found) return;
        values.setText(V::EmployerName, [&] { return text(row, "LastName"); });
        values.setText(V::EmployerAddress, [&] { return text(row, "AddressLine1"); });
        values.setText(V::EmployerCity, [&] { return text(row, "City"); });
        values.setText(V::EmployerState, [&] { return text(row, "State"); });
        values.setText(V::EmployerZip, [&] {
            QString zip = text(row, "ZipCode");
            if (!zipBlanks) return claims::without(zip, u"-_");
            return zip.replace(u'_', u' ').replace(u'-', u' ');
        });
        if (withPhone) {
            values.setText(V::EmployerPhone,
                           [&] { return claims::phoneDigits(text(row, "Telephone")); });
        }
    }

    // The patient's address and telephone, as forms B, C and D send them.
    void patientAddress(bool zerosForShortPhone) {
        values.setText(V::PatientAddress, [&] { return s_.person().AddressLine1; });
        values.setText(V::PatientCity, [&] { return s_.person().City; });
        values.setText(V::PatientState, [&] { return s_.person().State; });
        values.setText(V::PatientZip, [&] { return s_.person().ZipCode.left(5); });
        values.setText(V::PatientPhone, [&] {
            const QString& phone = s_.person().Telephone;
            if (zerosForShortPhone && phone.size() < 10) return QStringLiteral("0000000000");
            return claims::phoneDigits(phone);
        });
    }

    // The checks of a Medicare claim in form B, each with its box.
    bool medicareContactComplete() {
        QString phone;
        QString zip;
        bool read = false;
        frame_([&] {
            phone = s_.person().Telephone;
            zip = s_.person().ZipCode;
            read = true;
        });
        if (!read) return true;
        const bool phoneComplete = phone.size() == 14 && phone[1] >= u'0' && phone[1] <= u'9';
        if (!phoneComplete) {
            claims::tellUser(kMedicarePhone, Icon::Information);
            return false;
        }
        if (zip.size() < 5) {
            claims::tellUser(kMedicareZip, Icon::Critical);
            return false;
        }
        return true;
    }

    void planIdentifiers(RecordSet& plan) {
        values.setText(V::BIN, [&] { return text(plan, "BIN"); });
        values.setText(V::PlanForm, [&] { return text(plan, "Form"); });
        values.setText(V::ProcNumb, [&] { return text(plan, "ProcNumb"); });
        values.setText(V::PlanID, [&] { return text(plan, "ID"); });
    }

    void coverage(RecordSet& billed) {
        values.setText(V::GroupNumber, [&] { return text(billed, "GroupNumber"); });
        values.setText(V::Clarification,
                       [&] { return text(billed, "Clarification", QStringLiteral("0")); });
    }

    // The cardholder's name: the coverage's subscriber split at the first blank, or the
    // patient's own name when the coverage names nobody.
    void subscriber() {
        QString name;
        frame_([&] { name = conv::Trim(text(s_.usePatIns, "SubscribersName")); });
        if (name.isEmpty()) {
            values.setText(V::SubscriberFirstName, [&] { return s_.person().FirstName; });
            values.setText(V::SubscriberLastName, [&] { return s_.person().LastName; });
            return;
        }
        const qsizetype blank = name.indexOf(u' ');
        values[V::SubscriberFirstName].text = blank < 0 ? QString() : name.left(blank);
        values[V::SubscriberLastName].text = blank < 0 ? name : name.mid(blank + 1);
    }

    const HeaderSources& s_;
    Frame& frame_;
};

// What each form prepares besides the shared values; false when a box stopped the header.
using FormSteps = bool (HeaderValues::*)();
struct FormPreparation {
    QLatin1StringView form;
    FormSteps steps;
};
constexpr std::array kFormPreparations{
    FormPreparation{QLatin1StringView("3B"), &HeaderValues::formA},
    FormPreparation{QLatin1StringView("40"), &HeaderValues::formB},
    FormPreparation{QLatin1StringView("32"), &HeaderValues::formC},
    FormPreparation{QLatin1StringView("51"), &HeaderValues::formD},
};

FormSteps formSteps(QLatin1StringView layoutName) {
    for (const auto& preparation : kFormPreparations) {
        if (preparation.form == layoutName) return preparation.steps;
    }
    return &HeaderValues::formE;
}

}  // namespace

QString Wrapper::BuildHeader(RecordSet& rsPatIns, RecordSet& rsIns, bool SendingOther,
                             bool DebugMode) {
    Frame frame("Wrapper:BuildHeader");
    int count = 0;
    frame([&] { count = colRX()->Count(); });
    RecordSet otherRow;
    if (SendingOther) {
        if (count >= 2) {
            claims::tellUser(kOnlyOnePrescription, Icon::Critical);
            return {};
        }
        qint32 other = 0;
        frame([&] { other = colRX()->Item(1)->OPatInsID; });
        if (!claims::openOtherInsurance(frame, other, otherRow, DebugMode)) return {};
    }
    HeaderSources sources{
        rsIns,   rsPatIns, SendingOther ? otherRow : rsIns, SendingOther ? otherRow : rsPatIns,
        nullptr, nullptr};
    frame([&] { sources.firstRx = colRX()->Item(1); });
    frame([&] {
        if (!sources.firstRx) fail(err::ObjectVariableNotSet);
        sources.patient = sources.firstRx->PatientClass();
    });

    HeaderValues header(sources, frame);
    header.prepare(count);
    QString form;
    frame([&] { form = columnText(rsIns, QStringLiteral("Form")); });
    const claims::Layout& layout = claims::headerLayout(form);
    if (!(header.*formSteps(layout.name))()) return {};

    QString text;
    claims::writeLayout(text, layout, header.values, frame, claims::FailurePolicy::EmptyValue);
    return text;
}

}  // namespace tvrx
