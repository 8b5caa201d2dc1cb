#include "claims/ClaimExchange.h"
#include "claims/ClaimSources.h"
#include "claims/Layouts.h"
#include "claims/frmTransmit.h"
#include "records/PATINS.h"
#include "records/clsPatient.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/data/RecordSet.h"
#include "session/runtime/Clock.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "session/runtime/UserInteraction.h"
#include "session/text/Conversions.h"

#include <QFileInfo>

#include <optional>

// The eligibility request: the user names the day, the request is built from the plan, the
// coverage and the patient, goes through the exchange directory like a claim, and the
// payer's answer is handed to the report.
namespace tvrx {

namespace {

using V = claims::Value;
using claims::columnText;
using claims::Flag;

const QString kDateTitle = QStringLiteral("Coverate Date");
const QString kDatePrompt = QStringLiteral("Please enter the date of coverage in the format, ") +
                            QStringLiteral("'MM/DD/YY', or click enter to accept today's date.");
const QString kNotADate =
    QStringLiteral("You did not enter the date in the proper format. Please try again.");
const QString kInsuranceNotFound = QStringLiteral("ERROR: Insurance not found!");
const QString kPlanQuery = QStringLiteral("SELECT * FROM INSURANCE WHERE InsID = ?");
const QString kShortPhone = QStringLiteral("0000000000");
constexpr qint16 kDelaySeconds = 60;

// The payer's codes of the patient's relationship to the cardholder in a request.
QString relationshipCode(const QString& stored) {
    if (stored == QLatin1String("H")) return QStringLiteral("1");
    if (stored == QLatin1String("S")) return QStringLiteral("2");
    return QStringLiteral("3");
}

// One chance: the day typed, or none when the answer is no date (a cancelled box too).
std::optional<QDate> askCoverageDate() {
    const QString today = conv::FormatDate(mdlMain::clock().now(), QStringLiteral("MM/DD/YY"));
    return conv::CoverageDate(mdlMain::user().InputBox(kDatePrompt, kDateTitle, today));
}

// What the request is built from, prepared value by value: a value that cannot be read
// goes out empty and is reported with the check's label.
class RequestValues {
public:
    RequestValues(const clsPatient& patient, const PATINS& coverage, const RecordSet& plan)
        : patient_(patient), coverage_(coverage), plan_(plan) {}

    claims::Values prepare(const QDate& coverageDate) {
        planColumns();
        values.setDate(V::FillDate, [&] { return QDateTime(coverageDate, QTime(0, 0)); });
        patientColumns();
        coverageMembers();
        subscriber();
        return values;
    }

private:
    QString column(const char* name) const { return columnText(plan_, QString::fromLatin1(name)); }

    void planColumns() {
        values.setText(V::BIN, [&] { return column("BIN"); });
        values.setText(V::ProcNumb, [&] { return column("ProcNumb"); });
        values.setText(V::PlanID, [&] { return column("ID"); });
        values.setText(V::VendorID, [&] { return column("VendorID"); });
        values.setText(V::ClaimFields, [&] { return column("ClaimFields"); });
        values.setNumber(V::IDQualifier, [&] {
            const QString qualifier = conv::Trim(column("IDQualifier"));
            return conv::Val(qualifier.isEmpty() ? QStringLiteral("07") : qualifier);
        });
    }

    void patientColumns() {
        values[V::BirthText].text = claims::birthText(patient_.Birthdate);
        values[V::GenderCode].text = claims::genderCode(patient_.Gender);
        values[V::PatientFirstName].text = patient_.FirstName;
        values[V::PatientLastName].text = patient_.LastName;
        values[V::PatientAddress].text = patient_.AddressLine1;
        values[V::PatientCity].text = patient_.City;
        values[V::PatientState].text = patient_.State;
        values[V::PatientZip].text = patient_.ZipCode.left(5);
        values[V::PatientPhone].text =
            patient_.Telephone.size() < 10 ? kShortPhone : claims::phoneDigits(patient_.Telephone);
        values[V::SmokerCode].text = QString::number(patient_.Smoker);
        values[V::PregnancyCode].text = QString::number(patient_.Pregnancy);
        values.setFlag(Flag::Smoker, patient_.Smoker > 0);
        values.setFlag(Flag::Pregnant, patient_.Pregnancy > 0);
    }

