#pragma once

#include "session/DbConnection.h"
#include "session/RecordingErrorReporter.h"
#include "support/QtPrinters.h"

#include <QDateTime>
#include <QString>
#include <QVariant>

#include <gtest/gtest.h>

#include <functional>
#include <type_traits>
#include <vector>

namespace tvrx::test {

// One property of a record in a write-then-read test: the value the test gives it, what
// its column holds after Update, and what GetData gives back. A case without a setter
// only checks a column that Update fills from another property or from the clock; one
// without a column is a property kept in another table.
template <class Record>
struct PropertyCase {
    QString column;
    std::function<void(Record&)> write;
    QVariant stored;
    std::function<QVariant(const Record&)> read;
    QVariant readBack;
};

// The property, its column of the same name, the value written, stored and read back
// (read back as the property's own type).
#define TVRX_PROPERTY(Record, property, written, storedValue, readValue)            \
    ::tvrx::test::PropertyCase<Record> {                                            \
        QStringLiteral(#property), [](Record& r) { r.property = (written); },       \
            QVariant(storedValue),                                                  \
            [](const Record& r) { return QVariant::fromValue(r.property); },        \
            QVariant::fromValue(static_cast<decltype(Record::property)>(readValue)) \
    }

// The stored value compared by the kind of the expected one: a date-time as wall-clock
// time, a number as a number (the back ends give their own integer types), else as text.
inline bool storedEquals(const QVariant& actual, const QVariant& expected) {
    if (expected.isNull()) return actual.isNull();
    if (actual.isNull()) return false;
    if (expected.typeId() == QMetaType::QDateTime)
        return actual.toDateTime() == expected.toDateTime();
    if (expected.typeId() == QMetaType::QString) return actual.toString() == expected.toString();
    return actual.toDouble() == expected.toDouble();
}

inline std::string shown(const QVariant& value) {
    if (value.isNull()) return "null";
    if (value.typeId() == QMetaType::QDateTime)
        return value.toDateTime().toString(Qt::ISODate).toStdString();
    QString text = value.toString();
    text.replace(QChar(0), QStringLiteral("\\0"));
    return '"' + text.toStdString() + '"';
}

// Runs every case's setter on `written`, calls update, checks each column of the row
// `table.keyColumn = key`, then checks what `read` (loaded by the caller's reload) holds.
// reload gives the record, or a pointer to it for a record that cannot be copied.
template <class Record, class Reload>
void expectWriteThenRead(DbConnection& db, const QString& table, const QString& keyColumn,
                         const QVariant& key, const std::vector<PropertyCase<Record>>& cases,
                         const std::function<void(Record&)>& update, Reload reload) {
    Record written;
    for (const auto& c : cases)
        if (c.write) c.write(written);
    update(written);
    RecordSet row = db.OpenRecordSet(
        QStringLiteral("SELECT * FROM %1 WHERE %2 = ?").arg(table, keyColumn), {key});
    ASSERT_FALSE(row.Eof()) << "no row " << key.toString().toStdString();
    const auto reloaded = reload();
    const Record& read = [&]() -> const Record& {
        if constexpr (std::is_same_v<std::decay_t<decltype(reloaded)>, Record>)
            return reloaded;
        else
            return *reloaded;
    }();
    for (const auto& c : cases) {
        const QVariant stored = c.column.isEmpty() ? QVariant() : row.Fields(c.column);
        if (!c.column.isEmpty()) {
            EXPECT_TRUE(storedEquals(stored, c.stored))
                << c.column.toStdString() << " stored " << shown(stored) << ", expected "
                << shown(c.stored);
        }
        if (!c.read) continue;
        const QVariant value = c.read(read);
        EXPECT_EQ(value, c.readBack) << c.column.toStdString() << " read back " << shown(value)
                                     << ", expected " << shown(c.readBack);
    }
}

// The reports as text, to show with a failed expectation.
inline std::string reportsText(const RecordingErrorReporter& reporter) {
    std::string text;
    for (const auto& report : reporter.reports())
        text +=
            (report.location + ' ' + report.number + ' ' + report.description + '\n').toStdString();
    return text;
}

inline QDateTime at(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second));
}

// A zip code as ZipString leaves it in memory: the digits, then NUL up to ten characters.
inline QString nulPadded(const QString& text) {
    return text + QString(10 - text.size(), QChar(0));
}

}  // namespace tvrx::test
