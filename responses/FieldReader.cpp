#include "responses/FieldReader.h"

#include "responses/ResponseLayout.h"
#include "session/Encodings.h"

#include <array>
#include <charconv>
#include <cstring>
#include <limits>

namespace tvrx::response {
namespace {

// GetField counts positions in 16 bits and looks up to three characters past a field's
// separator: within this length none of its positions can overflow.
constexpr qsizetype kGetFieldReach = std::numeric_limits<qint16>::max() - kValueOffset;

char32_t keyOf(QChar first, QChar second) {
    return (char32_t(first.unicode()) << 16) | second.unicode();
}

char32_t keyOf(QLatin1StringView code) {
    return code.size() >= 2 ? keyOf(code.at(0), code.at(1)) : 0;
}

// What the one pass over a text stops at: separators and terminators.
constexpr std::array<bool, 256> kStops = [] {
    std::array<bool, 256> stops{};
    for (const char16_t c :
         {mdlMain::kFieldSeparator, mdlMain::kGroupSeparator, mdlMain::kSegmentSeparator,
          mdlMain::kAlternativeTerminator, mdlMain::kCarriageReturn}) {
        stops[c] = true;
    }
    return stops;
}();

// False when none of four characters can be a stop: none is below 31 or equal to 225 (the
// test may say true for a block without one, never false for a block with one).
bool mayStop(const char16_t* four) {
    constexpr quint64 kOnes = 0x0001'0001'0001'0001;
    constexpr quint64 kHighs = 0x8000'8000'8000'8000;
    quint64 word;
    std::memcpy(&word, four, sizeof word);
    const quint64 low = (word - kOnes * (mdlMain::kSegmentSeparator + 1)) & ~word & kHighs;
    const quint64 x = word ^ (kOnes * mdlMain::kAlternativeTerminator);
    const quint64 alternative = (x - kOnes) & ~x & kHighs;
    return (low | alternative) != 0;
}

}  // namespace

// Each separator opens an entry, which notes whether a group or segment separator stands
// before the next one; behind the last one, the first terminators are noted.
inline void FieldReader::markStop(qsizetype at, char16_t c) {
    if (c > 255 || !kStops[c]) return;
    if (c == separator_) {
        const char32_t key = at + 2 < text_.size() ? keyOf(text_[at + 1], text_[at + 2]) : 0;
        entries_.append({at, key, false});
        alternativeEnd_ = returnEnd_ = -1;
    } else if (c == mdlMain::kGroupSeparator || c == mdlMain::kSegmentSeparator) {
        if (!entries_.isEmpty()) entries_.back().crossesGroup = true;
    } else if (c == mdlMain::kAlternativeTerminator) {
        if (alternativeEnd_ < 0) alternativeEnd_ = at;
    } else if (c == mdlMain::kCarriageReturn && returnEnd_ < 0) {
        returnEnd_ = at;
    }
}

FieldReader::FieldReader(QStringView text, QLatin1StringView closing, char16_t separator)
    : text_(text), closing_(closing), separator_(separator), direct_(withinReach(text, closing)) {
    const char16_t* const data = text.utf16();
    const qsizetype size = text.size();
    qsizetype i = 0;
    for (; i + 4 <= size; i += 4) {
        if (!mayStop(data + i)) continue;
        for (qsizetype j = i; j < i + 4; ++j) markStop(j, data[j]);
    }
    for (; i < size; ++i) markStop(i, data[i]);
}

bool FieldReader::withinReach(QStringView text, QLatin1StringView closing) {
    return text.size() + closing.size() <= kGetFieldReach;
}

qsizetype FieldReader::indexOf(QLatin1StringView code, qsizetype from) const {
    const char32_t key = keyOf(code);
    for (qsizetype index = 0; index < entries_.size(); ++index) {
        const Entry& entry = entries_[index];
        if (entry.key != key || entry.at + 1 < from) continue;
        if (code.size() == 2 || text_.sliced(entry.at + 1).startsWith(code)) return index;
    }
    return -1;
}

qsizetype FieldReader::find(QLatin1StringView code, qsizetype from) const {
    const qsizetype index = indexOf(code, from);
    return index < 0 ? 0 : entries_[index].at + 1;
}

qsizetype FieldReader::findNumbered(QLatin1StringView code, int n) const {
    char digits[16];
    const auto end = std::to_chars(digits, digits + sizeof digits, n).ptr;
    const QLatin1StringView number(digits, end);
    for (qsizetype i = indexOf(code, 1); i >= 0; i = indexOf(code, entries_[i].at + 2)) {
        if (text_.sliced(entries_[i].at + kValueOffset).startsWith(number)) {
            return entries_[i].at + 1;
        }
    }
    return 0;
}

qsizetype FieldReader::separatorAfter(qsizetype at) const {
    for (const Entry& entry : entries_) {
        if (entry.at + 1 > at) return entry.at + 1;
    }
    return 0;
}

QStringView FieldReader::value(QLatin1StringView code) const {
    const qsizetype index = indexOf(code, 1);
    if (index < 0) return {};
    return direct_ ? direct(index) : throughGetField(code);
}

QStringView FieldReader::direct(qsizetype index) const {
    const Entry& entry = entries_[index];
    const qsizetype start = entry.at + kValueOffset;
    qsizetype end = text_.size();
    if (index + 1 < entries_.size()) {
        // A group or segment separator in the value is taken to be its last character.
        end = entries_[index + 1].at - (entry.crossesGroup ? 1 : 0);
    } else if (alternativeEnd_ >= start) {
        end = alternativeEnd_;
    } else if (returnEnd_ >= start) {
        end = returnEnd_;
    }
    return text_.sliced(start, end - start);
}

QStringView FieldReader::throughGetField(QLatin1StringView code) const {
    QString separator{QChar(separator_)};
    QString scan;
    const QString whole = text_.toString() + closing_;
    QString read = mdlMain::GetField(QString(code), whole, separator, scan).value_or(QString());
    const qsizetype start = find(code) - 1 + kValueOffset;
    if (!closing_.isEmpty() && start + read.size() == whole.size()) read.chop(closing_.size());
    read_.push_back(read);
    return read_.back();
}

}  // namespace tvrx::response
