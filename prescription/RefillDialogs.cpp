#include "prescription/RefillDialogs.h"

#include "session/runtime/AppConfig.h"
#include "session/runtime/Session.h"
#include "session/runtime/UserInteraction.h"
#include "session/text/Conversions.h"

#include <QStringList>

#include <map>
#include <utility>
#include <vector>

namespace tvrx::refill {

namespace {

const QString kLf = QStringLiteral("\n");
const QString kCrLf = QStringLiteral("\r\n");

// The buttons of each choice dialog, left to right, with what each means.
const std::map<ChoiceDialog, std::vector<std::pair<const char*, Choice>>>& buttons() {
    static const std::map<ChoiceDialog, std::vector<std::pair<const char*, Choice>>> table{
        {ChoiceDialog::Expired,
         {{"&Fax Doctor", Choice::FaxDoctor},
          {"&Print Call Doctor", Choice::PrintCallDoctor},
          {"&Generate New Rx", Choice::GenerateNewRx},
          {"&Cancel", Choice::Stop}}},
        {ChoiceDialog::NoRefillsLeft,
         {{"&Fax Doctor", Choice::FaxDoctor},
          {"&Print Call Doctor", Choice::PrintCallDoctor},
          {"&Add Refills", Choice::AddRefills},
          {"&Generate New Rx", Choice::GenerateNewRx},
          {"&Close", Choice::Stop}}},
        {ChoiceDialog::LessThanOneFill,
         {{"&Refill with Quantity", Choice::RefillWithQuantity},
          {"&Add Refills", Choice::AddRefills},
          {"&Fax Doctor", Choice::FaxDoctor},
          {"&Print Call Doctor", Choice::PrintCallDoctor},
          {"&Generate New Rx", Choice::GenerateNewRx},
          {"&Close", Choice::Stop}}},
    };
    return table;
}

// The number as the platform's Str gave it: a leading blank for a number that is not
// negative.
QString spaced(qint32 number) {
    return conv::NumberTextSigned(number);
}

QString plain(qint32 number) {
    return QString::number(number);
}

void tell(const QString& text, const QString& title) {
    mdlMain::user().MsgBox(text, Buttons::OKOnly, Icon::Information, 1, title);
}

// OK or Cancel, Cancel being the default.
bool okToFill(const QString& text) {
    return mdlMain::user().MsgBox(text, Buttons::OKCancel, Icon::Information, 2,
                                  appConfig().ProductName) == Answer::OK;
}

const QString kChooseBelow = QStringLiteral("Make your choice from the buttons below");

}  // namespace

const QString kFiveRefillsIssued = QStringLiteral(
    "Five refills have already been issued since the original fill on a controlled substance.");
const QString kSixMonthsElapsed =
    QStringLiteral("Six months have elapsed since the original date on a controlled prescription.");
const QString kYearElapsed =
    QStringLiteral("A year has elapsed since the original date on this prescription.");
const QString kRefillOptions = QStringLiteral("Refill Options");

Choice choose(ChoiceDialog dialog, const QString& title, const QString& message) {
    const auto& shown = buttons().at(dialog);
    QStringList captions;
    for (const auto& button : shown) captions << QString::fromLatin1(button.first);
    const int count = int(shown.size());
    const int pressed = mdlMain::user().Choose(captions.join(QStringLiteral(", ")), count, 1, title,
                                               message, count);
    return pressed >= 1 && pressed <= count ? shown[size_t(pressed - 1)].second : Choice::Stop;
}

void sayNotFound(qint32 number) {
    mdlMain::user().MsgBox(QStringLiteral("Prescription Number, ") + spaced(number) + kLf +
                               QStringLiteral("    Was Not Found!"),
                           Buttons::OKOnly, Icon::Critical, 1, appConfig().ProductName);
}

bool followNewerNumber(qint32 number, const QString& newerNumber) {
    const QString text = QStringLiteral("Prescription number ") + plain(number) +
                         QStringLiteral(" was generated to a newer rx number: ") + kCrLf +
                         newerNumber +
                         QStringLiteral(
                             ". Click YES to use the newer number or NO to continue "
                             "with ") +
                         plain(number);
    return mdlMain::user().MsgBox(text, Buttons::YesNo, Icon::Information, 1,
                                  QStringLiteral("NEWER RX")) == Answer::Yes;
}

void sayOtherPatient(qint32 number) {
    tell(QStringLiteral("The prescription number you entered, ") + spaced(number) + kLf +
             QStringLiteral(" is not for the current patient."),
         appConfig().ProductName);
}

void sayTransferred(qint32 number) {
    tell(QStringLiteral("Prescription, ") + plain(number) +
             QStringLiteral(", has been transferred.") + kCrLf +
             QStringLiteral("Transfer again to remove transfer information."),
         QStringLiteral("RX Transferred"));
}

bool fillAgainToday(qint32 number, const QDateTime& today) {
    return okToFill(QStringLiteral("Prescription number, ") + spaced(number) +
                    QStringLiteral(", has already been filled") + kLf + QStringLiteral("today, ") +
                    conv::FormatDate(today, QStringLiteral("MM/DD/YY")) +
                    QStringLiteral(". Click OK to fill anyway") + kLf +
                    QStringLiteral("or CANCEL to abort"));
}

bool fillBeforeThreeQuarters(const QString& lastFilled) {
    return okToFill(QStringLiteral("Less than 75% of the days supply has passed since") + kLf +
                    QStringLiteral("the last refill on ") + lastFilled +
                    QStringLiteral(". Click OK to fill anyway") + kLf +
                    QStringLiteral("or CANCEL to abort"));
}

QString askRefillsToAdd() {
    return mdlMain::user().InputBox(QStringLiteral("Enter the number of refills to add"),
                                    QStringLiteral("ADD REFILLS"), QString());
}

QString scheduleTwoExpired() {
    return QStringLiteral("Controlled two prescriptions are not refillable.") + kLf + kChooseBelow;
}

QString expiredSince(const QString& reason, const QString& originalDate) {
    return reason + kLf + kChooseBelow + QStringLiteral(".") + kLf + kLf +
           QStringLiteral("Original Date: ") + originalDate;
}

QString expiredTitle(qint32 number) {
    return QStringLiteral("Prescription Expired: ") + plain(number);
}

QString noRefillsLeft() {
    return QStringLiteral("This prescription has no refills remaining.") + kLf + kChooseBelow;
}

QString lessThanOneFill(double quantityRemaining) {
    return QStringLiteral("Quantity remaining is less than prescription quantity.") + kLf +
           QStringLiteral("Click Refill to refill with a quantity of ") +
           conv::Format(quantityRemaining, QStringLiteral("#######"));
}

}  // namespace tvrx::refill
