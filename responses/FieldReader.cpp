#include "responses/FieldReader.h"

#include "responses/ResponseLayout.h"
#include "session/text/Encodings.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstring>
#include <limits>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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

#if defined(__SSE2__)
// One bit for each character of a block of eight that may be a stop: at most 30 (the
// separators and the carriage return lie below 31) or 225. Bit 2k stands for character k.
constexpr qsizetype kBlock = 8;
constexpr int kBitsPerCharacter = 2;
unsigned candidateStops(const char16_t* block) {
    const __m128i chars = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block));
    const __m128i atMost30 = _mm_cmpeq_epi16(
        _mm_subs_epu16(chars, _mm_set1_epi16(mdlMain::kSegmentSeparator)), _mm_setzero_si128());
    const __m128i alternative =
        _mm_cmpeq_epi16(chars, _mm_set1_epi16(mdlMain::kAlternativeTerminator));
    return unsigned(_mm_movemask_epi8(_mm_or_si128(atMost30, alternative))) & 0x5555u;
}
#else
// The same for a block of four, in one 64-bit word: bit 16k + 15 stands for character k. A
// character behind a true stop may be marked too, which the stop table then turns down.
constexpr qsizetype kBlock = 4;
constexpr int kBitsPerCharacter = 16;
quint64 candidateStops(const char16_t* block) {
    constexpr quint64 kOnes = 0x0001'0001'0001'0001;
    constexpr quint64 kHighs = 0x8000'8000'8000'8000;
    quint64 word;
    std::memcpy(&word, block, sizeof word);
    const quint64 low = (word - kOnes * (mdlMain::kSegmentSeparator + 1)) & ~word & kHighs;
    const quint64 x = word ^ (kOnes * mdlMain::kAlternativeTerminator);
    const quint64 alternative = (x - kOnes) & ~x & kHighs;
    return low | alternative;
}
#endif

std::size_t hashOf(char32_t key) {
    return std::size_t((quint64(key) * 0x9E37'79B9'7F4A'7C15ull) >> 32);
}

}  // namespace

// The bucket that holds the key, or the empty one where it would go.
inline qsizetype FieldReader::bucketOf(char32_t key) const {
    const qsizetype mask = firstByKey_.size() - 1;
    for (auto bucket = qsizetype(hashOf(key)) & mask;; bucket = (bucket + 1) & mask) {
        const qint32 index = firstByKey_[bucket];
        if (index < 0 || entries_[index].key == key) return bucket;
    }
}

inline qint32 FieldReader::firstWithKey(char32_t key) const {
    return firstByKey_[bucketOf(key)];
}

// Each separator opens an entry, which notes whether a group or segment separator stands
// before the next one; behind the last one, the first terminators are noted.
inline void FieldReader::markStop(qsizetype at, char16_t c) {
    if (c > 255 || !kStops[c]) return;
    if (c == separator_) {
        const char32_t key = at + 2 < text_.size() ? keyOf(text_[at + 1], text_[at + 2]) : 0;
        entries_.append({at, key, false, -1});
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
    for (; i + kBlock <= size; i += kBlock) {
        for (auto bits = candidateStops(data + i); bits != 0; bits &= bits - 1) {
            const qsizetype at = i + std::countr_zero(bits) / kBitsPerCharacter;
            markStop(at, data[at]);
        }
    }
    for (; i < size; ++i) markStop(i, data[i]);
    indexKeys();
}

// Chains the entries of each key in text order, from the last entry back, so that a
// search for a code visits only the fields with that code.
void FieldReader::indexKeys() {
    qsizetype buckets = 16;
    while (buckets < 2 * entries_.size()) buckets *= 2;
    firstByKey_.resize(buckets);
    std::fill(firstByKey_.begin(), firstByKey_.end(), -1);
    for (auto index = qint32(entries_.size()) - 1; index >= 0; --index) {
        qint32& first = firstByKey_[bucketOf(entries_[index].key)];
        entries_[index].nextSameKey = first;
        first = index;
    }
}

bool FieldReader::withinReach(QStringView text, QLatin1StringView closing) {
    return text.size() + closing.size() <= kGetFieldReach;
}

// True when the text holds `part` from index `at` on: a character by character test, as
// the parts looked for are a few characters long.
inline bool FieldReader::holds(qsizetype at, QLatin1StringView part) const {
    if (at + part.size() > text_.size()) return false;
    for (qsizetype i = 0; i < part.size(); ++i) {
        if (text_[at + i] != QChar(part.at(i))) return false;
    }
    return true;
}

inline qsizetype FieldReader::indexOf(QLatin1StringView code, qsizetype from) const {
    for (qint32 index = firstWithKey(keyOf(code)); index >= 0;
         index = entries_[index].nextSameKey) {
        const Entry& entry = entries_[index];
        if (entry.at + 1 < from) continue;
        if (code.size() == 2 || holds(entry.at + 1, code)) return index;
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
        if (holds(entries_[i].at + kValueOffset, number)) {
            return entries_[i].at + 1;
        }
    }
    return 0;
}

qsizetype FieldReader::separatorAfter(qsizetype at) const {
    const auto next =
        std::lower_bound(entries_.begin(), entries_.end(), at,
                         [](const Entry& entry, qsizetype i) { return entry.at < i; });
    return next == entries_.end() ? 0 : next->at + 1;
}

inline QStringView FieldReader::direct(qsizetype index) const {
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

QStringView FieldReader::value(QLatin1StringView code) const {
    const qsizetype index = indexOf(code, 1);
    if (index < 0) return {};
    return direct_ ? direct(index) : throughGetField(code);
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
