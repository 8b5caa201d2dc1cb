#pragma once

#include "session/text/ZeroDate.h"

#include <QDateTime>
#include <QString>
#include <QVariant>

#include <optional>

// The number, date and text conversions every part of the library uses. They behave as
// the host platform of the original system did, because claim amounts, dates in
// statements and the values read from columns depend on their exact rules. The table in
// docs/CONVERSIONS.md lists inputs and results; the tests are written from it.
//
// Strict conversions (the "To" functions) raise a Failure: overflow 6 for a value out of
// range, type mismatch 13 for a text that is not a number, invalid use of Null 94 for a
// null. Everything else never fails, except Val on a number no double can hold.
namespace tvrx::conv {

// ---- Lenient reading -------------------------------------------------------------

// The numeric value of a text: its leading number, 0 when it has none. Blanks, tabs and
// line feeds are skipped wherever they stand; then an optional sign, digits, at most one
// decimal point, an optional exponent (E or D); "&H" and "&O" read hexadecimal and octal;
// reading stops at the first other character. It never reports anything for a text
// without a number; it raises overflow 6 only for a number beyond a double's range
// ("1E400") or a hexadecimal or octal literal wider than 32 bits.
double Val(const QString& text);

// ---- Strict conversions ------------------------------------------------------------

// A value is a QVariant: an invalid or null QVariant is the database's null.
qint16 ToInteger(const QVariant& value);  // 16-bit, fractions round half to even
qint32 ToLong(const QVariant& value);     // 32-bit, fractions round half to even
double ToDouble(const QVariant& value);
double ToCurrency(const QVariant& value);  // rounded to four places, half to even
QDateTime ToDate(const QVariant& value);   // local time, to the second
bool ToBoolean(const QVariant& value);
// Whether a text is one number that takes the whole text but for blanks at either end,
// as the strict conversions read it ("True" and "False" are words, not numbers).
bool IsNumeric(const QString& text);

// Strict 16-bit and 32-bit narrowing of a double, as an assignment to such a member does.
qint16 IntegerFromDouble(double value);
qint32 LongFromDouble(double value);

// ---- Rounding ----------------------------------------------------------------------

// Whole number of a double, a tie going to the even neighbour (never fails; the caller
// narrows with the strict conversions above if it needs a 16- or 32-bit value).
double RoundHalfEven(double value);
// Whole hundredths and thousandths: multiply first, then round half to even.
double WholeHundredths(double amount);
double WholeThousandths(double amount);
// Currency values keep four decimal places, half to even.
double RoundCurrency(double value);

// ---- Number to text ----------------------------------------------------------------

// The platform's default text of a double: up to 15 significant digits, no exponent for
// ordinary magnitudes, "0.5" with its leading zero, "-3" without a decimal point.
QString NumberText(double value);
// The same text with a leading blank for a non-negative number (" 12", "-12", " .5").
QString NumberTextSigned(double value);
// Plain decimal text for statements and logs: NumberText with "." as separator.
QString PlainNumber(double value);
// NumberTextSigned with trailing blanks removed.
QString NumberTextRTrimmed(double value);

// Formats with a picture: "0", "00", ... (at least n digits, a tie away from zero, never
// cut; a minus sign stands in front and does not count among the digits), the money
// pictures "$ #.00", "$ 0.00", "##0.00 %", "#######", and "0.00"-style pictures. The
// value is rounded on its 15-digit text, so it formats as its NumberText would.
QString Format(double value, const QString& picture);
// What a picture of zeros shows of a value, without making the text: its sign and the
// whole number of its 15-digit text, a tie away from zero (-0.4 shows "-0"). Nothing for a
// value whose whole number would reach 1e15, where the picture shows more digits.
struct PictureWhole {
    bool negative = false;
    qint64 whole = 0;
};
std::optional<PictureWhole> PictureWholeOf(double value);
// The locale's currency form ("$1,234.50", "($1,234.50)" for negatives).
QString FormatCurrency(double value);

// ---- Dates -------------------------------------------------------------------------

// Formats with a date picture: "YYYYMMDD", "MM/DD/YYYY", "MM/DD/YYYY hh:mm",
// "MM/DD/YYYY hh:mm:ss", "MM/DD/YY", "MM-DD-YY", "MMDDHHMM", "YYYY-MM-DD".
QString FormatDate(const QDateTime& value, const QString& picture);
// The system's default text of a date-time ("3/14/2026 9:26:53 AM"; the date alone at
// midnight; the time alone on the zero date 12/30/1899).
QString DateTimeText(const QDateTime& value);
// A date of coverage as a person types it: after trimming blanks, "M/D/YY" or "M/D/YYYY"
// (one or two digits for month and day) or "YYYY-MM-DD", naming a day of the calendar. A
// two-digit year from 00 to 29 is 20yy, from 30 to 99 19yy. Nothing for any other text,
// an empty one among them (a cancelled box answers with the empty text).
std::optional<QDate> CoverageDate(const QString& text);
// ---- Words the system uses ---------------------------------------------------------

// "Trimmed": blanks (character 32) removed at both ends, nothing else.
QString Trim(const QString& text);
QString LTrim(const QString& text);
QString RTrim(const QString& text);

}  // namespace tvrx::conv
