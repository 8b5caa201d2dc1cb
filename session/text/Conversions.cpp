#include "session/text/Conversions.h"

#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"

#include <QRegularExpression>
#include <QVarLengthArray>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace tvrx::conv {

namespace {

bool isDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

char16_t upper(char16_t c) {
    return c >= u'a' && c <= u'z' ? c - (u'a' - u'A') : c;
}

// Value of a digit in any radix up to 36; 99 for a character that is no digit.
int digitValue(char16_t c) {
    if (isDigit(c)) return c - u'0';
    const char16_t letter = upper(c);
    if (letter >= u'A' && letter <= u'Z') return letter - u'A' + 10;
    return 99;
}

// The numeric value of a text skips these wherever they stand; a carriage return does
// not belong to them and ends the number.
bool isSkippedInValue(char16_t c) {
    return c == u' ' || c == u'\t' || c == u'\n';
}

qsizetype leadingBlanks(QStringView text) {
    qsizetype count = 0;
    while (count < text.size() && text[count] == u' ') ++count;
    return count;
}

qsizetype trailingBlanks(QStringView text) {
    qsizetype count = 0;
    while (count < text.size() && text[text.size() - 1 - count] == u' ') ++count;
    return count;
}

QStringView trimBlanks(QStringView text) {
    const QStringView right = text.sliced(leadingBlanks(text));
    return right.first(right.size() - trailingBlanks(right));
}

struct RadixPrefix {
    char16_t letter;
    int radix;
};

constexpr std::array kRadixPrefixes{RadixPrefix{u'H', 16}, RadixPrefix{u'O', 8}};

// A hexadecimal or octal literal is a 16-bit integer when its value fits 16 bits
// ("&HFFFF" is -1), a 32-bit one when it fits 32 bits ("&HFFFFFFFF" is -1 too), and
// overflows beyond.
double signedRadixValue(quint64 value) {
    if (value <= 0xFFFFu) return static_cast<qint16>(static_cast<quint16>(value));
    if (value <= 0xFFFFFFFFu) return static_cast<qint32>(static_cast<quint32>(value));
    fail(err::Overflow);
}

// Reads the number at the start of a text. The lenient form (the numeric value of a
// text) skips blanks, tabs and line feeds anywhere; the strict form reads the text as
// it stands and tells whether the number took all of it.
class NumberReader {
public:
    NumberReader(QStringView text, bool lenient) : text_(text), lenient_(lenient) {}

    void scan() {
        if (peek() == u'&') {
            scanRadix();
            return;
        }
        scanMantissa();
        if (found_) scanExponent();
    }

    bool foundWholeText() const { return found_ && end_ == text_.size(); }

    // The value scanned, 0 when no number was found; overflow 6 beyond a double's range.
    double value() const {
        if (!found_) return 0;
        if (radix_ != 0) {
            if (radixTooWide_) fail(err::Overflow);
            return signedRadixValue(radixValue_);
        }
        double result = 0;
        const auto [ptr, ec] =
            std::from_chars(chars_.data(), chars_.data() + chars_.size(), result);
        if (ec == std::errc::result_out_of_range) {
            if (magnitude_ + exponent_ > 0) fail(err::Overflow);
            return 0;
        }
        return result + 0.0;  // "-0" reads as 0
    }

private:
    char16_t peek() {
        if (lenient_) {
            while (pos_ < text_.size() && isSkippedInValue(text_[pos_].unicode())) ++pos_;
        }
        return pos_ < text_.size() ? text_[pos_].unicode() : u'\0';
    }

    void take() { ++pos_; }

    void takeAsPartOfNumber() {
        ++pos_;
        end_ = pos_;
        found_ = true;
    }

    void scanRadix() {
        take();
        const char16_t letter = upper(peek());
        const auto prefix = std::ranges::find(kRadixPrefixes, letter, &RadixPrefix::letter);
        if (prefix == kRadixPrefixes.end()) return;
        take();
        radix_ = prefix->radix;
        for (int digit = digitValue(peek()); digit < radix_; digit = digitValue(peek())) {
            if (!radixTooWide_) radixValue_ = radixValue_ * radix_ + digit;
            radixTooWide_ = radixTooWide_ || radixValue_ > 0xFFFFFFFFu;
            takeAsPartOfNumber();
        }
    }

