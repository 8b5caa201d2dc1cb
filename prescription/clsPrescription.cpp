#include "prescription/clsPrescription.h"

#include "records/RecordForms.h"
#include "records/clsDoc.h"
#include "records/clsDrug.h"
#include "records/clsPatient.h"
#include "responses/clsClaimResponse.h"
#include "session/data/ColumnTable.h"
#include "session/data/Connections.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/runtime/Frame.h"
#include "session/text/Conversions.h"

namespace tvrx {

namespace {

using C = clsPrescription;
using R = ReadForm;
using W = WriteForm;

// OtherDate of a row without one reads as today.
ReadForm todayWhenNull() {
    return R::custom([](const QVariant& field) {
        return field.isNull() ? QVariant(mdlMain::clock().now().date().startOfDay()) : field;
    });
}

}  // namespace

// The columns in the order GetData reads them: the keys, the original fill's three
// columns (read from this row only when it is the original; a refill takes them from the
// original's row and leaves them out of its own), then the rest, the patient before the
// prescriber before the drug, each setter reading its record. The days supply and the
// product code qualifier are written as stored, whatever their getters show.
const ColumnTable<clsPrescription>& prescriptionColumns() {
    static const ColumnTable<C> table(
        QStringLiteral("RXINFO"), QStringLiteral("RXInfoID"),
        {
            {"RXInfoID", member(&C::RXInfoID), R::zeroText(), W::none()},
            {"Number", member(&C::Number), R::zeroText(), W::number()},
            {"RefillNumber", member(&C::RefillNumber), R::zeroText(), W::number()},
            {"OriginalDate", member(&C::OriginalDate), R::nullScreen(0),
             records::day().onOriginalRowOnly()},
            {"OriginalQty", member(&C::OriginalQty), R::zeroText(),
             W::number().onOriginalRowOnly()},
            {"OriginalRefills", member(&C::OriginalRefills), R::zeroText(),
             W::number().onOriginalRowOnly()},
            {"LogID", member(&C::LogID), R::zeroText(), W::number()},
            {"Date", member(&C::DateFilled), R::nullScreen(), W::date("MM/DD/YYYY hh:mm")},
            {"Qty", member(&C::Qty), R::zeroText(), W::number()},
            {"MetricQty", member(&C::MetricQty), R::zeroText(), W::number()},
            {"Price", member(&C::Price), R::zeroText(), W::number()},
            {"RetailPrice", member(&C::RetailPrice), R::zeroText(), W::number()},
            {"Copay", member(&C::Copay), R::zeroText(), W::number()},
            {"QtyRemain", member(&C::QtyRemain), R::zeroText(), W::number()},
            {"DS", member(&C::m_sDS), R::nullScreen(QStringLiteral("0")), W::quotedRaw()},
            {"Patient", member(&C::Patient), R::text(), W::doubledThenCut(50)},
            {"PatientID", accessor(&C::PatientID, &C::setPatientID), R::zeroText(), W::number()},
            {"Doctor", member(&C::Doctor), R::text(), W::quotedDoubled()},
            {"MDID", accessor(&C::MDID, &C::setMDID), R::zeroText(), W::number()},
            {"PatInsID", member(&C::PatInsID), R::zeroText(), W::number()},
            {"InsID", member(&C::InsID), R::zeroText(), W::number()},
            {"SIG", member(&C::SIG), R::text(), W::quotedDoubled()},
            {"Compound", member(&C::Compound), R::nullScreen(0), W::number()},
            {"Drug", member(&C::Drug), R::text(), W::quotedDoubled()},
            {"DrugID", accessor(&C::DrugID, &C::setDrugID), R::zeroText(), W::number()},
            {"Refills", member(&C::Refills), R::zeroText(), W::number()},
            {"Cost", member(&C::Cost), R::zeroText(), W::number()},
            {"PriceTableID", member(&C::PriceTableID), R::zeroText(), W::number()},
            {"AWP", member(&C::AWP), R::zeroText(), W::number()},
            {"PA", member(&C::PA), R::nullScreen(0), W::number()},
            {"PANumber", member(&C::PANumber), R::text(), W::quotedRaw()},
            {"DNDC", member(&C::DNDC), R::trimmed(), W::quotedRaw()},
            {"Voided", member(&C::Voided), R::nullScreen(0), W::number()},
            {"OnHold", member(&C::OnHold), R::nullScreen(0), W::number()},
            {"DAWField", member(&C::DAWField), R::text(), W::quotedRaw()},
            {"RPhID", member(&C::RPh), R::zeroText(), W::number()},
            {"TechID", member(&C::Tech), R::zeroText(), W::number()},
            {"Schedule", member(&C::Schedule), R::text(), W::quotedRaw()},
            {"Notes", member(&C::Notes), R::text(), W::quotedDoubled()},
            {"SigCodes", member(&C::SigCodes), R::text(), W::quotedDoubled()},
            {"OtherDenial", member(&C::OtherDenial), R::text(), W::quotedRaw()},
            {"DURConflict", member(&C::DURConflict), R::text(), W::quotedRaw()},
            {"DURIntervention", member(&C::DURIntervention), R::text(), W::quotedRaw()},
            {"DUROutcome", member(&C::DUROutcome), R::text(), W::quotedRaw()},
            {"AuthNumber", member(&C::AuthNumber), R::text(), W::quotedDoubled()},
            {"Paid", member(&C::PAID), R::nullScreen(0), W::number()},
            {"ARCharge", member(&C::ARCharge), R::nullScreen(0), W::number()},
            {"Online", member(&C::OnLine), R::nullScreen(0), W::number()},
            {"OnlineResult", member(&C::OnlineResult), R::text(), W::quotedDoubled()},
            {"Diagnosis", member(&C::Diagnosis), R::text(), W::quotedRaw()},
            {"OtherPayor", member(&C::OtherPayor), R::nullScreen(0), W::number()},
            {"DenialDate", member(&C::DenialDate), R::nullScreen(0), records::day()},
            {"HCPC", member(&C::HCPC), R::text(), W::quotedRaw()},
            {"Form", member(&C::Form), R::nullScreen(1), W::number()},
            {"ControlNumber", member(&C::ControlNumber), R::text(), W::quotedRaw()},
            {"QBTxnID", member(&C::QBTxnID), R::text(), W::quotedRaw()},
            {"Transferred", member(&C::Transferred), R::nullScreen(0), W::none()},
            {"PAMC", member(&C::PAMC), R::text(), W::quotedRaw()},
            {"DURData", member(&C::DURData), R::text(), W::quotedRaw()},
            {"EligibilityCode", member(&C::EligibilityCode), R::text(), W::quotedRaw()},
            {"OtherInsCode", member(&C::OtherInsCode), R::text(), W::quotedRaw()},
            {"OriginCode", member(&C::OriginCode), R::text(), W::quotedRaw()},
            {"LevelOfService", member(&C::LevelOfService), R::text(), W::quotedRaw()},
            {"GeneratedRx", member(&C::GeneratedRx), R::nullScreen(0), W::number()},
            {"FormulaID", member(&C::FormulaID), R::zeroText(), W::number()},
            {"Units", member(&C::Units), R::text(), W::quotedRaw()},
            {"InsData", member(&C::InsData), R::text(), W::quotedRaw()},
            {"OOnlineResult", member(&C::OOnlineResult), R::text(), W::quotedRaw()},
            {"OAuthNumber", member(&C::OAuthCode), R::text(), W::quotedRaw()},
            {"OInsPaid", member(&C::OInsPaid), R::nullScreen(0), W::number()},
            {"OPatInsID", member(&C::OPatInsID), R::zeroText(), W::number()},
            {"OInsAmount", member(&C::OInsAmount), R::zeroText(), W::number()},
            {"OInsCopay", member(&C::OInsCopay), R::zeroText(), W::number()},
            {"PInsAmount", member(&C::PInsAmount), R::nullScreen(0), W::number()},
            {"PInsCopay", member(&C::PInsCopay), R::zeroText(), W::number()},
            {"OtherCoverage", member(&C::OtherCoverage), R::text(), W::quotedRaw()},
            {"OtherType", member(&C::OtherType), R::text(), W::quotedRaw()},
            {"PaidQualifier", member(&C::PaidQualifier), R::text(), W::quotedRaw()},
            {"OtherDate", member(&C::OtherDate), todayWhenNull(), records::day()},
            {"Deleted", member(&C::Deleted), R::nullScreen(0), W::number()},
            {"OtherIDQualifier", member(&C::OtherIDQualifier), R::text(), W::quotedRaw()},
            {"OtherID", member(&C::OtherID), R::text(), W::quotedRaw()},
            {"ProductIDQualifier", member(&C::m_sProductIDQualifier),
             R::nullScreen(QStringLiteral("03")), W::quotedRaw()},
            {"DateChanged", records::presentTime<C>(), R::none(), W::value()},
        });
    return table;
}

namespace {

const ColumnTable<C>& table() {
    return prescriptionColumns();
}

const ColumnOrder& keyOrder() {
    static const ColumnOrder order = table().order({"RXInfoID", "Number", "RefillNumber"});
    return order;
}

const ColumnOrder& originalOrder() {
    static const ColumnOrder order =
        table().order({"OriginalDate", "OriginalQty", "OriginalRefills"});
    return order;
}

// The rest of the row: every column after the original fill's.
const ColumnOrder& restOrder() {
    static const ColumnOrder order(table().all().begin() + originalOrder().back() + 1,
                                   table().all().end());
    return order;
}

const QString kOriginalOfRefill = QStringLiteral(
    "SELECT Date, OriginalDate, OriginalQty, Refills, Qty, OriginalRefills FROM RXINFO "
    "WHERE Number = ? AND RefillNumber = 0");

// The fills up to this one that were neither voided nor deleted: what has been used of
// the refills as of this fill.
const QString kRefillsUsed = QStringLiteral(
    "SELECT COUNT(RxInfoID) AS RefillsUsed FROM RXINFO WHERE Number = ? "
    "AND COALESCE(Voided, 0) = 0 AND COALESCE(Deleted, 0) = 0 "
    "AND (RefillNumber > 0 AND RefillNumber <= ?)");

const QString kUpdateOriginal = QStringLiteral(
    "UPDATE RXINFO SET OriginalDate = ?, OriginalQty = ? WHERE Number = ? AND RefillNumber = 0");

QVariant zeroText(const QVariant& field) {
    return QVariant(QStringLiteral("0") + columns::textOf(field));
}

qint32 wholeRefills(double count) {
    return conv::LongFromDouble(conv::RoundHalfEven(count));
}

// The PAMC column of the row being read, for the report of a failed read.
QString pamcOf(const RecordSet& rs) {
    if (rs.State() != 1 || rs.Eof() || rs.Bof()) return {};
    return columns::textOf(rs.Fields(QStringLiteral("PAMC")));
}

}  // namespace

clsPrescription::clsPrescription()
    : m_Response(std::make_shared<clsClaimResponse>()),
      m_OtherResponse(std::make_shared<clsClaimResponse>()) {}

// The contained records go in this order: patient, drug, prescriber.
clsPrescription::~clsPrescription() {
    m_PatientClass.reset();
    m_DrugClass.reset();
    m_DoctorClass.reset();
}

void clsPrescription::GetData() {
    Frame frame("clsPrescription:GetData");
    RecordSet rs;
    frame.withDetails([&] { return QStringLiteral("PAMC ") + pamcOf(rs); });
    if (!table().load(frame, rs, table().selectList(table().selected()), RXInfoID, *this,
                      keyOrder()))
        return;
    readOriginalFill(frame, rs);
    table().read(frame, rs, *this, restOrder());
    SaveForLog();
}

// An original fill carries its own date, quantity and refills; a refill takes them from
// the original's row and counts the fills used up to itself.
void clsPrescription::readOriginalFill(Frame& frame, const RecordSet& rs) {
    if (RefillNumber >= 1) {
        readOriginalOfRefill(frame);
        return;
    }
    table().read(frame, rs, *this, originalOrder());
    double refillCount = 0;
    frame([&] { refillCount = conv::ToDouble(zeroText(rs.Fields(QStringLiteral("Refills")))); });
    frame([&] { m_lRefillsLeft = wholeRefills(refillCount); });
}

void clsPrescription::readOriginalOfRefill(Frame& frame) {
    RecordSet original;
    frame([&] { original = records::mainConnection().OpenRecordSet(kOriginalOfRefill, {Number}); });
    bool found = true;
    frame([&] { found = !original.Eof(); });
    double refillCount = 0;
    if (!found) {
        OriginalDate = conv::ZeroDate();
        OriginalQty = 0;
        OriginalRefills = 0;
    } else {
        frame([&] {
            const QVariant originalDate = original.Fields(QStringLiteral("OriginalDate"));
            OriginalDate = conv::ToDate(columns::holdsDate(originalDate)
                                            ? originalDate
                                            : original.Fields(QStringLiteral("Date")));
        });
        frame(
            [&] { OriginalQty = conv::ToDouble(original.Fields(QStringLiteral("OriginalQty"))); });
        frame([&] {
            if (OriginalQty <= 0)
                OriginalQty = conv::ToDouble(original.Fields(QStringLiteral("Qty")));
        });
        frame([&] {
            OriginalRefills =
                conv::ToLong(zeroText(original.Fields(QStringLiteral("OriginalRefills"))));
        });
        frame([&] {
            refillCount = conv::ToDouble(zeroText(original.Fields(QStringLiteral("Refills"))));
        });
    }
    countRefillsUsed(frame, refillCount);
}

void clsPrescription::countRefillsUsed(Frame& frame, double refillCount) {
    RecordSet used;
    frame([&] {
        used = records::mainConnection().OpenRecordSet(kRefillsUsed, {Number, RefillNumber});
    });
    frame([&] {
        if (used.Eof()) {
            m_lRefillsLeft = wholeRefills(refillCount);
            return;
        }
        const double left =
            refillCount - conv::ToDouble(used.Fields(QStringLiteral("RefillsUsed")));
        m_lRefillsLeft = left < 0 ? 0 : wholeRefills(left);
    });
}

void clsPrescription::Update() {
    Frame frame("clsPrescription:Update");
    const bool original = RefillNumber < 1;
    if (!original) updateOriginalOfRefill(frame);
    table().store(frame, *this, RXInfoID, original ? RowWritten::Original : RowWritten::Refill);
    m_bUpdated = true;
    if (PrescriptionType == NewRx && !m_bSavedForLog) {
        SaveForLog();
        m_bSavedForLog = true;
    } else {
        AddLogEntry();
    }
}

// A change of the original date or quantity made on a refill reaches the original's row;
// its refills do not.
void clsPrescription::updateOriginalOfRefill(Frame& frame) {
    frame([&] {
        const QVariant date = table().bound(*this, originalOrder()[0]);
        const QVariant quantity = table().bound(*this, originalOrder()[1]);
        records::mainConnection().Execute(kUpdateOriginal, {date, quantity, Number});
    });
}

void clsPrescription::ClearResponse() {
    m_Response = std::make_shared<clsClaimResponse>();
}

void clsPrescription::ClearOtherResponse() {
    m_OtherResponse = std::make_shared<clsClaimResponse>();
}

void clsPrescription::setConnection(std::shared_ptr<DbConnection> connection) {
    mdlMain::setConnection(std::move(connection), QStringLiteral("clsPrescription:Connection"));
}

std::shared_ptr<clsClaimResponse> clsPrescription::Response() {
    if (!m_Response) m_Response = std::make_shared<clsClaimResponse>();
    return m_Response;
}

std::shared_ptr<clsClaimResponse> clsPrescription::OtherResponse() {
    if (!m_OtherResponse) m_OtherResponse = std::make_shared<clsClaimResponse>();
    return m_OtherResponse;
}

void clsPrescription::setResponse(std::shared_ptr<clsClaimResponse> value) {
    m_Response = std::move(value);
}

void clsPrescription::setOtherResponse(std::shared_ptr<clsClaimResponse> value) {
    m_OtherResponse = std::move(value);
}

std::shared_ptr<clsPatient> clsPrescription::PatientClass() {
    if (!m_PatientClass) m_PatientClass = std::make_shared<clsPatient>();
    return m_PatientClass;
}

std::shared_ptr<clsDoc> clsPrescription::DoctorClass() {
    if (!m_DoctorClass) m_DoctorClass = std::make_shared<clsDoc>();
    return m_DoctorClass;
}

std::shared_ptr<clsDrug> clsPrescription::DrugClass() {
    if (!m_DrugClass) m_DrugClass = std::make_shared<clsDrug>();
    return m_DrugClass;
}

// Setting the patient always reads the patient's record afresh, so a fill shows what
// another workstation last saved.
void clsPrescription::setPatientID(qint32 value) {
    m_lPatientID = value;
    m_PatientClass = std::make_shared<clsPatient>();
    m_PatientClass->PatientID = value;
    m_PatientClass->GetData();
}

void clsPrescription::setMDID(qint32 value) {
    m_lMDID = value;
    m_DoctorClass = std::make_shared<clsDoc>();
    m_DoctorClass->MDID = value;
    m_DoctorClass->GetData();
}

// A fill without a drug (0) still gets an empty drug, whose price table and generic flag
// the pricing then takes.
void clsPrescription::setDrugID(qint32 value) {
    Frame frame("clsPrescription:DrugID");
    m_lDrugID = value;
    m_DrugClass = std::make_shared<clsDrug>();
    m_DrugClass->DrugID = value;
    if (value > 0) m_DrugClass->GetData();
    frame([&] { DrugPT = conv::ToLong(zeroText(m_DrugClass->PriceTableID)); });
    Generic = m_DrugClass->Generic != 0;
}

QString clsPrescription::RefillsLeft() const {
    const QString count = conv::Trim(conv::NumberText(m_lRefillsLeft));
    return m_lRefillsLeft * OriginalQty < QtyRemain ? count + QLatin1Char('+') : count;
}

QString clsPrescription::DS() const {
    return m_sDS == QLatin1String("Null") ? QString() : m_sDS;
}

// Claims accept the product code qualifiers 0 to 26 and 99.
QString clsPrescription::ProductIDQualifier() const {
    QString result;
    Frame frame("clsPrescription:ProductIDQualifier");
    frame([&] {
        if (!conv::IsNumeric(m_sProductIDQualifier)) return;
        const double code = conv::ToDouble(m_sProductIDQualifier);
        const bool accepted = (code >= 0 && code <= 26) || code == 99;
        result = accepted ? m_sProductIDQualifier : QStringLiteral("0");
    });
    return result;
}

}  // namespace tvrx
