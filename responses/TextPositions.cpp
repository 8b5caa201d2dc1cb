#include "responses/TextPositions.h"

#include "session/Conversions.h"
#include "session/Encodings.h"
#include "session/ErrorNumbers.h"
#include "session/Failure.h"

#include <algorithm>

namespace tvrx::response {

QStringView mid(QStringView text, qsizetype start, qsizetype length) {
    if (start < 1 || length < 0) fail(err::InvalidProcedureCall);
    if (start > text.size()) return {};
    return text.sliced(start - 1, std::min(length, text.size() - start + 1));
}

QStringView left(QStringView text, qsizetype length) {
    if (length < 0) fail(err::InvalidProcedureCall);
    return text.first(std::min(length, text.size()));
}

qsizetype findField(QStringView text, QLatin1StringView code, qsizetype start) {
    const QChar separator(mdlMain::kFieldSeparator);
    if (start > text.size()) return 0;
    for (qsizetype at = text.indexOf(separator, start - 1); at >= 0;
         at = text.indexOf(separator, at + 1)) {
        if (text.sliced(at + 1).startsWith(code)) return at + 1;
    }
    return 0;
}

QString trimmed(QStringView text) {
    qsizetype first = 0;
    qsizetype end = text.size();
    while (first < end && text[first] == u' ') ++first;
    while (end > first && text[end - 1] == u' ') --end;
    return text.sliced(first, end - first).toString();
}

double numericValue(QStringView text) {
    return conv::Val(text.toString());
}

QString fieldValue(const QString& text, QLatin1StringView code) {
    QString separator;
    QString scan;
    return mdlMain::GetField(QString(code), text, separator, scan).value_or(QString());
}

}  // namespace tvrx::response
