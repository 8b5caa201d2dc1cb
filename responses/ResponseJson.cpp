#include "responses/ResponseJson.h"

#include <QFile>

namespace tvrx {
namespace {

QJsonObject privateJson(const ResponseValues& values) {
    return {
        {QStringLiteral("PrescriptionRefNumber"), values.PrescriptionRefNumber},
        {QStringLiteral("PreferredProductCount"), values.PreferredProductCount},
        {QStringLiteral("PreferredProductID"), values.PreferredProductID},
        {QStringLiteral("TaxExemptIndicator"), values.TaxExemptIndicator},
        {QStringLiteral("BasisOfReimbursement"), values.BasisOfReimbursement},
        {QStringLiteral("OtherAmountCount"), values.OtherAmountCount},
        {QStringLiteral("OtherAmountQualifier"), values.OtherAmountQualifier},
        {QStringLiteral("OtherAmountPaid"), values.OtherAmountPaid},
        {QStringLiteral("RejectCount"), values.RejectCount},
    };
}

QJsonArray rejectsJson(const colReject& rejects) {
    QJsonArray result;
    for (const auto& reject : rejects) {
        result.append(QJsonObject{{QStringLiteral("code"), reject->code},
                                  {QStringLiteral("Description"), reject->Description}});
    }
    return result;
}

QJsonArray findingsJson(const colDUR& findings) {
    QJsonArray result;
    for (const auto& finding : findings) {
        result.append(QJsonObject{
            {QStringLiteral("ServiceCode"), finding->ServiceCode},
            {QStringLiteral("Message"), finding->Message},
            {QStringLiteral("Prescriber"), finding->Prescriber},
            {QStringLiteral("DB"), finding->DB},
            {QStringLiteral("LastFillQty"), finding->LastFillQty},
            {QStringLiteral("LastFillLocation"), finding->LastFillLocation},
            {QStringLiteral("LastFillDate"), finding->LastFillDate},
            {QStringLiteral("Severity"), finding->Severity},
            {QStringLiteral("Number"), finding->Number},
        });
    }
    return result;
}

}  // namespace

QJsonObject responseJson(const clsClaimResponse& response) {
    return {
        {QStringLiteral("HeaderRejected"), response.HeaderRejected},
        {QStringLiteral("Reversal"), response.Reversal},
        {QStringLiteral("PaidStatus"), response.PaidStatus()},
        {QStringLiteral("SaveClaim"), response.SaveClaim()},
        {QStringLiteral("Total"), response.Total()},
        {QStringLiteral("Copay"), response.Copay()},
        {QStringLiteral("Coinsurance"), response.Coinsurance()},
        {QStringLiteral("Reference"), response.Reference()},
        {QStringLiteral("PAID"), response.PAID()},
        {QStringLiteral("Cost"), response.Cost()},
        {QStringLiteral("Fee"), response.Fee()},
        {QStringLiteral("PercetSalesTaxSub"), response.PercetSalesTaxSub()},
        {QStringLiteral("SalesTax"), response.SalesTax()},
        {QStringLiteral("TotalPaid"), response.TotalPaid()},
        {QStringLiteral("Message"), response.Message()},
        {QStringLiteral("MessageTwo"), response.MessageTwo()},
        {QStringLiteral("DURExtra"), response.DURExtra()},
        {QStringLiteral("PlanID"), response.PlanID()},
        {QStringLiteral("IncentiveFee"), response.IncentiveFee()},
        {QStringLiteral("private"), privateJson(response.decoded())},
        {QStringLiteral("rejects"), rejectsJson(*response.colReject())},
        {QStringLiteral("dur"), findingsJson(*response.colDUR())},
    };
}

QJsonArray boxesJson(const QList<ScriptedUserInteraction::Call>& calls) {
    QJsonArray result;
    for (const auto& call : calls) {
        if (call.kind != ScriptedUserInteraction::Kind::MsgBox) continue;
        result.append(QJsonObject{{QStringLiteral("text"), call.text()},
                                  {QStringLiteral("icon"), call.args.value(2)},
                                  {QStringLiteral("title"), call.title()}});
    }
    return result;
}

QJsonArray reportsJson(const QList<ErrorReport>& reports) {
    QJsonArray result;
    for (const auto& report : reports) {
        result.append(QJsonObject{{QStringLiteral("location"), report.location},
                                  {QStringLiteral("number"), report.number},
                                  {QStringLiteral("description"), report.description}});
    }
    return result;
}

NotationResult readResponseFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {std::nullopt, QStringLiteral("cannot read %1: %2").arg(path, file.errorString())};
    }
    return readResponseText(file.readAll());
}

NotationResult readResponseText(const QByteArray& contents) {
    QString notation;
    for (const QByteArray& line : contents.split('\n')) {
        if (line.startsWith('#')) continue;
        notation += QString::fromLatin1(line.endsWith('\r') ? line.chopped(1) : line);
    }
    return fromNotation(notation);
}

}  // namespace tvrx
