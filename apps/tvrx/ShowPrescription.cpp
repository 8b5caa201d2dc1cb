#include "ResponseOutput.h"
#include "ShowKinds.h"

#include "prescription/clsPrescription.h"
#include "records/clsDoc.h"
#include "records/clsDrug.h"
#include "records/clsPatient.h"
#include "responses/clsClaimResponse.h"
#include "session/data/ColumnTable.h"

namespace tvrx::cli {

namespace {

// A stored payer's answer decoded as "tvrx decode" shows it; an empty text was never
// answered (or was cleared) and is shown as such.
ShownSection responseSection(const QString& name, const QString& stored,
                             clsClaimResponse& response) {
    if (stored.isEmpty()) return {name, {}, {QStringLiteral("none stored")}, QJsonValue()};
    response.Claim = stored;
    const DecodedResponse decoded = decodeResponse(response);
    return {name, {}, responseLines(response, decoded), decodedJson(response, decoded)};
}

// The fill as GetData read its row, what its getters make of that (the refills left, and
// the days supply and product qualifier as a claim takes them), then the records it points to
// as GetData read them, and the answers of both payers.
Shown shownPrescription(clsPrescription& rx) {
    ShownRecord record;
    appendReadColumns(record, prescriptionColumns(), rx);

    const auto patient = rx.PatientClass();
    const auto doctor = rx.DoctorClass();
    const auto drug = rx.DrugClass();
    Shown shown(record);
    shown.sections = {
        {QStringLiteral("computed"),
         {{QStringLiteral("RefillsLeft"), rx.RefillsLeft()},
          {QStringLiteral("DS"), rx.DS()},
          {QStringLiteral("ProductIDQualifier"), rx.ProductIDQualifier()}},
         {},
         {}},
        {QStringLiteral("patient"),
         {{QStringLiteral("PatientID"), patient->PatientID},
          {QStringLiteral("LastName"), patient->LastName},
          {QStringLiteral("FirstName"), patient->FirstName}},
         {},
         {}},
        {QStringLiteral("prescriber"),
         {{QStringLiteral("MDID"), doctor->MDID},
          {QStringLiteral("LastName"), doctor->LastName},
          {QStringLiteral("FirstName"), doctor->FirstName}},
         {},
         {}},
        {QStringLiteral("drug"),
         {{QStringLiteral("DrugID"), drug->DrugID},
          {QStringLiteral("Name"), drug->Name},
          {QStringLiteral("NDC"), drug->NDC}},
         {},
         {}},
        responseSection(QStringLiteral("response"), rx.OnlineResult, *rx.Response()),
        responseSection(QStringLiteral("other response"), rx.OOnlineResult, *rx.OtherResponse()),
    };
    return shown;
}

}  // namespace

ShowKind showPrescriptionKind() {
    return {QStringLiteral("rx"), QStringLiteral("RXInfoID"),
            QStringLiteral("a fill of a prescription, by RXInfoID, with its patient, "
                           "prescriber, drug and decoded payer answers"),
            [](std::shared_ptr<DbConnection> connection, qint32 key) -> std::optional<Shown> {
                if (!rowExists(*connection, QStringLiteral("RXINFO"), QStringLiteral("RXInfoID"),
                               key, "tvrx:show rx"))
                    return std::nullopt;
                clsPrescription rx;
                rx.setConnection(std::move(connection));
                rx.RXInfoID = key;
                rx.GetData();
                return shownPrescription(rx);
            }};
}

}  // namespace tvrx::cli
