#include "claims/Wrapper.h"
#include "prescription/clsPrescription.h"
#include "records/PATINS.h"
#include "session/data/RecordSet.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "session/runtime/UserInteraction.h"
#include "session/text/Conversions.h"

// The entry of online adjudication: which payer is billed, the claim text, one
// transmission, and the payer's answer read back onto the prescriptions.
namespace tvrx {

namespace {

const QString kReverseTitle = QStringLiteral("REVERSE PRESCRIPTION");
const QString kReverseButtons = QStringLiteral("REVERSE &MAIN,REVERSE &OTHER,&CANCEL");
const QString kProcessTitle = QStringLiteral("PROCESS PRESCRIPTION");
const QString kProcessButtons = QStringLiteral("PROCESS &MAIN,PROCESS &OTHER,&CANCEL");
const QString kReversalCanceled = QStringLiteral("Claim Reversal Canceled");
const QString kSubmissionCanceled = QStringLiteral("Claim Submission Canceled");
const QString kOnlyOneRx = QStringLiteral("Only one RX can be submitted with other coverage");
const QString kHeaderFailed = QStringLiteral("Insurance header build failed");
const QString kOtherNotProcessed =
    QStringLiteral("The other insurance on this prescription did not process succuessfully.");
const QString kMainNotProcessed =
    QStringLiteral("The main insurance on this prescription did not process succuessfully.");
// The pharmacy's line break: carriage return and line feed.
const QString kLineBreak = QStringLiteral("\r\n");

enum Choice { kMain = 1, kOther = 2, kCancel = 3 };

// The start of both dialogs' message: which two plans cover the prescription.
QString bothInsurances(const QString& mainName, const QString& otherName) {
    return QStringLiteral("This prescription has both a main insurance (") + mainName +
           QStringLiteral(") and ") + QStringLiteral("an other insurance (") + otherName +
           QStringLiteral("). ");
}

QString reverseMessage(const QString& mainName, const QString& otherName) {
    return bothInsurances(mainName, otherName) +
           QStringLiteral("Click your refersal choice below.");
}

QString processMessage(const QString& mainName, const QString& otherName) {
    return bothInsurances(mainName, otherName) +
           QStringLiteral("Click below on how you want to submit this claim.") +
           QStringLiteral(
               "NOTE: Other insurance (PRIMARY INSURANCE) must submitted before "
               "submitting the other ") +
           QStringLiteral("insurance.");
}

// The plan name of a coverage row, or empty when the row cannot be read.
QString insuranceName(qint32 patInsID) {
    PATINS coverage;
    coverage.PatInsID = patInsID;
    return coverage.GetData() ? coverage.InsCode : QString();
}

}  // namespace

bool Wrapper::SubmitClaim(const QString& sTVIDirectory, RecordSet& rsPatIns, RecordSet& rsIns,
                          bool Reversal) {
    Frame frame("Wrapper:SubmitClaim");
    bool sendingOther = false;
    bool hasOtherPayer = false;
    QString mainName;
    QString otherName;
    QString sendText;
    errorMessage_.clear();

    const std::shared_ptr<clsPrescription> first = colRX_->Item(1);
    frame([&] { hasOtherPayer = conv::Val(first->OtherCoverage) > 1; });
    if (hasOtherPayer) {
        frame([&] { mainName = insuranceName(first->PatInsID); });
        frame([&] { otherName = insuranceName(first->OPatInsID); });
    }

    // The payer billed: button 1 the main plan, 2 the other, 3 gives up with the message.
    const auto choosePayer = [&](const QString& buttons, const QString& title,
                                 const QString& message, const QString& canceled) {
        int choice = kMain;
        frame([&] { choice = mdlMain::user().Choose(buttons, 3, 1, title, message, 3); });
        if (choice == kCancel) {
            errorMessage_ = canceled;
            return false;
        }
        sendingOther = choice == kOther;
        return true;
    };

    if (Reversal) {
        if (hasOtherPayer && !choosePayer(kReverseButtons, kReverseTitle,
                                          reverseMessage(mainName, otherName), kReversalCanceled)) {
            return false;
        }
        frame([&] { sendText = first->BuildReverseClaim(rsIns, sendingOther); });
        frame([&] {
            AddClaimRecord(first->RXInfoID, false, true, sendingOther, sendText, QString());
        });
    } else {
        if (hasOtherPayer) {
            if (colRX_->Count() > 1) {
                errorMessage_ = kOnlyOneRx;
                return false;
            }
            if (!choosePayer(kProcessButtons, kProcessTitle, processMessage(mainName, otherName),
                             kSubmissionCanceled)) {
                return false;
            }
        }
        QString header;
        frame([&] { header = BuildHeader(rsPatIns, rsIns, sendingOther, false); });
        if (header.isEmpty()) {
            errorMessage_ = kHeaderFailed;
            return false;
        }
        sendText = header;
        for (int i = 1; i <= colRX_->Count(); ++i) {
            const std::shared_ptr<clsPrescription> rx = colRX_->Item(i);
            QString body;
            frame([&] { body = rx->BuildClaim(rsIns, sendingOther, false); });
            if (body.isEmpty()) {
                errorMessage_ = QStringLiteral("Claim build for prescription, ") +
                                QString::number(rx->Number) + QStringLiteral(" failed!");
                return false;
            }
            frame([&] { AddClaimRecord(rx->RXInfoID, false, false, sendingOther, body, header); });
            sendText += body;
        }
    }

    // The exchange removes the response file once the reader has been through it.
    bool answered = false;
    frame([&] {
        answered = ExchangeClaimFile(sTVIDirectory, sendText, [&](const QString& responsePath) {
            ClaimDone = ParseClaimFile(responsePath, sendingOther);
        });
    });
    // Aborted by the user: nothing was read.
    if (!answered) ClaimDone = false;
    QString resultText;
    if (!ClaimDone) resultText = sendingOther ? kOtherNotProcessed : kMainNotProcessed;
    errorMessage_ += kLineBreak + resultText;
    return ClaimDone;
}

}  // namespace tvrx
