#include "session/text/DateDiff.h"

#include "session/text/Conversions.h"

namespace tvrx::conv {

qint64 DateDiff(DateInterval interval, const QVariant& from, const QDateTime& to) {
    const QDate start = ToDate(from).date();
    const QDate end = to.date();
    if (interval == DateInterval::Day) return start.daysTo(end);
    return qint64(end.year() - start.year()) * 12 + (end.month() - start.month());
}

QString FormatDateOrEmpty(const QVariant& value, const QString& picture) {
    if (!value.isValid() || value.isNull()) return QString();
    return FormatDate(ToDate(value), picture);
}

}  // namespace tvrx::conv
