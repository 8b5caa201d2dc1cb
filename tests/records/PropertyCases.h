#pragma once

#include "session/data/ColumnTable.h"
#include "session/data/DbConnection.h"
#include "session/data/Procedures.h"
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

// The member behind a column, named by the test itself so that a description that pairs
// the column with another member is caught; empty for a column whose property is computed
// or kept behind a setter, which the description's own property stands for.
template <class Record>
struct Member {
    Member(std::nullptr_t) {}
    template <class T>
    Member(T Record::*member)
        : set([member](Record& r, const QVariant& v) { r.*member = v.value<T>(); }),
          get([member](const Record& r) { return QVariant::fromValue(r.*member); }) {}
    std::function<void(Record&, const QVariant&)> set;
    std::function<QVariant(const Record&)> get;
};

template <class Record, class... Members>
std::vector<Member<Record>> members(Members... each) {
    return {Member<Record>(each)...};
}

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

// Gives every column of the record's description but the key a value (its case's, or a
// sample) through its member in `written`, updates the row `key`, checks what each of its
// columns holds, then what each member holds once a new record has read the row. The
// members are listed in the order of the description's columns.
template <class Record, class Key>
void expectEveryColumnWrittenAndRead(DbConnection& db, const ColumnTable<Record>& table,
                                     const std::vector<Member<Record>>& members,
                                     Key Record::*keyMember, std::type_identity_t<Key> key,
                                     const RecordRules& rules, const std::vector<ColumnCase>& cases,
                                     Record& written) {
    ASSERT_EQ(members.size(), table.columns().size());
    const auto setter = [&](size_t i) {
        return members[i].set ? members[i].set : table.columns()[i].property.set;
    };
    const auto getter = [&](size_t i) {
        return members[i].get ? members[i].get : table.columns()[i].property.get;
    };
    std::vector<std::pair<QVariant, QVariant>> expected;  // stored, read back
    size_t casesFound = 0;
    for (size_t i = 0; i < members.size(); ++i) {
        const auto& column = table.columns()[i];
        auto c = std::find_if(cases.begin(), cases.end(),
                              [&](const ColumnCase& x) { return x.column == column.name; });
        const ColumnCase given = c == cases.end() ? ColumnCase{} : *c;
        casesFound += c == cases.end() ? 0 : 1;
        const ValueType type = column.property.type;
        const QVariant value =
            given.written.value_or(sampleValue(type, column.name, static_cast<int>(i) + 1));
        if (column.name != table.key()) setter(i)(written, value);
        expected.emplace_back(
            given.stored.value_or(predictedStored(type, value, rules)),
            given.readBack.value_or(predictedRead(type, column.name, value, rules)));
    }
    ASSERT_EQ(casesFound, cases.size()) << "a case names a column the record lacks";
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
        expectSame("read back", getter(i)(read), expected[i].second);
    }
}

}  // namespace tvrx::test
