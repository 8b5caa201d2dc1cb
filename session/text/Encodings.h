#pragma once

#include <QString>
#include <QVariant>

#include <optional>

// The small string functions every claim builder and response parser calls. Claim texts are
// byte strings held in QString (characters 0 to 255); positions are 1-based, as in the
// claim layouts. Each function runs in its own failure frame: a failed step is reported
// with the function's label and the function returns what it had built so far.
namespace tvrx::mdlMain {

// Control bytes of the claim text.
inline constexpr char16_t kStartOfText = 2;
inline constexpr char16_t kEndOfText = 3;
inline constexpr char16_t kFieldSeparator = 28;
inline constexpr char16_t kGroupSeparator = 29;
inline constexpr char16_t kSegmentSeparator = 30;
// Never written by the library; accepted as the end of the last field of a response.
inline constexpr char16_t kAlternativeTerminator = 225;
inline constexpr char16_t kCarriageReturn = 13;

// Exactly `width` characters: the text cut on the right, or padded on the right with the
// first character of fill (also for numbers; format first for leading zeros). A negative
// width, or an empty fill for a short text, is reported as an invalid procedure call and
// the result is empty.
QString FixedLength(QString& text, qint16 width, const QString& fill);

// Decodes a signed amount whose last character carries the last digit and the sign
// ("0000123}" is -12.30). The caller's text is rewritten to plain digits.
double OverPunch(QString& text);

// What an over-punched last character stands for: its digit and its sign (1 or -1); sign 0
// for a character that carries no sign, a plain digit among them.
struct PunchedDigit {
    char16_t digit = 0;
    int sign = 0;
};
PunchedDigit PunchedDigitOf(char16_t last);

// Encodes whole hundredths as at least eight characters, the last one over-punched
// (1234 gives "0000123D", -1234 "0000123M").
QString OverPunchReturn(double& amount);

// The value of the identified field `code` in the scan text: the text after separator +
// code up to the next separator (less one character for a group or segment separator
// standing in the value), a byte 225, a carriage return or the end of the text. An empty
// separator becomes byte 28 and an empty scan text becomes the fallback, in the caller's
// variables. A code that is not there gives no value at all, unlike an empty field.
std::optional<QString> GetField(const QString& code, const QString& fallbackScan,
                                QString& separator, QString& scan);

// The value itself unless it is null; a null gives the default, or the empty text when
// no default was given.
QVariant ScreenForNull(const QVariant& value,
                       const std::optional<QVariant>& defaultValue = std::nullopt);

// The telephone mask form "(555) 555-0199"; the empty text for an incomplete mask.
QString PhoneString(QString& text);

// The zip code as "73072-5555", or as ten characters with NUL padding ("73070" and five
// NUL for "7307A"), which the patient and prescriber records store as they get it.
QString ZipString(QString& text);

}  // namespace tvrx::mdlMain
