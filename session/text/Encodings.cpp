#include "session/text/Encodings.h"

#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Frame.h"
#include "session/text/Conversions.h"

#include <QStringView>

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace tvrx::mdlMain {
namespace {

// The last character of a signed amount carries its last digit and its sign.
struct OverPunchRow {
    char16_t digit;
    char16_t positive;
    char16_t negative;
};

constexpr std::array<OverPunchRow, 10> kOverPunchTable{{
    {u'0', u'{', u'}'},
    {u'1', u'A', u'J'},
    {u'2', u'B', u'K'},
    {u'3', u'C', u'L'},
    {u'4', u'D', u'M'},
    {u'5', u'E', u'N'},
    {u'6', u'F', u'O'},
    {u'7', u'G', u'P'},
    {u'8', u'H', u'Q'},
    {u'9', u'I', u'R'},
}};

// The table turned around once, so that decoding a response amount is one array look-up.
constexpr std::array<PunchedDigit, 128> makePunchedDigits() {
    std::array<PunchedDigit, 128> index{};
    for (const OverPunchRow& row : kOverPunchTable) {
        index[row.positive] = {row.digit, 1};
        index[row.negative] = {row.digit, -1};
    }
    return index;
}

constexpr std::array<PunchedDigit, 128> kPunchedDigits = makePunchedDigits();

const OverPunchRow* overPunchRowOf(QChar digit) {
    const auto row = std::find_if(kOverPunchTable.begin(), kOverPunchTable.end(),
                                  [digit](const OverPunchRow& r) { return r.digit == digit; });
    return row == kOverPunchTable.end() ? nullptr : &*row;
}

// The 16-bit whole numbers the field arithmetic runs in: past 32767 is an overflow.
qint16 toInteger16(qsizetype value) {
    if (value > std::numeric_limits<qint16>::max() || value < std::numeric_limits<qint16>::min()) {
        fail(err::Overflow);
    }
    return static_cast<qint16>(value);
}

qint16 add16(qint16 value, int offset) {
    return toInteger16(qsizetype{value} + offset);
}

// The leftmost `count` characters; a negative count is an invalid procedure call.
QString leftChars(const QString& text, qsizetype count) {
    if (count < 0) fail(err::InvalidProcedureCall);
    return text.left(count);
}

// `count` copies of the first character of fill; an empty fill is an invalid procedure call.
QString repeatChar(qsizetype count, const QString& fill) {
    if (count < 0 || fill.isEmpty()) fail(err::InvalidProcedureCall);
    return QString(count, fill.front());
}

// `length` characters from the 1-based position `start`, fewer at the end of the text.
QStringView midChars(QStringView text, qsizetype start, qsizetype length) {
    if (start < 1 || length < 0) fail(err::InvalidProcedureCall);
    if (start > text.size()) return {};
    return text.sliced(start - 1, std::min(length, text.size() - start + 1));
}

// 1-based position of needle (a text or a character) at or after the 1-based position
// `start`, 0 when it is not there.
template <class Needle>
qsizetype positionOf(QStringView text, Needle needle, qsizetype start) {
    if (start > text.size() + 1) return 0;
    return text.indexOf(needle, start - 1) + 1;
}

// 1-based position of the first separator that is directly followed by code, 0 when there
// is none. Responses use a one-character separator; for it one plain pass over the text
// beats a library search per separator, since fields are only a few characters apart.
qsizetype fieldPosition(QStringView scan, QStringView separator, QStringView code) {
    if (separator.size() != 1) {
        for (qsizetype at = scan.indexOf(separator); at >= 0;
             at = scan.indexOf(separator, at + 1)) {
            if (scan.sliced(at + separator.size()).startsWith(code)) return at + 1;
        }
        return 0;
    }
    const char16_t mark = separator.front().unicode();
    const char16_t* text = scan.utf16();
    const char16_t* wanted = code.utf16();
    for (qsizetype at = 0; at < scan.size() - code.size(); ++at) {
        if (text[at] != mark) continue;
        qsizetype matched = 0;
        while (matched < code.size() && text[at + 1 + matched] == wanted[matched]) ++matched;
        if (matched == code.size()) return at + 1;
    }
    return 0;
}

// 1-based position of the next separator at or after `start`, 0 when there is none.
qsizetype separatorPosition(QStringView scan, QStringView separator, qsizetype start) {
    return separator.size() == 1 ? positionOf(scan, separator.front(), start)
                                 : positionOf(scan, separator, start);
}

bool holdsGroupOrSegmentEnd(QStringView value) {
    return std::any_of(value.begin(), value.end(), [](QChar c) {
        return c == QChar(kGroupSeparator) || c == QChar(kSegmentSeparator);
    });
}

struct FieldBounds {
    qint16 pos = 0;
    qint16 len = 0;
};

// Sets field.len step by step, so that a report made on an overflow shows how far it got.
// Field codes count as two characters: the value starts at pos + 3.
void measureField(QStringView scan, QStringView separator, FieldBounds& field) {
    const qsizetype nextSeparator = separatorPosition(scan, separator, add16(field.pos, 1));
    if (nextSeparator > 0) {
        field.len = toInteger16(nextSeparator - add16(field.pos, 3));
        // A group or segment separator inside the value ends it; it is taken to be the
        // value's last character, so exactly one character is cut.
        const QStringView candidate = midChars(scan, add16(field.pos, 3), field.len);
        if (holdsGroupOrSegmentEnd(candidate)) {
            field.len = static_cast<qint16>(field.len - 1);
        }
        return;
    }
    for (const char16_t terminator : {kAlternativeTerminator, kCarriageReturn}) {
        const qsizetype end = positionOf(scan, QChar(terminator), add16(field.pos, 1));
        if (end > 0) {
            field.len = toInteger16(end - add16(field.pos, 3));
            return;
        }
    }
    field.len = toInteger16(scan.size() - add16(field.pos, 2));
}

const QString& fieldSeparatorText() {
    static const QString separator{QChar(kFieldSeparator)};
    return separator;
}

// A telephone text that already has the mask form is kept only when it is complete.
QString checkedPhoneMask(const QString& text) {
    constexpr qsizetype kMaskLength = 14;
    constexpr qsizetype kHyphenIndex = 9;
    if (text.size() != kMaskLength) return {};
    if (text.contains(u'_')) return {};  // an unfilled position of the input mask
    if (text.at(kHyphenIndex) != u'-' || text.indexOf(u'-') < kHyphenIndex) return {};
    return text;
}

// Builds the mask form from bare digits; the length tells which digits are which.
QString phoneMaskFromDigits(const QString& text) {
    const QString areaCode = u'(' + text.left(3) + QStringLiteral(") ");
    switch (text.size()) {
        case 13:
            return areaCode + text.mid(4, 8);
        case 12:
            return areaCode + text.mid(4, 3) + u'-' + text.right(4);
        case 11:
            if (text.startsWith(u'1')) {  // a long-distance prefix
                return u'(' + text.mid(1, 3) + QStringLiteral(") ") + text.mid(4, 3) + u'-' +
                       text.right(4);
            }
            return areaCode + text.mid(4, 3) + u'-' + text.right(4);
        case 10:
            return areaCode + text.mid(3, 3) + u'-' + text.right(4);
        default:
            return areaCode + text.right(8);
    }
}

// The digit positions of "(555) 555-0199", 1-based: anything else there becomes a blank.
constexpr std::array<std::pair<qsizetype, qsizetype>, 3> kPhoneDigitPositions{{
    {2, 4},
    {7, 9},
    {11, 14},
}};

void blankPhoneNonDigits(QString& phone) {
    for (const auto& [first, last] : kPhoneDigitPositions) {
        for (qsizetype position = first; position <= std::min(last, phone.size()); ++position) {
            QChar& character = phone[position - 1];
            if (character < u'0' || character > u'9') character = u' ';
        }
    }
}

bool hasNumericValue(QChar character) {
    return conv::Val(QString(character)) != 0;
}

// Ten characters, NUL where the text gave nothing; position 6 is always the hyphen.
QString paddedZip(const QString& text) {
    constexpr qsizetype kBufferLength = 10;
    constexpr qsizetype kHyphenPosition = 6;
    QString buffer(kBufferLength, QChar(0));
    const qsizetype last = std::min(text.size(), kBufferLength);
    for (qsizetype i = 1; i <= last; ++i) {
        const QChar character = text.at(i - 1);
        if (i != kHyphenPosition) {
            buffer[i - 1] = hasNumericValue(character) ? character : QChar(u'0');
            continue;
        }
        buffer[i - 1] = u'-';
        // A digit in the hyphen's place is dropped, and the character after it is taken
        // unchecked.
        if (hasNumericValue(character)) {
            ++i;
            if (i <= text.size()) buffer[i - 1] = text.at(i - 1);
        }
    }
    return buffer;
}

}  // namespace

// Labels are QStringLiteral so that a frame costs no allocation: GetField and OverPunch run
// for every field of every response.

QString FixedLength(QString& text, qint16 width, const QString& fill) {
    QString result;
    Frame frame(QStringLiteral("mdlMain:FixedLength"));
    frame([&] {
        if (text.size() < width) {
            result = text + repeatChar(width - text.size(), fill);
        } else {
            result = leftChars(text, width);
        }
    });
    return result;
}

PunchedDigit PunchedDigitOf(char16_t last) {
    return last < kPunchedDigits.size() ? kPunchedDigits[last] : PunchedDigit{};
}

double OverPunch(QString& text) {
    double result = 0;
    int sign = 1;
    Frame frame(QStringLiteral("mdlMain:OverPunch"));
    frame([&] {
        if (text.isEmpty()) return;
        const PunchedDigit last = PunchedDigitOf(text.back().unicode());
        if (last.sign == 0) return;
        text.back() = QChar(last.digit);
        sign = last.sign;
    });
    frame([&] { result = conv::Val(text) / 100 * sign; });
    return result;
}

QString OverPunchReturn(double& amount) {
    QString result;
    QString digits;
    Frame frame(QStringLiteral("mdlMain:OverPunchReturn"));
    frame([&] {
        // Through the number's shortest text, so that the amount is read at the precision
        // it is shown with; every minus sign goes, also one in an exponent.
        QString text = conv::Trim(conv::NumberText(amount));
        text.remove(u'-');
        digits = conv::Format(conv::Val(text), QStringLiteral("00000000"));
    });
    frame([&] {
        if (digits.isEmpty()) return;
        const OverPunchRow* row = overPunchRowOf(digits.back());
        if (row == nullptr) return;
        digits.back() = QChar(amount < 0 ? row->negative : row->positive);
        result = digits;
    });
    return result;
}

std::optional<QString> GetField(const QString& code, const QString& fallbackScan,
                                QString& separator, QString& scan) {
    std::optional<QString> result;
    FieldBounds field;
    Frame frame(QStringLiteral("mdlMain:GetField"));
    frame.withDetails([&scan, &field] {
        return QStringLiteral("Scan: ") + scan + QStringLiteral(", Field Pos: ") +
               QString::number(field.pos) + QStringLiteral(", Field Len: ") +
               QString::number(field.len);
    });
    frame([&] {
        if (separator.isEmpty()) separator = fieldSeparatorText();
        if (scan.isEmpty()) scan = fallbackScan;
    });
    frame([&] { field.pos = toInteger16(fieldPosition(scan, separator, code)); });
    if (field.pos == 0) return result;
    frame([&] { measureField(scan, separator, field); });
    frame([&] { result = midChars(scan, add16(field.pos, 3), field.len).toString(); });
    return result;
}

QVariant ScreenForNull(const QVariant& value, const std::optional<QVariant>& defaultValue) {
    QVariant result;
    Frame frame(QStringLiteral("mdlMain:ScreenForNull"));
    frame([&] {
        if (!value.isNull()) {
            result = value;
        } else if (defaultValue) {
            result = *defaultValue;
        } else {
            result = QStringLiteral("");
        }
    });
    return result;
}

QString PhoneString(QString& text) {
    QString result;
    Frame frame(QStringLiteral("mdlMain:PhoneString"));
    if (text.isEmpty()) return text;
    frame([&] {
        result = text.startsWith(u'(') ? checkedPhoneMask(text) : phoneMaskFromDigits(text);
    });
    frame([&] { blankPhoneNonDigits(result); });
    return result;
}

QString ZipString(QString& text) {
    QString result;
    bool nineDigits = false;
    Frame frame(QStringLiteral("mdlMain:ZipString"));
    frame([&] {
        const QString trimmed = conv::Trim(text);
        if (trimmed.size() == 9 && !trimmed.contains(u'-')) {
            result = trimmed.left(5) + u'-' + trimmed.right(4);
            nineDigits = true;
        }
    });
    if (nineDigits) return result;
    if (text.isEmpty()) return text;
    frame([&] { result = paddedZip(text); });
    return result;
}

}  // namespace tvrx::mdlMain