    void scanMantissa() {
        const char16_t sign = peek();
        if (sign == u'-' || sign == u'+') {
            if (sign == u'-') chars_.append('-');
            take();
        }
        bool point = false;
        bool significant = false;
        for (char16_t c = peek();; c = peek()) {
            if (isDigit(c)) {
                chars_.append(static_cast<char>(c));
                countMagnitude(c, point, significant);
                takeAsPartOfNumber();
            } else if (c == u'.' && !point) {
                chars_.append('.');
                point = true;
                take();
                if (found_) end_ = pos_;
            } else {
                return;
            }
        }
    }

    // Tracks the decimal position of the first significant digit, which tells an
    // out-of-range exponent's overflow from its underflow.
    void countMagnitude(char16_t digit, bool point, bool& significant) {
        significant = significant || digit != u'0';
        if (!point && significant) {
            ++magnitude_;
        } else if (point && !significant) {
            --magnitude_;
        }
    }

    void scanExponent() {
        const char16_t letter = upper(peek());
        if (letter != u'E' && letter != u'D') return;
        take();
        const qsizetype mantissaSize = chars_.size();
        chars_.append('e');
        const char16_t sign = peek();
        if (sign == u'-' || sign == u'+') {
            chars_.append(static_cast<char>(sign));
            take();
        }
        int exponent = 0;
        bool digits = false;
        for (char16_t c = peek(); isDigit(c); c = peek()) {
            chars_.append(static_cast<char>(c));
            exponent = std::min(exponent * 10 + (c - u'0'), 100000);
            digits = true;
            takeAsPartOfNumber();
        }
        if (!digits) {
            chars_.resize(mantissaSize);
            return;
        }
        exponent_ = sign == u'-' ? -exponent : exponent;
    }

    QStringView text_;
    bool lenient_;
    qsizetype pos_ = 0;
    qsizetype end_ = 0;
    bool found_ = false;
    int radix_ = 0;
    quint64 radixValue_ = 0;
    bool radixTooWide_ = false;
    QVarLengthArray<char, 64> chars_;
    int magnitude_ = 0;
    int exponent_ = 0;
};

// A double as at most 15 significant decimal digits: value = 0.d1d2... * 10^(exponent+1),
// that is, `exponent` is the power of ten of the first digit. No trailing zeros; no
// digits at all for zero.
struct DecimalDigits {
    std::array<char, 17> digits{};
    int count = 0;
    int exponent = 0;
    bool negative = false;

    char at(int index) const { return index >= 0 && index < count ? digits[index] : '0'; }
    int integerDigits() const { return count > 0 && exponent >= 0 ? exponent + 1 : 0; }
    int fractionDigits() const { return std::max(0, count - exponent - 1); }