    // The coverage's members are texts: a null column was read as the empty text already.
    void coverageMembers() {
        values[V::Location].number = conv::Val(coverage_.Location);
        values[V::CardNumber].text = coverage_.CardNumber;
        values[V::Clarification].text = coverage_.Clarification;
        values[V::GroupNumber].text = coverage_.GroupNumber;
        values[V::PersonNumber].text = coverage_.PersonNumber;
        values[V::RelationshipCode].text = relationshipCode(coverage_.Relationship);
    }

    // The cardholder: the coverage's subscriber split at its first blank, or the patient
    // when the coverage names nobody. A name without a blank cannot be split: both names
    // fail and go out empty.
    void subscriber() {
        const QString name = conv::Trim(coverage_.SubscribersName);
        if (name.isEmpty()) {
            values[V::SubscriberFirstName].text = patient_.FirstName;
            values[V::SubscriberLastName].text = patient_.LastName;
            return;
        }
        const qsizetype blank = name.indexOf(u' ');
        const auto part = [&](bool first) {
            if (blank < 0) fail(err::InvalidProcedureCall);
            return first ? name.left(blank) : name.mid(blank + 1);
        };
        values.setText(V::SubscriberFirstName, [&] { return part(true); });
        values.setText(V::SubscriberLastName, [&] { return part(false); });
    }

    claims::Values values;
    const clsPatient& patient_;
    const PATINS& coverage_;
    const RecordSet& plan_;
};

}  // namespace

QString clsPatient::CheckEligibility(const PATINS& oPatIns, const QString& sTVIDirectory,
                                     const QString& sPrinter, const QString& NABP,
                                     bool /*DebugMode*/) {
    Frame frame("clsPatient:CheckEligibility");
    SelectedNABP = NABP;
    SelectedPrinter = sPrinter;

    std::optional<QDate> coverageDate;
    frame([&] { coverageDate = askCoverageDate(); });
    if (!coverageDate) {
        frame([&] { claims::tellUser(kNotADate, Icon::Information); });
        return {};
    }

    RecordSet plan;
    bool found = false;
    frame([&] {
        plan = records::mainConnection().OpenRecordSet(kPlanQuery, {oPatIns.InsID()});
        found = !plan.Eof();
    });
    if (!found) return kInsuranceNotFound;

    claims::Values values = RequestValues(*this, oPatIns, plan).prepare(*coverageDate);
    QString request;
    claims::writeLayout(request, claims::eligibilityLayout(), values, frame,
                        claims::FailurePolicy::EmptyValue);

    // The wait watches for the answer before the request goes out. An aborted check
    // leaves its request for the transmission program; only a half-written file goes.
    const ExchangeFiles files(sTVIDirectory, mdlMain::clock().now());
    frmTransmit form;
    frame([&] { form.Delay = kDelaySeconds; });
    frame([&] { form.setFilename(files.responsePath()); });
    frame([&] { files.sendInquiry(request, exchangeSettings()); });
    frame([&] { form.Show(transmitFace()); });
    if (form.Success) {
        frame([&] { ParseClaimFile(files.responsePath()); });
        // The answer is looked for by the directory text joined to its name with nothing
        // between: it is removed only when the directory was given with its trailing "/".
        const QString responseName = QFileInfo(files.responsePath()).fileName();
        frame([&] {
            if (QFileInfo::exists(sTVIDirectory + responseName)) files.removeResponse();
        });
    } else {
        frame([&] { files.removeTemporary(); });
    }
    frame([&] { form.Unload(); });
    return {};
}

}  // namespace tvrx
