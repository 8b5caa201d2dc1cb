// Wrapper::ParseClaimFile: the payer's response file read into the prescriptions of colRX.
#include "claims/Wrapper.h"
#include "responses/ResponseFile.h"
#include "responses/clsClaimResponse.h"
#include "session/runtime/AppConfig.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "session/runtime/UserInteraction.h"
#include "session/text/Conversions.h"

namespace tvrx {

namespace {

const QString kNoFirstSeparator = QStringLiteral("First group seperator not found");
const QString kCountsDiffer =
    QStringLiteral("Number of submitted claims does not match number of responses");
const QString kBuildFailedFixed = QStringLiteral("Failed to build 3.2 claim response for RX: ");
const QString kBuildFailed51 = QStringLiteral("Failed to build 5.1 claim response for RX: ");
const QString kBuildFailedReversal = QStringLiteral("Failed to build reverse response for RX: ");
const QString kHeaderWords[] = {QStringLiteral("PAID"), QStringLiteral("REJECTED")};

QString belowCostText(const clsPrescription& rx) {
    return QStringLiteral("The reimbursed total, ") + conv::FormatCurrency(rx.Price) +
           QStringLiteral(", on prescription ") + QString::number(rx.Number) +
           QStringLiteral("\r\nis less than the prescription cost, ") +
           conv::FormatCurrency(rx.Cost);
}

// The response object that decodes a claim sent to the main or to the other payer, made
// fresh.
std::shared_ptr<clsClaimResponse> freshResponse(clsPrescription& rx, bool sendingOther) {
    if (sendingOther) {
        rx.ClearOtherResponse();
        return rx.OtherResponse();
    }
    rx.ClearResponse();
    return rx.Response();
}

}  // namespace

QString Wrapper::HeaderResponse() const {
    return headerResponse_ == 0 || headerResponse_ == 1 ? kHeaderWords[headerResponse_] : QString();
}

bool Wrapper::ParseClaimFile(const QString& sClaimFile, bool SendingOther) {
    Frame frame("Wrapper:ParseClaimFile");
    QString text;
    // A file that cannot be read is reported; the steps then run on an empty text.
    frame([&] { text = response::readWholeFile(sClaimFile); });
    const response::ResponseFile file(text);
    formCode_ = file.formCode();
    switch (file.route()) {
        case response::FileRoute::Reversal:
            return parseReversal(frame, file, SendingOther);
        case response::FileRoute::Claims51:
            return parseClaims(frame, file, [&](int index, const QString& claim) {
                return handleClaim51(frame, index, claim, SendingOther);
            });
        case response::FileRoute::FixedClaims:
            break;
    }
    return parseClaims(frame, file, [&](int index, const QString& claim) {
        return handleFixedClaim(frame, index, claim);
    });
}

bool Wrapper::claimsMatch(const response::ResponseFile& file) {
    if (file.firstSeparator() == 0) {
        errorMessage_ = kNoFirstSeparator;
        return false;
    }
    if (file.headerRejected()) headerResponse_ = 1;
    if (file.claimCount() != colRX()->Count()) {
        errorMessage_ = kCountsDiffer;
        return false;
    }
    return true;
}

bool Wrapper::parseClaims(Frame& frame, const response::ResponseFile& file,
                          const ClaimHandler& handle) {
    if (!claimsMatch(file)) return false;
    const QString header = file.responseHeader();
    const int count = file.claimCount();
    response::GroupCutter groups(file);
    bool result = false;
    for (int i = 1; i <= count; ++i) {
        const std::optional<QString> group = groups.next(frame, i, count);
        if (!group) continue;
        if (!handle(i, header + *group)) return false;
        result = true;
    }
    return result;
}

bool Wrapper::handleFixedClaim(Frame& frame, int index, const QString& claim) {
    const colRX::Pointer rx = colRX()->Item(index);
    // The response object is used again: what this text does not set stays from before.
    const std::shared_ptr<clsClaimResponse> response = rx->Response();
    response->Claim = claim;
    if (!response->BuildResponse()) {
        errorMessage_ = kBuildFailedFixed + QString::number(rx->Number);
        return false;
    }
    if (response->SaveClaim()) rx->OnlineResult = claim;
    if (response->PAID() != 0) {
        rx->Price = response->Total();
        rx->Copay = response->Copay();
    }
    rx->AuthNumber = response->Reference();
    rx->PAID = response->PAID();
    frame([&] { rx->Update(); });
    checkBelowCost(frame, *rx, true);
    return true;
}

bool Wrapper::handleClaim51(Frame& frame, int index, const QString& claim, bool sendingOther) {
    const colRX::Pointer rx = colRX()->Item(index);
    AddClaimRecord(rx->RXInfoID, true, false, sendingOther, claim, QString());
    const std::shared_ptr<clsClaimResponse> answer = freshResponse(*rx, sendingOther);
    answer->Claim = claim;
    if (!answer->BuildResponse()) {
        errorMessage_ = kBuildFailed51 + QString::number(rx->Number);
        return false;
    }
    // The main response is asked, also for a claim to the other payer.
    const std::shared_ptr<clsClaimResponse> main = rx->Response();
    if (main->SaveClaim()) (sendingOther ? rx->OOnlineResult : rx->OnlineResult) = claim;
    bool paid = false;
    if (sendingOther) {
        rx->OInsAmount = answer->TotalPaid();
        rx->OInsCopay = answer->Copay();
        rx->OAuthCode = answer->Reference();
        rx->OInsPaid = answer->PAID();
        rx->Copay = rx->OInsCopay;
        paid = rx->OInsPaid != 0;
    } else {
        rx->PInsAmount = answer->TotalPaid();
        rx->PInsCopay = answer->Copay();
        rx->AuthNumber = answer->Reference();
        rx->PAID = answer->PAID();
        rx->Copay = rx->PInsCopay;
        paid = rx->PAID != 0;
    }
    if (main->PAID() != 0) rx->Price = rx->PInsAmount + rx->OInsAmount + rx->Copay;
    frame([&] { rx->Update(); });
    checkBelowCost(frame, *rx, paid);
    return true;
}

bool Wrapper::parseReversal(Frame& frame, const response::ResponseFile& file, bool sendingOther) {
    // Only the first prescription is touched, and no count is checked.
    colRX::Pointer rx;
    frame([&] { rx = colRX()->Item(1); });
    if (!rx) return true;
    AddClaimRecord(rx->RXInfoID, true, true, sendingOther, file.text(), QString());
    const std::shared_ptr<clsClaimResponse> answer = freshResponse(*rx, sendingOther);
    answer->Claim = file.text();
    if (!answer->BuildResponse()) {
        errorMessage_ = kBuildFailedReversal + QString::number(rx->Number);
        return false;
    }
    if (rx->Response()->SaveClaim()) {
        (sendingOther ? rx->OOnlineResult : rx->OnlineResult) = file.text();
    }
    if (sendingOther) {
        rx->OAuthCode = answer->Reference();
        rx->OInsPaid = answer->PAID();
        if (rx->OInsPaid == 0) rx->OInsAmount = 0;
    } else {
        rx->AuthNumber = answer->Reference();
        rx->PAID = answer->PAID();
        if (rx->PAID == 0) rx->PInsAmount = 0;
    }
    frame([&] { rx->Update(); });
    return true;
}

void Wrapper::checkBelowCost(Frame& frame, const clsPrescription& rx, bool showBox) {
    BelowCost = rx.Price < rx.Cost;
    if (!BelowCost || !showBox) return;
    frame([&] {
        mdlMain::user().MsgBox(belowCostText(rx), Buttons::OKOnly, Icon::Critical, 1,
                               appConfig().Title);
    });
}

}  // namespace tvrx