    void dropTrailingZeros() {
        while (count > 0 && digits[count - 1] == '0') --count;
    }
};

constexpr int kSignificantDigits = 15;

DecimalDigits significantDigits(double value) {
    DecimalDigits d;
    d.negative = value < 0;
    if (value == 0) return d;
    std::array<char, 32> text{};
    const auto written = std::to_chars(text.data(), text.data() + text.size(), std::fabs(value),
                                       std::chars_format::scientific, kSignificantDigits - 1);
    const char* p = text.data();
    for (; p != written.ptr && *p != 'e'; ++p) {
        if (*p != '.') d.digits[d.count++] = *p;
    }
    ++p;
    if (*p == '+') ++p;
    std::from_chars(p, written.ptr, d.exponent);
    d.dropTrailingZeros();
    return d;
}

// Keeps `places` decimals; a tie (and anything above it) goes away from zero.
DecimalDigits roundedAwayFromZero(DecimalDigits d, int places) {
    const int keep = d.exponent + 1 + places;
    if (keep >= d.count) return d;
    if (keep < 0) {
        d.count = 0;
        return d;
    }
    const bool up = d.digits[keep] >= '5';
    d.count = keep;
    if (up) {
        int i = keep - 1;
        while (i >= 0 && d.digits[i] == '9') --i;
        if (i < 0) {
            d.digits[0] = '1';
            d.count = 1;
            ++d.exponent;
        } else {
            ++d.digits[i];
            d.count = i + 1;
        }
    }
    d.dropTrailingZeros();
    return d;
}

// The default text switches to the exponent form outside these powers of ten.
constexpr int kSmallestFixedExponent = -4;
constexpr int kLargestFixedExponent = kSignificantDigits - 1;

char* writeFixed(char* out, const DecimalDigits& d, bool leadingZero) {
    if (d.exponent < 0) {
        if (leadingZero) *out++ = '0';
        *out++ = '.';
        out = std::fill_n(out, -d.exponent - 1, '0');
        return std::copy_n(d.digits.data(), d.count, out);
    }
    for (int i = 0; i <= d.exponent; ++i) *out++ = d.at(i);
    if (d.count > d.exponent + 1) {
        *out++ = '.';
        out = std::copy(d.digits.data() + d.exponent + 1, d.digits.data() + d.count, out);
    }
    return out;
}

char* writeScientific(char* out, const DecimalDigits& d) {
    *out++ = d.digits[0];
    if (d.count > 1) {
        *out++ = '.';
        out = std::copy(d.digits.data() + 1, d.digits.data() + d.count, out);
    }
    *out++ = 'E';
    *out++ = d.exponent < 0 ? '-' : '+';
    const int magnitude = std::abs(d.exponent);
    if (magnitude < 10) *out++ = '0';
    return std::to_chars(out, out + 4, magnitude).ptr;
}

// Texts of the values a double can hold but the system never computes.
QString nonFiniteText(double value) {
    if (std::isnan(value)) return QStringLiteral("-1.#IND");
    return value < 0 ? QStringLiteral("-1.#INF") : QStringLiteral("1.#INF");
}

// The default text of a double; `signedStyle` gives the sign position a blank for a
// non-negative number and drops the zero before the decimal point.
QString defaultText(double value, bool signedStyle) {
    if (!std::isfinite(value)) return nonFiniteText(value);
    const DecimalDigits d = significantDigits(value);
    std::array<char, 48> text{};
    char* out = text.data();
    if (d.negative) {
        *out++ = '-';
    } else if (signedStyle) {
        *out++ = ' ';
    }
    if (d.count == 0) {
        *out++ = '0';
    } else if (d.exponent < kSmallestFixedExponent || d.exponent > kLargestFixedExponent) {
        out = writeScientific(out, d);
    } else {
        out = writeFixed(out, d, !signedStyle);
    }
    return QString::fromLatin1(text.data(), out - text.data());
}

bool isPlaceholder(QChar c) {
    return c == u'0' || c == u'#';
}

// Where a number picture keeps its digits: placeholders before and after the first
// decimal point, and whether it shows a percentage.
struct PictureLayout {
    qsizetype point = 0;
    int integerPlaces = 0;
    int fractionPlaces = 0;
    bool percent = false;
};

PictureLayout layoutOf(QStringView picture) {
    PictureLayout layout;
    layout.point = picture.indexOf(u'.');
    if (layout.point < 0) layout.point = picture.size();
    for (qsizetype i = 0; i < picture.size(); ++i) {
        const QChar c = picture[i];
        if (isPlaceholder(c)) ++(i < layout.point ? layout.integerPlaces : layout.fractionPlaces);
        layout.percent = layout.percent || c == u'%';
    }
    return layout;
}

void appendIntegerPart(QString& out, QStringView picture, const PictureLayout& layout,
                       const DecimalDigits& d) {
    const int digits = d.integerDigits();
    int placeholder = 0;
    for (QChar c : picture.first(layout.point)) {
        if (!isPlaceholder(c)) {
            out += c;
            continue;
        }
        if (placeholder == 0) {
            for (int i = 0; i < digits - layout.integerPlaces; ++i) out += QLatin1Char(d.at(i));
        }
        const int fromRight = layout.integerPlaces - 1 - placeholder;
        if (fromRight < digits) {
            out += QLatin1Char(d.at(digits - 1 - fromRight));
        } else if (c == u'0') {
            out += u'0';
        }
        ++placeholder;
    }
    if (layout.integerPlaces == 0) {
        for (int i = 0; i < digits; ++i) out += QLatin1Char(d.at(i));
    }
}

void appendFractionPart(QString& out, QStringView picture, const PictureLayout& layout,
                        const DecimalDigits& d) {
    if (layout.point == picture.size()) return;
    out += u'.';
    const int shown = d.fractionDigits();
    int placeholder = 0;
    for (QChar c : picture.sliced(layout.point + 1)) {
        if (!isPlaceholder(c)) {
            out += c;
            continue;
        }
        if (c == u'0' || placeholder < shown) {
            out += QLatin1Char(d.at(d.exponent + 1 + placeholder));
        }
        ++placeholder;
    }
}

struct BooleanWord {
    QStringView word;
    double value;
};

constexpr std::array kBooleanWords{BooleanWord{u"True", -1}, BooleanWord{u"False", 0}};

// A text read by a strict conversion: "True" or "False", or one number that takes the
// whole text but for blanks at either end.
double strictValueOfText(QStringView text) {
    const QStringView trimmed = trimBlanks(text);
    for (const BooleanWord& boolean : kBooleanWords) {
        if (trimmed.compare(boolean.word, Qt::CaseInsensitive) == 0) return boolean.value;
    }
    NumberReader reader(trimmed, false);
    reader.scan();
    if (!reader.foundWholeText()) fail(err::TypeMismatch);
    return reader.value();
}

QDate zeroDay() {
    return QDate(1899, 12, 30);
}

constexpr int kSecondsPerDay = 86400;

// A date as a day serial: whole days since the zero date, the time of day as the
// fraction. Before the zero date the fraction still counts forward from midnight, so
// -1.25 is 12/29/1899 06:00.
double serialOf(const QDate& date, const QTime& time) {
    const qint64 days = zeroDay().daysTo(date);
    const double fraction = (time.msecsSinceStartOfDay() / 1000) / double(kSecondsPerDay);
    return days >= 0 ? days + fraction : days - fraction;
}

// Serials of 1/1/100 and of the day after 12/31/9999: the dates a date value can hold.
constexpr double kFirstDaySerial = -657434;
constexpr double kEndDaySerial = 2958466;

QDateTime dateOfSerial(double serial) {
    if (!(serial > kFirstDaySerial - 1 && serial < kEndDaySerial)) fail(err::Overflow);
    const double days = std::trunc(serial);
    QDate date = zeroDay().addDays(static_cast<qint64>(days));
    qint64 seconds = std::llround(std::fabs(serial - days) * kSecondsPerDay);
    if (seconds == kSecondsPerDay) {
        date = date.addDays(1);
        seconds = 0;
    }
    return QDateTime(date, QTime::fromMSecsSinceStartOfDay(static_cast<int>(seconds * 1000)));
}

QDateTime toTheSecond(const QDateTime& value) {
    if (!value.isValid()) fail(err::TypeMismatch);
    const QDateTime local = value.toLocalTime();
    const QTime time = local.time();
    return QDateTime(local.date(), QTime(time.hour(), time.minute(), time.second()));
}

struct DateField {
    int minDigits;
    int maxDigits;
    char16_t separator;
};

// The written forms of a date: its three numbers in order, and where year, month and
// day stand among them.
struct DateForm {
    std::array<DateField, 3> fields;
    std::size_t yearAt;
    std::size_t monthAt;
    std::size_t dayAt;
};

constexpr std::array kDateForms{
    DateForm{{DateField{1, 2, u'/'}, DateField{1, 2, u'/'}, DateField{4, 4, u'\0'}}, 2, 0, 1},
    DateForm{{DateField{4, 4, u'-'}, DateField{1, 2, u'-'}, DateField{1, 2, u'\0'}}, 0, 1, 2},
};

// Reads the date texts the strict conversion accepts: "M/D/YYYY" or "YYYY-MM-DD", each
// optionally followed by a time "h:mm[:ss]" (with AM or PM) after blanks or a "T", or a
// time alone, which falls on the zero date.
class DateTextReader {
public:
    explicit DateTextReader(QStringView text) : text_(text) {}

