#include "claims/ClaimLayout.h"

#include "claims/ClaimSources.h"
#include "session/runtime/Frame.h"
#include "session/text/Conversions.h"
#include "session/text/Encodings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <vector>

namespace tvrx::claims {

namespace {

constexpr qint16 kPunchedDigits = 8;
constexpr char16_t kLastByte = 255;

// The text being written: plain 16-bit characters in room that is kept from one
// transaction to the next, joined to the QString once at the end. A character beyond a
// byte is noted, so that only a text that holds one is converted.
class Buffer {
public:
    bool wide = false;

    void clear() {
        size_ = 0;
        wide = false;
    }
    qsizetype size() const { return size_; }
    QStringView view() const { return {room_.data(), size_}; }
    void truncate(qsizetype size) { size_ = size; }
    char16_t& back() { return room_[static_cast<std::size_t>(size_ - 1)]; }

    void add(char16_t c) { *reserve(1) = c; }
    void add(QLatin1StringView latin) {
        char16_t* at = reserve(latin.size());
        for (const char c : latin) *at++ = static_cast<unsigned char>(c);
    }
    void add(QStringView view) {
        const char16_t* first = view.utf16();
        const char16_t* last = first + view.size();
        wide = wide || std::any_of(first, last, [](char16_t c) { return c > kLastByte; });
        std::copy(first, last, reserve(view.size()));
    }
    void fill(qsizetype count, char16_t c) { std::fill_n(reserve(count), count, c); }

private:
    // Room for `count` more characters; where they go.
    char16_t* reserve(qsizetype count) {
        const auto needed = static_cast<std::size_t>(size_ + count);
        if (needed > room_.size()) room_.resize(std::max(needed, 2 * room_.size()));
        char16_t* at = room_.data() + size_;
        size_ += count;
        return at;
    }

    std::vector<char16_t> room_ = std::vector<char16_t>(4096);
    qsizetype size_ = 0;
};

// The digits of a whole number, at least `width` of them, after the sign.
void appendWhole(Buffer& out, bool negative, qint64 whole, qint16 width) {
    std::array<char, 24> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), whole).ptr;
    const auto count = static_cast<qsizetype>(end - digits.data());
    if (negative) out.add(u'-');
    if (count < width) out.fill(width - count, u'0');
    out.add(QLatin1StringView(digits.data(), count));
}

// A picture of zeros, as conv::Format shows it.
void appendDigits(Buffer& out, double number, qint16 width) {
    if (const auto shown = conv::PictureWholeOf(number)) {
        appendWhole(out, shown->negative, shown->whole, width);
        return;
    }
    out.add(conv::Format(number, QString(width, u'0')));
}

// FixedLength with a blank: cut on the right, or filled on the right.
void appendFilled(Buffer& out, const QString& text, qint16 width) {
    if (text.size() >= width) {
        out.add(QStringView(text).first(width));
        return;
    }
    out.add(QStringView(text));
    out.fill(width - text.size(), u' ');
}

void appendDay(Buffer& out, const QDateTime& date) {
    constexpr int kLastFourDigitYear = 9999;
    if (!date.isValid()) return;
    int year = 0;
    int month = 0;
    int day = 0;
    date.date().getDate(&year, &month, &day);
    if (year < 1 || year > kLastFourDigitYear) {
        out.add(conv::FormatDate(date, QStringLiteral("YYYYMMDD")));
        return;
    }
    appendWhole(out, false, year, 4);
    appendWhole(out, false, month, 2);
    appendWhole(out, false, day, 2);
}

// OverPunchReturn of the amount in whole hundredths: the picture "00000000" of the
// amount's 15-digit text without its sign, the last digit carrying the sign.
void appendPunched(Buffer& out, double amount) {
    double hundredths = amount * 100;
    const auto shown = conv::PictureWholeOf(hundredths);
    if (!shown) {
        out.add(mdlMain::OverPunchReturn(hundredths));
        return;
    }
    appendWhole(out, false, shown->whole, kPunchedDigits);
    static constexpr std::array<char16_t, 10> kPositive{u'{', u'A', u'B', u'C', u'D',
                                                        u'E', u'F', u'G', u'H', u'I'};
    static constexpr std::array<char16_t, 10> kNegative{u'}', u'J', u'K', u'L', u'M',
                                                        u'N', u'O', u'P', u'Q', u'R'};
    const auto digit = static_cast<std::size_t>(out.back() - u'0');
    out.back() = hundredths < 0 ? kNegative.at(digit) : kPositive.at(digit);
}

