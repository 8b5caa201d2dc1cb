#include "claims/ClaimLayout.h"

#include "session/runtime/Frame.h"
#include "session/text/Conversions.h"
#include "session/text/Encodings.h"

#include <array>
#include <charconv>
#include <cmath>

namespace tvrx::claims {

namespace {

// Whole numbers up to this size have an exact 15-digit text, so the picture of a whole
// number is its digits with leading zeros, as conv::Format gives it.
constexpr double kExactWhole = 1e15;
constexpr qint16 kPunchedDigits = 8;

bool exactWhole(double value) {
    return std::isfinite(value) && std::fabs(value) < kExactWhole && value == std::trunc(value);
}

// The digits of a whole number, at least `width` of them, the sign in front.
void appendWhole(QString& out, qint64 number, qint16 width) {
    std::array<char, 24> digits{};
    const bool negative = number < 0;
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), negative ? -number : number)
            .ptr;
    const auto count = static_cast<qsizetype>(end - digits.data());
    if (negative) out += u'-';
    if (count < width) out.resize(out.size() + width - count, u'0');
    out += QLatin1StringView(digits.data(), count);
}

void appendDigits(QString& out, double number, qint16 width) {
    if (exactWhole(number)) {
        appendWhole(out, static_cast<qint64>(number), width);
        return;
    }
    out += conv::Format(number, QString(width, u'0'));
}

// FixedLength with a blank: cut on the right, or filled on the right.
void appendFilled(QString& out, const QString& text, qint16 width) {
    if (text.size() >= width) {
        out += QStringView(text).first(width);
        return;
    }
    out += text;
    out.resize(out.size() + width - text.size(), u' ');
}

void appendDay(QString& out, const QDateTime& date) {
    constexpr int kLastFourDigitYear = 9999;
    if (!date.isValid()) return;
    const QDate day = date.date();
    if (day.year() < 1 || day.year() > kLastFourDigitYear) {
        out += conv::FormatDate(date, QStringLiteral("YYYYMMDD"));
        return;
    }
    appendWhole(out, day.year(), 4);
    appendWhole(out, day.month(), 2);
    appendWhole(out, day.day(), 2);
}

// OverPunchReturn of the amount in whole hundredths.
void appendPunched(QString& out, double amount) {
    double hundredths = amount * 100;
    if (!exactWhole(hundredths)) {
        out += mdlMain::OverPunchReturn(hundredths);
        return;
    }
    const auto whole = static_cast<qint64>(hundredths);
    const qsizetype first = out.size();
    appendWhole(out, whole < 0 ? -whole : whole, kPunchedDigits);
    const QChar last = out.back();
    out.chop(1);
    const char16_t digit = last.unicode() - u'0';
    static constexpr std::array<char16_t, 10> kPositive{u'{', u'A', u'B', u'C', u'D',
                                                        u'E', u'F', u'G', u'H', u'I'};
    static constexpr std::array<char16_t, 10> kNegative{u'}', u'J', u'K', u'L', u'M',
                                                        u'N', u'O', u'P', u'Q', u'R'};
    out += whole < 0 ? kNegative.at(digit) : kPositive.at(digit);
    Q_ASSERT(out.size() - first >= kPunchedDigits);
}

void appendValue(QString& out, const Field& field, const Slot& slot) {
    if (slot.failure) std::rethrow_exception(slot.failure);
    switch (field.encoding) {
        case Encoding::None:
            break;
        case Encoding::Text:
            out += slot.text;
            break;
        case Encoding::Fill:
            appendFilled(out, slot.text, field.width);
            break;
        case Encoding::Digits:
            appendDigits(out, slot.number, field.width);
            break;
        case Encoding::Day:
            appendDay(out, slot.date);
            break;
        case Encoding::Punched:
            appendPunched(out, slot.number);
            break;
    }
}

// What a value that could not be read stands as: nothing, 0, the zero date.
const Slot& emptySlot() {
    static const Slot empty{QString(), 0, conv::ZeroDate(), nullptr};
    return empty;
}

bool holds(const Condition& condition, const Values& values) {
    switch (condition.kind) {
        case Condition::Kind::Always:
            return true;
        case Condition::Kind::Flag:
            return values.flag(condition.flag);
        case Condition::Kind::NotFlag:
            return !values.flag(condition.flag);
        case Condition::Kind::Switch:
            return values[Value::ClaimFields].text.contains(condition.text);
    }
    return false;
}

class Writer {
public:
    Writer(QString& out, const Values& values, Frame& frame, FailurePolicy policy)
        : out_(out), values_(values), frame_(frame), policy_(policy) {}

    // Writes the fields; false once the policy has emptied the result.
    template <class Slots>
    bool write(std::span<const Field> fields, const Slots& row) {
        for (const Field& field : fields) {
            if (!holds(field.condition, values_)) continue;
            const std::size_t source = field.source == kNoSource ? 0 : field.source;
            if (!writeField(field, row[source])) return false;
        }
        return true;
    }

private:
    bool writeField(const Field& field, const Slot& slot) {
        const qsizetype mark = out_.size();
        const int failuresBefore = frame_.failures();
        frame_([&] { append(field, slot); });
        if (frame_.failures() == failuresBefore) return true;
        out_.truncate(mark);
        switch (policy_) {
            case FailurePolicy::EmptyValue:
                append(field, emptySlot());
                return true;
            case FailurePolicy::LeaveOut:
                return true;
            case FailurePolicy::EmptyResult:
                return false;
        }
        return true;
    }

    void append(const Field& field, const Slot& slot) {
        if (!field.code.isEmpty()) {
            out_ += mdlMain::kFieldSeparator;
            out_ += field.code;
        }
        out_ += field.constant;
        if (field.source != kNoSource) appendValue(out_, field, slot);
    }

    QString& out_;
    const Values& values_;
    Frame& frame_;
    FailurePolicy policy_;
};

// The claim-level values as an indexable row, like an item's.
struct ValueRow {
    const Values& values;
    const Slot& operator[](std::size_t source) const { return values[static_cast<Value>(source)]; }
};

}  // namespace

bool writeLayout(QString& out, const Layout& layout, const Values& values, Frame& frame,
                 FailurePolicy policy) {
    const qsizetype start = out.size();
    Writer writer(out, values, frame, policy);
    const ValueRow row{values};
    bool segmentOn = true;
    for (const Part& part : layout.parts) {
        const bool belongsToSegment = part.kind == Part::Kind::Fields;
        if (belongsToSegment && !segmentOn) continue;
        const bool on = holds(part.condition, values);
        if (!belongsToSegment) segmentOn = on;
        if (!on) continue;
        if (part.lead != 0) out += part.lead;
        if (part.kind == Part::Kind::Segment) {
            out += mdlMain::kSegmentSeparator;
            out += mdlMain::kFieldSeparator;
            out += part.code;
        }
        bool written = true;
        if (part.list == List::None) {
            written = writer.write(part.fields, row);
        } else {
            for (const ItemSlots& item : values.items(part.list)) {
                written = written && writer.write(part.fields, item);
            }
        }
        if (!written) {
            out.truncate(start);
            return false;
        }
    }
    return true;
}

}  // namespace tvrx::claims