    std::optional<QDateTime> read() {
        QDate date = zeroDay();
        QTime time(0, 0);
        const bool hasDate = readDate(date);
        const bool timeFollows = !hasDate || (!atEnd() && (skipBlanks() > 0 || take(u'T')));
        if (timeFollows && !readTime(time)) return {};
        if (!atEnd() || !date.isValid() || !time.isValid()) return {};
        return QDateTime(date, time);
    }

private:
    bool atEnd() const { return pos_ == text_.size(); }

    bool take(char16_t c) {
        if (atEnd() || upper(text_[pos_].unicode()) != c) return false;
        ++pos_;
        return true;
    }

    bool takeWord(QStringView word) {
        if (!text_.sliced(pos_).startsWith(word, Qt::CaseInsensitive)) return false;
        pos_ += word.size();
        return true;
    }

    int skipBlanks() {
        int blanks = 0;
        for (; !atEnd() && text_[pos_] == u' '; ++pos_) ++blanks;
        return blanks;
    }

    // A number of minDigits to maxDigits digits, -1 when there are fewer.
    int number(int minDigits, int maxDigits) {
        int value = 0;
        int digits = 0;
        for (; digits < maxDigits && !atEnd() && isDigit(text_[pos_].unicode()); ++digits) {
            value = value * 10 + (text_[pos_++].unicode() - u'0');
        }
        return digits >= minDigits ? value : -1;
    }

