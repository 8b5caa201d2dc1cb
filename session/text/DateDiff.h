#pragma once

#include <QDateTime>
#include <QVariant>

namespace tvrx::conv {

enum class DateInterval { Day, Month };

// The number of day or month boundaries crossed from one local wall-clock date to another,
// as the host platform's date difference counted them: January 31 23:59 to February 1
// 00:01 is one day and one month; the time of day never counts. Negative when `to` comes
// first. `from` is converted strictly (ToDate): a null fails with 94.
qint64 DateDiff(DateInterval interval, const QVariant& from, const QDateTime& to);

// A date through a date picture (FormatDate), or the empty text for a null.
QString FormatDateOrEmpty(const QVariant& value, const QString& picture);

}  // namespace tvrx::conv
