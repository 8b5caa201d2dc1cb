#pragma once

#include "session/data/ColumnTable.h"
#include "session/data/DbConnection.h"
#include "session/data/Procedures.h"
#include "session/text/Conversions.h"
#include "support/QtPrinters.h"
#include "support/SchemaFixture.h"

#include <QDateTime>
#include <QString>
#include <QVariant>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <optional>
#include <type_traits>
#include <vector>

namespace tvrx::test {

inline QDateTime at(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second));
}

// A zip code as ZipString leaves it in memory: the digits, then NUL up to ten characters.
inline QString nulPadded(const QString& text) {
    return text + QString(10 - text.size(), QChar(0));
}

inline QString reportOf(const QString& location, long number) {
    return location + QLatin1Char(' ') + QString::number(number);
}

// A test of this slice ends with no report left that it did not take.
template <class Fixture>
class NoStrayReports : public Fixture {
protected:
    void TearDown() override {
        EXPECT_EQ(takeReports(), QStringList());
        Fixture::TearDown();
    }

    // The reports so far as "location number", in order; taking them clears them.
    QStringList takeReports() {
        QStringList taken;
        for (const auto& report : this->reporter->reports())
            taken.append(report.location + QLatin1Char(' ') + report.number);
        this->reporter->clear();
        return taken;
    }
};

// The pharmacy's schema with the record's connection handed over and one new row of the
// record's table, whose key is `id`.
template <class Record, auto keyMember>
class RecordFixture : public NoStrayReports<SchemaFixture> {
protected:
    using Key = std::remove_cvref_t<decltype(std::declval<Record&>().*keyMember)>;

    explicit RecordFixture(const char* newKeyProcedure) : procedure_(newKeyProcedure) {}

    void SetUp() override {
        SchemaFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        Record().setConnection(db);
        id = static_cast<Key>(Procedures::newKey(*db, QString::fromLatin1(procedure_)));
    }

    Record loaded() const {
        Record record;
        record.*keyMember = id;
        record.GetData();
        return record;
    }

    Key id = 0;

private:
    const char* procedure_;
};

// How a record treats every column of a kind alike in a write-then-read test. Dates are
// written as their day; a false flag is stored as 0.
struct RecordRules {
    QStringList trimmed = {};  // text columns read back without blanks at either end
    bool trimsEveryText = false;
    QVariant trueStored = -1;
};

// A column written with a value of the test's own, or whose stored or read-back value is
// not the one the record's rules make of what was written.
struct ColumnCase {
    QString column;
    std::optional<QVariant> written = std::nullopt;
    std::optional<QVariant> stored = std::nullopt;
    std::optional<QVariant> readBack = std::nullopt;
};

// A value of its own for the n-th column: a text with blanks at both ends and a quote,
// numbers and dates that differ from column to column, alternating flags.
inline QVariant sampleValue(ValueType type, const QString& column, int n) {
    switch (type) {
        case ValueType::Text:
            return QStringLiteral(" %1 '%2 ").arg(column).arg(n);
        case ValueType::Double:
        case ValueType::Currency:
            return n + 0.25;
        case ValueType::Date:
            return at(1990 + n, 1 + n % 12, 1 + n % 28, 14, 35, 10);
        case ValueType::Boolean:
            return n % 2 == 0;
        default:
            return n;
    }
}

inline QVariant predictedStored(ValueType type, const QVariant& written, const RecordRules& rules) {
    if (type == ValueType::Date) return written.toDateTime().date().startOfDay();
    if (type == ValueType::Boolean) return written.toBool() ? rules.trueStored : QVariant(0);
    return written;
}

inline QVariant predictedRead(ValueType type, const QString& column, const QVariant& written,
                              const RecordRules& rules) {
    if (type == ValueType::Date) return written.toDateTime().date().startOfDay();
    if (type == ValueType::Text && (rules.trimsEveryText || rules.trimmed.contains(column)))
        return written.toString().trimmed();
    return written;
}

