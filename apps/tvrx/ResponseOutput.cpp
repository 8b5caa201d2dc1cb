#include "ResponseOutput.h"

#include "responses/ResponseJson.h"
#include "responses/clsClaimResponse.h"
#include "session/runtime/Session.h"
#include "session/text/ClaimNotation.h"
#include "session/text/Conversions.h"

#include <memory>
#include <utility>

namespace tvrx::cli {

namespace {

QString line(const QString& label, const QString& value) {
    return QStringLiteral("%1 %2").arg(label + u':', -14).arg(toNotation(value));
}

QString yesNo(bool value) {
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

QString amountsLine(const clsClaimResponse& r) {
    const std::pair<const char*, double> amounts[] = {
        {"Total", r.Total()},
        {"TotalPaid", r.TotalPaid()},
        {"Copay", r.Copay()},
        {"Cost", r.Cost()},
        {"Fee", r.Fee()},
        {"SalesTax", r.SalesTax()},
        {"Coinsurance", r.Coinsurance()},
        {"IncentiveFee", r.IncentiveFee()},
        {"PercetSalesTaxSub", r.PercetSalesTaxSub()},
    };
    QStringList parts;
    for (const auto& [name, value] : amounts) {
        parts << QStringLiteral("%1 %2").arg(QLatin1String(name), conv::NumberText(value));
    }
    return line(QStringLiteral("amounts"), parts.join(QStringLiteral(", ")));
}

void appendFindings(QStringList& lines, const colDUR& findings) {
    lines << QStringLiteral("DUR records:   %1").arg(findings.Count());
    int number = 0;
    for (const auto& f : findings) {
        const QStringList phrases{f->Number,      f->Severity, f->LastFillDate, f->LastFillLocation,
                                  f->LastFillQty, f->DB,       f->Prescriber,   f->Message};
        lines << QStringLiteral("  %1. %2")
                     .arg(++number)
                     .arg(toNotation(phrases.join(QStringLiteral(" | "))));
    }
}

}  // namespace

DecodedResponse decodeResponse(clsClaimResponse& response) {
    auto user = std::make_shared<ScriptedUserInteraction>();
    user->setPermissive(true);
    auto reporter = std::make_shared<RecordingErrorReporter>();
    const auto sessionUser = std::exchange(mdlMain::UserService, user);
    const auto sessionReporter = std::exchange(mdlMain::ErrorReporter, reporter);
    DecodedResponse decoded;
    decoded.claim = response.Claim;
    decoded.result = response.BuildResponse();
    mdlMain::UserService = sessionUser;
    mdlMain::ErrorReporter = sessionReporter;
    decoded.boxes = user->calls();
    decoded.reports = reporter->reports();
    return decoded;
}

QStringList responseLines(const clsClaimResponse& r, const DecodedResponse& decoded) {
    QStringList lines{
        line(QStringLiteral("result"), yesNo(decoded.result)),
        line(QStringLiteral("status"), r.PaidStatus()),
        line(QStringLiteral("PAID"),
             QStringLiteral("%1 (SaveClaim %2, Reversal %3, HeaderRejected %4)")
                 .arg(r.PAID())
                 .arg(yesNo(r.SaveClaim()), yesNo(r.Reversal), yesNo(r.HeaderRejected))),
        amountsLine(r),
        line(QStringLiteral("reference"), r.Reference()),
        line(QStringLiteral("message"), r.Message()),
        line(QStringLiteral("message two"), r.MessageTwo()),
        line(QStringLiteral("DUR extra"), r.DURExtra()),
        line(QStringLiteral("plan"), r.PlanID()),
        QStringLiteral("rejects:       %1").arg(r.colReject()->Count()),
    };
    for (const auto& reject : *r.colReject()) {
        lines << QStringLiteral("  %1  %2")
                     .arg(toNotation(reject->code), toNotation(reject->Description));
    }
    appendFindings(lines, *r.colDUR());
    for (const auto& box : decoded.boxes) {
        if (box.kind != ScriptedUserInteraction::Kind::MsgBox) continue;
        lines << line(
            QStringLiteral("box"),
            QStringLiteral("[%1] %2: %3").arg(box.args.value(2), box.title(), box.text()));
    }
    for (const auto& report : decoded.reports) {
        lines << line(
            QStringLiteral("report"),
            QStringLiteral("%1 %2 %3").arg(report.location, report.number, report.description));
    }
    return lines;
}

QJsonObject decodedJson(const clsClaimResponse& response, const DecodedResponse& decoded) {
    QJsonObject json = responseJson(response);
    json.insert(QStringLiteral("claim"), toNotation(decoded.claim));
    json.insert(QStringLiteral("result"), decoded.result);
    json.insert(QStringLiteral("boxes"), boxesJson(decoded.boxes));
    json.insert(QStringLiteral("reports"), reportsJson(decoded.reports));
    return json;
}

}  // namespace tvrx::cli
