#pragma once

#include "responses/ResponseLayout.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"

#include <QLatin1StringView>
#include <QString>
#include <QStringView>

#include <algorithm>

// Reading a response text by 1-based positions, the way its layouts are written down.
namespace tvrx::response {

// `length` characters from `start`, fewer at the end of the text, none past it. A start
// below 1 or a negative length is an invalid procedure call (5). Inline, as a decoding
// reads most of its values through it.
inline QStringView mid(QStringView text, qsizetype start, qsizetype length) {
    if (start < 1 || length < 0) fail(err::InvalidProcedureCall);
    if (start > text.size()) return {};
    return text.sliced(start - 1, std::min(length, text.size() - start + 1));
}
inline QStringView mid(QStringView text, Span span) {
    return mid(text, span.position, span.length);
}

// The first `length` characters; a negative length is an invalid procedure call (5).
QStringView left(QStringView text, qsizetype length);

// Position of needle (a text or a character) at or after `start`, 0 when it does not stand
// there.
template <class Needle>
qsizetype find(QStringView text, const Needle& needle, qsizetype start = 1) {
    if (start > text.size()) return 0;
    return text.indexOf(needle, start - 1) + 1;
}

// The text without the blanks at either end.
inline QStringView trimmed(QStringView text) {
    qsizetype first = 0;
    qsizetype end = text.size();
    while (first < end && text[first] == u' ') ++first;
    while (end > first && text[end - 1] == u' ') --end;
    return text.sliced(first, end - first);
}

// The numeric value of a text: its leading number, 0 when it has none.
double numericValue(QStringView text);

// A signed amount with its sign in the last character, decoded by OverPunch.
double overPunched(QStringView text);

// The constant text as a QString made once, so that a property set to it shares it.
const QString& shared(QLatin1StringView text);
// The constant prefix followed by the constant word, made once.
const QString& shared(QLatin1StringView prefix, QLatin1StringView word);

}  // namespace tvrx::response