    bool readDate(QDate& date) {
        const qsizetype start = pos_;
        for (const DateForm& form : kDateForms) {
            if (readDateForm(form, date)) return true;
            pos_ = start;
        }
        return false;
    }

    bool readDateForm(const DateForm& form, QDate& date) {
        std::array<int, 3> numbers{};
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            const DateField& field = form.fields[i];
            numbers[i] = number(field.minDigits, field.maxDigits);
            if (numbers[i] < 0) return false;
            if (field.separator != u'\0' && !take(field.separator)) return false;
        }
        date = QDate(numbers[form.yearAt], numbers[form.monthAt], numbers[form.dayAt]);
        return true;
    }

    bool readTime(QTime& time) {
        const int hour = number(1, 2);
        if (hour < 0 || !take(u':')) return false;
        const int minute = number(2, 2);
        const int second = take(u':') ? number(2, 2) : 0;
        if (minute < 0 || second < 0) return false;
        time = QTime(hour, minute, second);
        const qsizetype beforeBlanks = pos_;
        skipBlanks();
        const bool am = takeWord(u"AM");
        const bool pm = !am && takeWord(u"PM");
        if (!am && !pm) {
            pos_ = beforeBlanks;
        } else if (hour < 1 || hour > 12) {
            time = QTime();
        } else {
            time = QTime(hour % 12 + (pm ? 12 : 0), minute, second);
        }
        return true;
    }

    QStringView text_;
    qsizetype pos_ = 0;
};

QDateTime dateOfText(QStringView text) {
    const std::optional<QDateTime> date = DateTextReader(trimBlanks(text)).read();
    if (!date) fail(err::TypeMismatch);
    return *date;
}

constexpr std::array kNumberTypes{
    QMetaType::Int,    QMetaType::UInt,  QMetaType::LongLong, QMetaType::ULongLong,
    QMetaType::Double, QMetaType::Float, QMetaType::Short,    QMetaType::UShort,
    QMetaType::Long,   QMetaType::ULong, QMetaType::Char,     QMetaType::SChar,
    QMetaType::UChar,
};

void rejectNull(const QVariant& value) {
    if (!value.isValid() || value.isNull()) fail(err::InvalidUseOfNull);
}