void appendValue(Buffer& out, const Field& field, const Slot& slot) {
    if (slot.failure) std::rethrow_exception(slot.failure);
    switch (field.encoding) {
        case Encoding::None:
            break;
        case Encoding::Text:
            out.add(QStringView(slot.text));
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

// Whether the code stands anywhere in the text, letter case as written. The plan's switches
// are a short text and the codes two to four characters.
bool contains(QStringView text, QLatin1StringView code) {
    if (code.isEmpty()) return true;
    const auto matchesAt = [&](qsizetype at) {
        for (qsizetype i = 0; i < code.size(); ++i) {
            if (text[at + i].unicode() != static_cast<unsigned char>(code[i].toLatin1())) {
                return false;
            }
        }
        return true;
    };
    for (qsizetype at = 0; at + code.size() <= text.size(); ++at) {
        if (matchesAt(at)) return true;
    }
    return false;
}

class Writer {
public:
    Writer(Buffer& out, const Values& values, Frame& frame, FailurePolicy policy)
        : out_(out), values_(values), frame_(frame), policy_(policy) {}

    bool holds(const Condition& condition) {
        switch (condition.kind) {
            case Condition::Kind::Always:
                return true;
            case Condition::Kind::Flag:
                return values_.flag(condition.flag);
            case Condition::Kind::NotFlag:
                return !values_.flag(condition.flag);
            case Condition::Kind::Switch:
                return switchOn(condition.text);
        }
        return false;
    }

    // Writes the fields; false once the policy has emptied the result.
    template <class Slots>
    bool write(std::span<const Field> fields, const Slots& row) {
        for (const Field& field : fields) {
            if (!holds(field.condition)) continue;
            const std::size_t source = field.source == kNoSource ? 0 : field.source;
            if (!writeField(field, row[source])) return false;
        }
        return true;
    }

private:
    // The fields of a block ask for the same switch one after the other.
    bool switchOn(QLatin1StringView code) {
        if (code.data() != lastSwitch_.data() || code.size() != lastSwitch_.size()) {
            lastSwitch_ = code;
            lastSwitchOn_ = contains(values_[Value::ClaimFields].text, code);
        }
        return lastSwitchOn_;
    }

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
            out_.add(mdlMain::kFieldSeparator);
            out_.add(field.code);
        }
        out_.add(field.constant);
        if (field.source != kNoSource) appendValue(out_, field, slot);
    }

    Buffer& out_;
    const Values& values_;
    Frame& frame_;
    FailurePolicy policy_;
    QLatin1StringView lastSwitch_;
    bool lastSwitchOn_ = false;
};

// The claim-level values as an indexable row, like an item's.
struct ValueRow {
    const Values& values;
    const Slot& operator[](std::size_t source) const { return values[static_cast<Value>(source)]; }
};

}  // namespace

// The text is made in a buffer that keeps its room from one transaction to the next, and
// joins `out` once, in bytes: a character beyond 255 becomes "?".
bool writeLayout(QString& out, const Layout& layout, const Values& values, Frame& frame,
                 FailurePolicy policy) {
    thread_local Buffer buffer;
    buffer.clear();
    Writer writer(buffer, values, frame, policy);
    const ValueRow row{values};
    bool segmentOn = true;
    for (const Part& part : layout.parts) {
        const bool belongsToSegment = part.kind == Part::Kind::Fields;
        if (belongsToSegment && !segmentOn) continue;
        const bool on = writer.holds(part.condition);
        if (!belongsToSegment) segmentOn = on;
        if (!on) continue;
        if (part.lead != 0) buffer.add(part.lead);
        if (part.kind == Part::Kind::Segment) {
            buffer.add(mdlMain::kSegmentSeparator);
            buffer.add(mdlMain::kFieldSeparator);
            buffer.add(part.code);
        }
        bool written = true;
        if (part.list == List::None) {
            written = writer.write(part.fields, row);
        } else {
            for (const ItemSlots& item : values.items(part.list)) {
                written = written && writer.write(part.fields, item);
            }
        }
        if (!written) return false;
    }
    const QStringView text = buffer.view();
    if (buffer.wide) {
        out += claimBytes(text.toString());
    } else {
        out += text;
    }
    return true;
}

}  // namespace tvrx::claims
