#pragma once

#include "responses/ResponseLayout.h"

#include <QLatin1StringView>
#include <QString>
#include <QStringView>

// Reading a response text by 1-based positions, the way its layouts are written down.
namespace tvrx::response {

// `length` characters from `start`, fewer at the end of the text, none past it. A start
// below 1 or a negative length is an invalid procedure call (5).
QStringView mid(QStringView text, qsizetype start, qsizetype length);
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
QStringView trimmed(QStringView text);

// The numeric value of a text: its leading number, 0 when it has none.
double numericValue(QStringView text);

// A signed amount with its sign in the last character, decoded by OverPunch.
double overPunched(QStringView text);

// The constant text as a QString made once, so that a property set to it shares it.
const QString& shared(QLatin1StringView text);
// The constant prefix followed by the constant word, made once.
const QString& shared(QLatin1StringView prefix, QLatin1StringView word);

}  // namespace tvrx::response