bool holdsNumber(const QVariant& value) {
    return std::ranges::find(kNumberTypes, value.typeId()) != kNumberTypes.end();
}

// The number a strict conversion starts from: a number as it is, a boolean as -1 or 0,
// a date as its day serial, a text by the strict rule.
double strictNumber(const QVariant& value) {
    rejectNull(value);
    if (holdsNumber(value)) return value.toDouble();
    switch (value.typeId()) {
        case QMetaType::Bool:
            return value.toBool() ? -1 : 0;
        case QMetaType::QString:
            return strictValueOfText(value.toString());
        case QMetaType::QByteArray:
            return strictValueOfText(QString::fromLatin1(value.toByteArray()));
        case QMetaType::QDate:
            return serialOf(value.toDate(), QTime(0, 0));
        case QMetaType::QTime:
            return serialOf(zeroDay(), value.toTime());
        case QMetaType::QDateTime: {
            const QDateTime date = toTheSecond(value.toDateTime());
            return serialOf(date.date(), date.time());
        }
        default:
            fail(err::TypeMismatch);
    }
}

template <class Whole>
Whole narrowed(double value) {
    const double whole = RoundHalfEven(value);
    if (!(whole >= std::numeric_limits<Whole>::min() &&
          whole <= std::numeric_limits<Whole>::max())) {
        fail(err::Overflow);
    }
    return static_cast<Whole>(whole);
}

constexpr double kCurrencyScale = 10000;

void appendGroupedInteger(QString& out, const DecimalDigits& d) {
    const int digits = d.integerDigits();
    if (digits == 0) out += u'0';
    for (int i = 0; i < digits; ++i) {
        if (i > 0 && (digits - i) % 3 == 0) out += u',';
        out += QLatin1Char(d.at(i));
    }
}

enum class DatePart { Year, Month, Day, Hour, Minute, Second };

// The placeholders of a date picture, longest first; case does not matter. Other
// characters are copied.
struct DateToken {
    QStringView text;
    DatePart part;
    int width;
    int modulus;
};

constexpr std::array kDateTokens{
    DateToken{u"yyyy", DatePart::Year, 4, 0}, DateToken{u"yy", DatePart::Year, 2, 100},
    DateToken{u"mm", DatePart::Month, 2, 0},  DateToken{u"m", DatePart::Month, 1, 0},
    DateToken{u"dd", DatePart::Day, 2, 0},    DateToken{u"d", DatePart::Day, 1, 0},
    DateToken{u"hh", DatePart::Hour, 2, 0},   DateToken{u"h", DatePart::Hour, 1, 0},
    DateToken{u"nn", DatePart::Minute, 2, 0}, DateToken{u"n", DatePart::Minute, 1, 0},
    DateToken{u"ss", DatePart::Second, 2, 0}, DateToken{u"s", DatePart::Second, 1, 0},
};

const DateToken* dateTokenAt(QStringView picture) {
    for (const DateToken& token : kDateTokens) {
        if (picture.startsWith(token.text, Qt::CaseInsensitive)) return &token;
    }
    return nullptr;
}

int datePartValue(const QDateTime& value, DatePart part) {
    const QDate date = value.date();
    const QTime time = value.time();
    const std::array values{date.year(), date.month(),  date.day(),
                            time.hour(), time.minute(), time.second()};
    return values[static_cast<std::size_t>(part)];
}

}  // namespace

double Val(const QString& text) {
    NumberReader reader(text, true);
    reader.scan();
    return reader.value();
}

double RoundHalfEven(double value) {
    return std::nearbyint(value) + 0.0;
}

double WholeHundredths(double amount) {
    return RoundHalfEven(amount * 100);
}

double WholeThousandths(double amount) {
    return RoundHalfEven(amount * 1000);
}

double RoundCurrency(double value) {
    return RoundHalfEven(value * kCurrencyScale) / kCurrencyScale;
}

QString NumberText(double value) {
    return defaultText(value, false);
}

QString NumberTextSigned(double value) {
    return defaultText(value, true);
}

