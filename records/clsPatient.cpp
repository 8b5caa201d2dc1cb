#include "records/clsPatient.h"

#include "records/RecordForms.h"
#include "session/data/ColumnTable.h"
#include "session/data/Connections.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/data/Procedures.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Frame.h"
#include "session/runtime/UserInteraction.h"

namespace tvrx {

namespace {

using C = clsPatient;
using R = ReadForm;
using W = WriteForm;

// The zip code is written without the NUL characters that ZipString pads it with.
WriteForm withoutNul() {
    return W::custom(
        [](const QVariant& value) { return QVariant(value.toString().remove(QChar(0))); });
}

void showConnectionFailure() {
    mdlMain::user().MsgBox(QStringLiteral("It appears your database connection has timed out. "
                                          "Please exit Tessivar and restart."),
                           Buttons::OKOnly, Icon::Critical, 1,
                           QStringLiteral("Connection Failure"));
}

// Birth and injury dates before this year are not believed and are stored as the zero date.
constexpr int kFirstBelievableYear = 1700;

void resetIfUnbelievable(QDateTime& date) {
    if (!date.isValid() || date.date().year() < kFirstBelievableYear) date = conv::ZeroDate();
}

}  // namespace

// The columns in the order GetData selects them; the first 42 are read by position.
// FacilityID and MDID are converted from their text, so a null there is a reported fault.
const ColumnTable<clsPatient>& patientColumns() {
    static const ColumnTable<C> table(
        QStringLiteral("PATIENT"), QStringLiteral("PatientID"),
        {
            {"PatientID", member(&C::PatientID), R::nullScreen(0).at(0), W::none()},
            {"LastName", member(&C::LastName), R::trimmed().at(1), W::quotedDoubled()},
            {"FirstName", member(&C::FirstName), R::trimmed().at(2), W::quotedDoubled()},
            {"MI", member(&C::MI), R::trimmed().at(3), W::quotedRaw()},
            {"AddressLine1", member(&C::AddressLine1), R::trimmed().at(4), W::quotedDoubled()},
            {"AddressLine2", member(&C::AddressLine2), R::trimmed().at(5), W::quotedDoubled()},
            {"City", member(&C::City), R::trimmed().at(6), W::quotedDoubled()},
            {"State", member(&C::State), R::trimmed().at(7), W::quotedRaw()},
            {"ZipCode", member(&C::ZipCode), records::zipOfText().at(8), withoutNul()},
            {"Country", member(&C::Country), R::text().at(9), W::quotedRaw()},
            {"BillingAddress", member(&C::BillingAddress), R::text().at(10), W::quotedDoubled()},
            {"BillingCity", member(&C::BillingCity), R::text().at(11), W::quotedDoubled()},
            {"BillingState", member(&C::BillingState), R::text().at(12), W::quotedRaw()},
            {"BillingZipCode", member(&C::BillingZipCode), R::text().at(13), W::quotedRaw()},
            {"Telephone", member(&C::Telephone), records::phoneOfText().at(14), W::quotedRaw()},
            {"Fax", member(&C::Fax), records::phoneOfText().at(15), W::quotedRaw()},
            {"Gender", member(&C::Gender), R::text().at(16), W::quotedRaw()},
            {"Birthdate", member(&C::Birthdate), R::nullScreen(0).at(17), records::day()},
            {"AccountNumber", member(&C::AccountNumber), R::text().at(18), W::quotedDoubled()},
            {"MedicalRecordNum", member(&C::MedicalRecordNum), R::text().at(19),
             W::quotedDoubled()},
            {"Unit", member(&C::Unit), R::text().at(20), W::quotedDoubled()},
            {"Room", member(&C::Room), R::text().at(21), W::quotedDoubled()},
            {"Allergies", member(&C::Allergies), R::text().at(22), W::quotedDoubled()},
            {"Location", member(&C::Location), R::text().at(23), W::quotedDoubled()},
            {"WeightKg", member(&C::WeightKg), R::nullScreen(0).at(24), W::number()},
            {"HeightCm", member(&C::HeightCm), R::nullScreen(0).at(25), W::number()},
            {"Notes", member(&C::Notes), R::text().at(26), W::quotedDoubled()},
            {"ChargeAccount", member(&C::ChargeAccount), R::nullScreen(0).at(27), W::number()},
            {"ARCustomerID", member(&C::ARCustomerID), R::nullScreen(0).at(28), W::number()},
            {"ForeignSigs", member(&C::ForeignSigs), R::text().at(29), W::quotedRaw()},
            {"MarriageStatus", member(&C::MarriageStatus), R::text().at(30), W::quotedRaw()},
            {"StudentStatus", member(&C::StudentStatus), R::text().at(31), W::quotedRaw()},
            {"WorkPhone", member(&C::WorkPhone), records::phoneOfText().at(32), W::quotedRaw()},
            {"EMail", member(&C::EMail), R::text().at(33), W::quotedDoubled()},
            {"PatInsID", member(&C::PatInsID), R::nullScreen(0).at(34), W::number()},
            {"PatAllID", member(&C::PatAllID), R::nullScreen(0).at(35), W::number()},
            {"Conditions", member(&C::Conditions), R::text().at(36), W::quotedDoubled()},
            {"EasyOpen", member(&C::EasyOpen), R::nullScreen(0).at(37), W::number()},
            {"SSN", member(&C::SSN), R::text().at(38), W::quotedDoubled()},
            {"PriceTableID", member(&C::PriceTableID), R::nullScreen(0).at(39), W::number()},
            {"AllergiesLarge", member(&C::AllergiesLarge), R::text().at(40), W::quotedDoubled()},
            {"Diagnosis", member(&C::Diagnosis), R::text().at(41), W::quotedDoubled()},
            {"EmployerID", member(&C::EmployerID), R::nullScreen(0), W::number()},
            {"InjuryType", member(&C::InjuryType), R::text(), W::quotedDoubled()},
            {"QBListID", member(&C::QBListID), R::text(), W::quotedRaw()},
            {"InjuryDate", member(&C::InjuryDate), R::nullScreen(0), records::day()},
            {"Spanish", member(&C::Spanish), R::nullScreen(0), W::number()},
            {"HIPPA", member(&C::HIPPA), R::nullScreen(0), W::number()},
            {"AutoCharge", member(&C::AutoCharge), R::nullScreen(0), W::number()},
            {"FacilityID", member(&C::FacilityID), R::text(), W::number()},
            {"MDID", member(&C::MDID), R::text(), W::number()},
            {"AdmitDate", member(&C::AdmitDate), R::nullScreen(0), records::day()},
            {"CCNumber", member(&C::CCNumber), R::text(), W::quotedDoubled()},
            {"CCExpMonth", member(&C::CCExpMonth), R::text(), W::quotedRaw()},
            {"CCExpYear", member(&C::CCExpYear), R::text(), W::quotedRaw()},
            {"CCName", member(&C::CCName), R::text(), W::quotedDoubled()},
            {"CCAddress", member(&C::CCAddress), R::text(), W::quotedDoubled()},
            {"CCZip", member(&C::CCZip), R::text(), W::quotedRaw()},
            {"CCAddressSame", member(&C::CCAddressSame), R::nullScreen(0), W::number()},
            {"Pregnancy", member(&C::Pregnancy), R::nullScreen(0), W::number()},
            {"Smoker", member(&C::Smoker), R::nullScreen(0), W::number()},
            {"ImportID", member(&C::ImportID), R::nullScreen(0), W::number()},
            {"DateChanged", records::presentTime<C>(), R::none(), W::value()},
        });
    return table;
}

void clsPatient::GetData() {
    const ColumnTable<C>& table = patientColumns();
    Frame frame("clsPatient:GetData");
    frame.on(err::TimedOut, OnFailure::BoxAndLeave, showConnectionFailure);
    table.load(frame, table.selectList(table.selected()), PatientID, *this, table.selected());
}

void clsPatient::Update() {
    Frame frame("clsPatient:Update");
    resetIfUnbelievable(Birthdate);
    resetIfUnbelievable(InjuryDate);
    patientColumns().store(frame, *this, PatientID);
}

// The new patient keeps the dates the object held; everything else starts empty.
void clsPatient::Insert() {
    Frame frame("clsPatient:Insert");
    frame([&] {
        PatientID = Procedures::newKey(records::mainConnection(), QStringLiteral("NewPatient"));
    });
    const ColumnTable<C>& table = patientColumns();
    for (const auto& column : table.columns()) {
        if (column.name == table.key()) continue;
        switch (column.property.type) {
            case ValueType::Date:
                break;
            case ValueType::Text:
                column.property.set(*this, QString());
                break;
            default:
                column.property.set(*this, 0);
        }
    }
}

void clsPatient::Delete(bool Clean) {
    Frame frame("clsPatient:Delete");
    frame([&] {
        records::mainConnection().Execute(
            Clean ? QStringLiteral("DELETE FROM PATIENT WHERE PatientID = ?")
                  : QStringLiteral("UPDATE PATIENT SET Deleted = 1 WHERE PatientID = ?"),
            {PatientID});
    });
}

void clsPatient::setConnection(std::shared_ptr<DbConnection> connection) {
    mdlMain::setConnection(std::move(connection), QStringLiteral("clsPatient:Connection"),
                           mdlMain::ConnectionVariant::clsPatient);
}

}  // namespace tvrx
