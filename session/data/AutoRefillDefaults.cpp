#include "session/data/AutoRefillDefaults.h"

#include "session/data/RecordSet.h"
#include "session/runtime/Clock.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Session.h"
#include "session/text/Conversions.h"

#include <QVariant>

namespace tvrx {

namespace {

bool isNull(const QVariant& value) {
    return value.isNull();
}

// A null, or a value the strict date conversion refuses.
bool notADate(const QVariant& value) {
    if (value.isNull()) return true;
    try {
        conv::ToDate(value);
        return false;
    } catch (const Failure&) {
        return true;
    }
}

QVariant today() {
    return mdlMain::clock().now().date().startOfDay();
}

struct Default {
    const char* column;
    bool (*applies)(const QVariant& current);
    QVariant (*value)();
};

const Default kDefaults[] = {
    {"LastDate", notADate, today},
    {"SpecificDay", isNull, [] { return QVariant(0); }},
    {"IntervalDays", isNull, [] { return QVariant(0); }},
    {"Description", isNull, [] { return QVariant(QStringLiteral("")); }},
    {"PatientName", isNull, [] { return QVariant(QStringLiteral("EMPTY")); }},
};

}  // namespace

void applyAutoRefillDefaults(RecordSet& row) {
    for (const Default& entry : kDefaults) {
        const QString column = QString::fromLatin1(entry.column);
        if (entry.applies(row.Fields(column))) row.setField(column, entry.value());
    }
}

}  // namespace tvrx