QString PlainNumber(double value) {
    return NumberText(value);
}

QString NumberTextRTrimmed(double value) {
    return RTrim(NumberTextSigned(value));
}

QString Format(double value, const QString& picture) {
    if (picture.isEmpty() || !std::isfinite(value)) return NumberText(value);
    const PictureLayout layout = layoutOf(picture);
    DecimalDigits d = significantDigits(value);
    if (layout.percent && d.count > 0) d.exponent += 2;
    d = roundedAwayFromZero(d, layout.fractionPlaces);
    QString out;
    out.reserve(picture.size() + d.integerDigits() + 1);
    if (d.negative) out += u'-';
    appendIntegerPart(out, picture, layout, d);
    appendFractionPart(out, picture, layout, d);
    return out;
}

std::optional<PictureWhole> PictureWholeOf(double value) {
    constexpr int kMostWholeDigits = 15;
    constexpr double kExactWholes = 1e15;
    if (!std::isfinite(value)) return std::nullopt;
    const double magnitude = std::fabs(value);
    // A whole number of up to 15 digits is its own 15-digit text.
    if (magnitude < kExactWholes && value == std::trunc(value)) {
        return PictureWhole{value < 0, static_cast<qint64>(magnitude)};
    }
    // Below a billion the 15-digit text keeps six decimals or more, so it moves the value
    // by half a millionth at most: only a fraction that close to a half can round
    // otherwise than the value itself does.
    constexpr double kFewWholeDigits = 1e9;
    constexpr double kNearHalf = 1e-6;
    const double fraction = magnitude - std::floor(magnitude);
    if (magnitude < kFewWholeDigits && std::fabs(fraction - 0.5) > kNearHalf) {
        return PictureWhole{value < 0, static_cast<qint64>(std::floor(magnitude + 0.5))};
    }
    const DecimalDigits d = roundedAwayFromZero(significantDigits(value), 0);
    if (d.integerDigits() > kMostWholeDigits) return std::nullopt;
    PictureWhole shown{d.negative, 0};
    for (int i = 0; i < d.integerDigits(); ++i) shown.whole = shown.whole * 10 + (d.at(i) - '0');
    return shown;
}

QString Trim(const QString& text) {
    const QStringView trimmed = trimBlanks(text);
    return trimmed.size() == text.size() ? text : trimmed.toString();
}

QString LTrim(const QString& text) {
    const qsizetype blanks = leadingBlanks(text);
    return blanks == 0 ? text : text.sliced(blanks);
}

QString RTrim(const QString& text) {
    const qsizetype blanks = trailingBlanks(text);
    return blanks == 0 ? text : text.first(text.size() - blanks);
}

qint16 IntegerFromDouble(double value) {
    return narrowed<qint16>(value);
}

qint32 LongFromDouble(double value) {
    return narrowed<qint32>(value);
}

qint16 ToInteger(const QVariant& value) {
    return IntegerFromDouble(strictNumber(value));
}

qint32 ToLong(const QVariant& value) {
    return LongFromDouble(strictNumber(value));
}

double ToDouble(const QVariant& value) {
    return strictNumber(value);
}

// The currency type holds a 64-bit count of ten-thousandths.
double ToCurrency(const QVariant& value) {
    const double units = RoundHalfEven(strictNumber(value) * kCurrencyScale);
    if (!(units >= -0x1p63 && units < 0x1p63)) fail(err::Overflow);
    return units / kCurrencyScale;
}

bool ToBoolean(const QVariant& value) {
    return strictNumber(value) != 0;
}

bool IsNumeric(const QString& text) {
    NumberReader reader(trimBlanks(text), false);
    reader.scan();
    return reader.foundWholeText();
}

QDateTime ToDate(const QVariant& value) {
    rejectNull(value);
    switch (value.typeId()) {
        case QMetaType::QDateTime:
            return toTheSecond(value.toDateTime());
        case QMetaType::QDate:
            return toTheSecond(value.toDate().startOfDay());
        case QMetaType::QString:
            return dateOfText(value.toString());
        case QMetaType::QByteArray:
            return dateOfText(QString::fromLatin1(value.toByteArray()));
        default:
            return dateOfSerial(strictNumber(value));
    }
}

