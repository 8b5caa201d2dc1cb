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

// Position of the field separator that opens the field `code`, at or after `start`; 0
// when the text has no such field.
qsizetype findField(QStringView text, QLatin1StringView code, qsizetype start = 1);

// The text without the blanks at either end.
QString trimmed(QStringView text);

// The numeric value of a text: its leading number, 0 when it has none.
double numericValue(QStringView text);

// The value of the field `code` (field separator, code, value) in text; empty when the
// text has no such field.
QString fieldValue(const QString& text, QLatin1StringView code);

}  // namespace tvrx::response
