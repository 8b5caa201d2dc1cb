#pragma once

#include <QDateTime>
#include <QString>

namespace tvrx::refill {

// What the user chose where a refill rule objected.
enum class Choice {
    FaxDoctor,
    PrintCallDoctor,
    AddRefills,
    GenerateNewRx,
    RefillWithQuantity,
    Stop
};

// The choice dialogs of the refill rules.
enum class ChoiceDialog { Expired, NoRefillsLeft, LessThanOneFill };

// Shows a choice dialog and gives the meaning of the button pressed; a position that no
// button has is Stop.
Choice choose(ChoiceDialog dialog, const QString& title, const QString& message);

// The messages and questions of the refill rules, each with its exact text.
void sayNotFound(qint32 number);
bool followNewerNumber(qint32 number, const QString& newerNumber);
void sayOtherPatient(qint32 number);
void sayTransferred(qint32 number);
bool fillAgainToday(qint32 number, const QDateTime& today);
bool fillBeforeThreeQuarters(const QString& lastFilled);
QString askRefillsToAdd();

// The expiry messages: why, then the choice and the original date as "MM-DD-YY".
QString scheduleTwoExpired();
QString expiredSince(const QString& reason, const QString& originalDate);
extern const QString kFiveRefillsIssued;
extern const QString kSixMonthsElapsed;
extern const QString kYearElapsed;

// The titles of the choice dialogs.
QString expiredTitle(qint32 number);
extern const QString kRefillOptions;
QString noRefillsLeft();
QString lessThanOneFill(double quantityRemaining);

}  // namespace tvrx::refill