QString FormatCurrency(double value) {
    if (!std::isfinite(value)) return NumberText(value);
    const DecimalDigits d = roundedAwayFromZero(significantDigits(value), 2);
    QString out;
    out += d.negative ? u"($" : u"$";
    appendGroupedInteger(out, d);
    out += u'.';
    out += QLatin1Char(d.at(d.exponent + 1));
    out += QLatin1Char(d.at(d.exponent + 2));
    if (d.negative) out += u')';
    return out;
}

QString FormatDate(const QDateTime& value, const QString& picture) {
    if (!value.isValid()) return {};
    QString out;
    bool afterHour = false;
    for (qsizetype i = 0; i < picture.size();) {
        const DateToken* token = dateTokenAt(QStringView(picture).sliced(i));
        if (token == nullptr) {
            out += picture[i++];
            continue;
        }
        // A month placeholder after an hour is the minutes, as in "hh:mm" and "MMDDHHMM".
        const DatePart part =
            token->part == DatePart::Month && afterHour ? DatePart::Minute : token->part;
        afterHour = part == DatePart::Hour;
        int number = datePartValue(value, part);
        if (token->modulus != 0) number %= token->modulus;
        out += QStringLiteral("%1").arg(number, token->width, 10, QLatin1Char('0'));
        i += token->text.size();
    }
    return out;
}

QString DateTimeText(const QDateTime& value) {
    if (!value.isValid()) return {};
    const QDate date = value.date();
    const QTime time = value.time();
    const QString dateText = QStringLiteral("%1/%2/%3")
                                 .arg(date.month())
                                 .arg(date.day())
                                 .arg(date.year(), 4, 10, QLatin1Char('0'));
    const QString timeText = QStringLiteral("%1:%2:%3 %4")
                                 .arg(time.hour() % 12 == 0 ? 12 : time.hour() % 12)
                                 .arg(time.minute(), 2, 10, QLatin1Char('0'))
                                 .arg(time.second(), 2, 10, QLatin1Char('0'))
                                 .arg(time.hour() < 12 ? u"AM" : u"PM");
    if (date == zeroDay()) return timeText;
    if (time.hour() == 0 && time.minute() == 0 && time.second() == 0) return dateText;
    return dateText + u' ' + timeText;
}

QDateTime ZeroDate() {
    return QDateTime(zeroDay(), QTime(0, 0));
}

namespace {

// Two-digit years are read in a window of a hundred years that ends in 2029.
constexpr int kCenturyTurn = 30;

int fullYear(const QString& digits) {
    const int year = digits.toInt();
    if (digits.size() != 2) return year;
    return year < kCenturyTurn ? 2000 + year : 1900 + year;
}

}  // namespace

std::optional<QDate> CoverageDate(const QString& text) {
    // Anchored at both ends: a line feed after the year is no part of a date.
    static const QRegularExpression kSlashed(QRegularExpression::anchoredPattern(
        QStringLiteral("([0-9]{1,2})/([0-9]{1,2})/([0-9]{2}|[0-9]{4})")));
    static const QRegularExpression kDashed(
        QRegularExpression::anchoredPattern(QStringLiteral("([0-9]{4})-([0-9]{2})-([0-9]{2})")));
    const QString trimmed = Trim(text);
    QDate date;
    if (const QRegularExpressionMatch slashed = kSlashed.match(trimmed); slashed.hasMatch()) {
        date = QDate(fullYear(slashed.captured(3)), slashed.captured(1).toInt(),
                     slashed.captured(2).toInt());
    } else if (const QRegularExpressionMatch dashed = kDashed.match(trimmed); dashed.hasMatch()) {
        date = QDate(dashed.captured(1).toInt(), dashed.captured(2).toInt(),
                     dashed.captured(3).toInt());
    }
    if (!date.isValid()) return std::nullopt;
    return date;
}

}  // namespace tvrx::conv