// Compared by the kind of the expected value: a date-time as wall-clock time, a flag as a
// flag, a number as a number (the back ends give their own integer types), else as text.
inline bool sameValue(const QVariant& actual, const QVariant& expected) {
    if (expected.isNull() || actual.isNull()) return actual.isNull() == expected.isNull();
    switch (expected.typeId()) {
        case QMetaType::QDateTime:
            return actual.toDateTime() == expected.toDateTime();
        case QMetaType::QString:
            return actual.toString() == expected.toString();
        case QMetaType::Bool:
            return actual.typeId() == QMetaType::Bool && actual.toBool() == expected.toBool();
        default:
            return actual.toDouble() == expected.toDouble();
    }
}

inline std::string shown(const QVariant& value) {
    if (value.isNull()) return "null";
    if (value.typeId() == QMetaType::QDateTime)
        return value.toDateTime().toString(Qt::ISODate).toStdString();
    QString text = value.toString();
    text.replace(QChar(0), QStringLiteral("\\0"));
    return '"' + text.toStdString() + '"';
}

inline void expectSame(const char* what, const QVariant& actual, const QVariant& expected) {
    EXPECT_TRUE(sameValue(actual, expected))
        << what << ' ' << shown(actual) << ", expected " << shown(expected);
}

// Gives every column of the record's description but the key a value of its own (its
// case's, or a sample) through the column's property in `written` and checks that each
// property then holds its value, which two columns on one member would not (unless a
// case gives both the same value); updates the row `key`, checks what each of its columns
// holds, then what each property holds once a new record has read the row.
template <class Record, class Key>
void expectEveryColumnWrittenAndRead(DbConnection& db, const ColumnTable<Record>& table,
                                     Key Record::*keyMember, std::type_identity_t<Key> key,
                                     const RecordRules& rules, const std::vector<ColumnCase>& cases,
                                     Record& written) {
    std::vector<std::pair<QVariant, QVariant>> expected;  // stored, read back
    std::vector<QVariant> given;
    size_t casesFound = 0;
    for (size_t i = 0; i < table.columns().size(); ++i) {
        const auto& column = table.columns()[i];
        auto c = std::find_if(cases.begin(), cases.end(),
                              [&](const ColumnCase& x) { return x.column == column.name; });
        const ColumnCase value = c == cases.end() ? ColumnCase{} : *c;
        casesFound += c == cases.end() ? 0 : 1;
        const ValueType type = column.property.type;
        given.push_back(
            value.written.value_or(sampleValue(type, column.name, static_cast<int>(i) + 1)));
        if (column.name != table.key()) column.property.set(written, given.back());
        expected.emplace_back(
            value.stored.value_or(predictedStored(type, given.back(), rules)),
            value.readBack.value_or(predictedRead(type, column.name, given.back(), rules)));
    }
    ASSERT_EQ(casesFound, cases.size()) << "a case names a column the record lacks";
    for (size_t i = 0; i < given.size(); ++i) {
        const auto& column = table.columns()[i];
        if (column.name == table.key() || !column.property.takesValue) continue;
        SCOPED_TRACE(column.name.toStdString());
        const QVariant held = column.property.type == ValueType::Currency
                                  ? QVariant(conv::RoundCurrency(given[i].toDouble()))
                                  : given[i];
        expectSame("held", column.property.get(written), held);
    }
    written.*keyMember = key;
    written.Update();
    RecordSet row = db.OpenRecordSet(
        QStringLiteral("SELECT * FROM %1 WHERE %2 = ?").arg(table.table(), table.key()), {key});
    ASSERT_FALSE(row.Eof());
    Record read;
    read.*keyMember = key;
    read.GetData();
    for (size_t i = 0; i < expected.size(); ++i) {
        const auto& column = table.columns()[i];
        if (column.name == table.key()) continue;
        SCOPED_TRACE(column.name.toStdString());
        expectSame("stored", row.Fields(column.name), expected[i].first);
        expectSame("read back", column.property.get(read), expected[i].second);
    }
}

}  // namespace tvrx::test
