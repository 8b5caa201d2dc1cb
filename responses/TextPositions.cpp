#include "responses/TextPositions.h"

#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/text/Conversions.h"
#include "session/text/Encodings.h"

#include <algorithm>
#include <deque>
#include <optional>

namespace tvrx::response {
namespace {

// A text copied into a buffer that keeps its room from one call to the next, for the
// conversions that take a QString of their own.
QString& buffered(QStringView text) {
    thread_local QString buffer;
    buffer.resize(text.size());
    std::copy(text.begin(), text.end(), buffer.begin());
    return buffer;
}

// Up to this many digits spell a number a double holds exactly.
constexpr qsizetype kExactDigits = 15;

// The number spelt by plain digits, short enough to be held exactly; none for any other text.
std::optional<qint64> digitsValue(QStringView text) {
    if (text.size() > kExactDigits) return std::nullopt;
    qint64 value = 0;
    for (const QChar c : text) {
        if (c < u'0' || c > u'9') return std::nullopt;
        value = value * 10 + (c.unicode() - u'0');
    }
    return value;
}

struct SharedText {
    const char* prefix;
    const char* word;
    QString text;
};

}  // namespace

QStringView left(QStringView text, qsizetype length) {
    if (length < 0) fail(err::InvalidProcedureCall);
    return text.first(std::min(length, text.size()));
}

double numericValue(QStringView text) {
    // Plain digits, as most numbers in a response are, read as the number they spell.
    if (const std::optional<qint64> value = digitsValue(text)) return static_cast<double>(*value);
    return conv::Val(buffered(text));
}

// Digits with a digit or a sign character last, as payers send amounts, are worked out here
// the way OverPunch works them out, in hundredths, without a copy of the text.
double overPunched(QStringView text) {
    if (!text.isEmpty() && text.size() <= kExactDigits) {
        const char16_t last = text.back().unicode();
        const mdlMain::PunchedDigit punched = mdlMain::PunchedDigitOf(last);
        const bool digit = last >= u'0' && last <= u'9';
        const std::optional<qint64> leading = digitsValue(text.chopped(1));
        if (leading && (digit || punched.sign != 0)) {
            const qint64 whole = *leading * 10 + ((digit ? last : punched.digit) - u'0');
            return static_cast<double>(whole) / 100 * (digit ? 1 : punched.sign);
        }
    }
    return mdlMain::OverPunch(buffered(text));
}

const QString& shared(QLatin1StringView text) {
    return shared(text, {});
}

const QString& shared(QLatin1StringView prefix, QLatin1StringView word) {
    thread_local std::deque<SharedText> texts;
    for (const SharedText& known : texts) {
        if (known.prefix == prefix.data() && known.word == word.data()) return known.text;
    }
    QString text;
    text.reserve(prefix.size() + word.size());
    text.append(prefix).append(word);
    texts.push_back({prefix.data(), word.data(), text});
    return texts.back().text;
}

}  // namespace tvrx::response
