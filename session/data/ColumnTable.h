#pragma once

#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/data/RecordSet.h"
#include "session/runtime/Frame.h"
#include "session/text/Currency.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <initializer_list>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

// The columns of a record class, described once as data, and the one piece of code that
// reads a row into a record and writes the record back with a bound statement.
//
// A record lists each column with the property behind it, the way the row is read into
// the property and the way the property is written to the column:
//
//     using C = PATINS;
//     using R = ReadForm;
//     using W = WriteForm;
//     static const ColumnTable<C> table("PATINS", "PatInsID", {
//         {"InsID", accessor(&C::InsID, &C::setInsID), R::nullScreen(0), W::number()},
//         {"InsCode", member(&C::InsCode), R::none(), W::quotedRaw()},
//         {"subscribersname", member(&C::SubscribersName), R::text(), W::quotedDoubled()},
//         {"ExpDate", member(&C::ExpDate), R::ifDate(), W::date("MM/DD/YYYY")},
//         {"Fee", member(&C::Fee), R::zeroText(), W::value()},
//         {"Code", member(&C::Code), R::text().at(3), W::doubledThenCut(10)},
//     });
//
//     Frame frame("PATINS:GetData");
//     const bool found = table.load(frame, table.selectAll(), PatInsID, *this, table.all());
//
//     Frame frame("PATINS:Update");
//     table.store(frame, *this, PatInsID);
//
// The description lists every column once, in the order the record reads its row: a
// setter that reads another record runs in its turn, and where two columns can fail, the
// first one's failure is reported first. A record that reads some columns apart (a fill
// reads its original's columns from another row) reads the rest with read() and an order
// of its own. A column that GetData does not select has a property that takes no value
// (the change date, which Update alone writes); a column the UPDATE leaves out has
// W::none(), and one that only an original fill's row takes (not a refill's) is flagged
// onOriginalRowOnly().
//
// Reading a column: the read form turns the field into a value, then the strict conversion
// of the property's type (ToInteger, ToLong, ToCurrency, ToDate, ...) makes the property's
// value, then the setter stores it. Each column is its own step of the caller's frame, so
// a bad column costs one report and leaves its property as it was; the rest still reads.
//
// Writing a column: the write form turns the property's value into the value that the
// record's original statement text would have stored, and that value is bound. The UPDATE
// lists the written columns in the order of the description. Why that order matters: the
// values are made one after another, and a write conversion that fails (a number beyond a
// double's text, a date without a text form, a record's own rule) stops the statement
// with that one report, so where several can fail the description keeps them in the order
// the record has always written them; the stored row does not depend on the order.
namespace tvrx {

// The types of the record properties: 16-bit integer (qint16), 32-bit integer (qint32),
// double, currency (Currency, four places), date (QDateTime), text, boolean.
enum class ValueType { Integer, Long, Double, Currency, Date, Text, Boolean };

// How a column is read into its property.
struct ReadForm {
    enum class Kind {
        NotRead,     // the column is skipped by the reader
        Converted,   // the field converted as it is (a null fails with 94)
        ZeroText,    // the text "0" followed by the field's text, converted
        Text,        // the field's text; a null reads as the empty text
        Trimmed,     // the field's text without blanks at either end
        NullScreen,  // ScreenForNull with the default, converted
        IfDate,      // only when the field holds a date; otherwise the property stays
        Custom,      // the record's own rule
        FromRow,     // the record's own rule over the whole row
    };

    Kind kind = Kind::NotRead;
    // NullScreen: the default; without one a null reads as the empty text.
    std::optional<QVariant> screenDefault;
    // Read by 0-based position in the result instead of by name.
    int position = -1;
    std::function<QVariant(const QVariant& field)> rule;
    std::function<QVariant(const RecordSet& row)> rowRule;

    static ReadForm none() { return {}; }
    static ReadForm converted() { return of(Kind::Converted); }
    static ReadForm zeroText() { return of(Kind::ZeroText); }
    static ReadForm text() { return of(Kind::Text); }
    static ReadForm trimmed() { return of(Kind::Trimmed); }
    static ReadForm nullScreen() { return of(Kind::NullScreen); }
    static ReadForm nullScreen(QVariant defaultValue) {
        ReadForm form = of(Kind::NullScreen);
        form.screenDefault = std::move(defaultValue);
        return form;
    }
    static ReadForm ifDate() { return of(Kind::IfDate); }
    // The rule gets the field's value and gives the value to convert to the property.
    static ReadForm custom(std::function<QVariant(const QVariant& field)> rule) {
        ReadForm form = of(Kind::Custom);
        form.rule = std::move(rule);
        return form;
    }
    // The rule gets the current row (a value kept in two columns) and gives the value.
    static ReadForm fromRow(std::function<QVariant(const RecordSet& row)> rule) {
        ReadForm form = of(Kind::FromRow);
        form.rowRule = std::move(rule);
        return form;
    }
    ReadForm at(int fieldPosition) const {
        ReadForm form = *this;
        form.position = fieldPosition;
        return form;
    }

private:
    static ReadForm of(Kind kind) {
        ReadForm form;
        form.kind = kind;
        return form;
    }
};

// How a property is written to its column. Every value is bound; the form decides which
// value, so that the column ends up with what the record's statement text stored.
struct WriteForm {
    enum class Kind {
        NotWritten,
        Value,           // the property's value as it is (an assignment through a record set)
        Number,          // plain decimal text in the statement
        Boolean,         // a flag written as a number: -1 and 0 unless the record says otherwise
        QuotedRaw,       // between quotes with nothing done to it
        QuotedDoubled,   // between quotes with each quote doubled
        DoubledThenCut,  // quotes doubled, then cut to a width
        Date,            // formatted with a date picture (an empty picture: the default text)
        Custom,          // the record's own rule
    };

    Kind kind = Kind::NotWritten;
    int width = 0;
    QString picture;
    QVariant trueValue = -1;
    QVariant falseValue = 0;
    std::function<QVariant(const QVariant& property)> rule;
    // Written to an original fill's row only; a refill's UPDATE leaves the column out.
    bool originalRowOnly = false;

    static WriteForm none() { return {}; }
    static WriteForm value() { return of(Kind::Value); }
    static WriteForm number() { return of(Kind::Number); }
    static WriteForm boolean(QVariant whenTrue = -1, QVariant whenFalse = 0) {
        WriteForm form = of(Kind::Boolean);
        form.trueValue = std::move(whenTrue);
        form.falseValue = std::move(whenFalse);
        return form;
    }
    static WriteForm quotedRaw() { return of(Kind::QuotedRaw); }
    static WriteForm quotedDoubled() { return of(Kind::QuotedDoubled); }
    static WriteForm doubledThenCut(int width) {
        WriteForm form = of(Kind::DoubledThenCut);
        form.width = width;
        return form;
    }
    static WriteForm date(QString picture) {
        WriteForm form = of(Kind::Date);
        form.picture = std::move(picture);
        return form;
    }
    // The rule gets the property's value and gives the value to bind.
    static WriteForm custom(std::function<QVariant(const QVariant& property)> rule) {
        WriteForm form = of(Kind::Custom);
        form.rule = std::move(rule);
        return form;
    }
    WriteForm onOriginalRowOnly() const {
        WriteForm form = *this;
        form.originalRowOnly = true;
        return form;
    }

private:
    static WriteForm of(Kind kind) {
        WriteForm form;
        form.kind = kind;
        return form;
    }
};

// A property of a record: its type and how to get and set it. Values travel as QVariants
// of one kind per type: int for both integer types, double for double and currency,
// QDateTime, QString, bool.
template <class Record>
struct Property {
    ValueType type;
    std::function<QVariant(const Record&)> get;
    std::function<void(Record&, const QVariant&)> set;
    // False for a value that is written but never read back (the change date): its column
    // is not selected.
    bool takesValue = true;
};

namespace columns {

template <class T>
constexpr ValueType typeOf() {
    if constexpr (std::is_same_v<T, qint16>) {
        return ValueType::Integer;
    } else if constexpr (std::is_same_v<T, qint32>) {
        return ValueType::Long;
    } else if constexpr (std::is_same_v<T, double>) {
        return ValueType::Double;
    } else if constexpr (std::is_same_v<T, Currency>) {
        return ValueType::Currency;
    } else if constexpr (std::is_same_v<T, QDateTime>) {
        return ValueType::Date;
    } else if constexpr (std::is_same_v<T, QString>) {
        return ValueType::Text;
    } else {
        static_assert(std::is_same_v<T, bool>, "a record property is one of the record types");
        return ValueType::Boolean;
    }
}

template <class T>
QVariant held(const T& value) {
    if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
        return QVariant(static_cast<int>(value));
    } else if constexpr (std::is_same_v<T, Currency>) {
        return QVariant(static_cast<double>(value));
    } else {
        return QVariant::fromValue(value);
    }
}

template <class T>
T unheld(const QVariant& value) {
    if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
        return static_cast<T>(value.toInt());
    } else if constexpr (std::is_same_v<T, Currency>) {
        return Currency(value.toDouble());
    } else {
        return value.value<T>();
    }
}

}  // namespace columns

// A plain member: qint16, qint32, double, Currency, QDateTime, QString or bool.
template <class Record, class T>
Property<Record> member(T Record::*field) {
    return {columns::typeOf<T>(),
            [field](const Record& record) { return columns::held(record.*field); },
            [field](Record& record, const QVariant& value) {
                record.*field = columns::unheld<T>(value);
            }};
}

// A property with behaviour: its getter and its setter.
template <class Record, class T, class Argument>
Property<Record> accessor(T (Record::*getter)() const, void (Record::*setter)(Argument)) {
    return {columns::typeOf<std::decay_t<T>>(),
            [getter](const Record& record) { return columns::held((record.*getter)()); },
            [setter](Record& record, const QVariant& value) {
                (record.*setter)(columns::unheld<std::decay_t<Argument>>(value));
            }};
}

// The column part of a description, apart from the property.
struct ColumnSpec {
    QString name;
    ValueType type;
    ReadForm read;
    WriteForm write;
};

// A statement with its bound values.
struct BoundStatement {
    QString sql;
    QVariantList params;
};

// The positions of some columns of a description, in the order a statement or a read
// takes them.
using ColumnOrder = std::vector<int>;

namespace columns {

// The text of a value, as joining it to a text makes it: a null gives the empty text, a
// number its default text, a date its default date text, a flag "True" or "False".
QString textOf(const QVariant& value);
// Whether a field holds a date: a valid date value, or a text the database writes dates in.
bool holdsDate(const QVariant& value);
// The field's value turned by the read form, before the conversion to the property.
// std::nullopt when the form leaves the property as it is.
std::optional<QVariant> readField(const RecordSet& rs, const ColumnSpec& column);
// The strict conversion of a read value to the property's type.
QVariant convertTo(ValueType type, const QVariant& value);
// The value bound for a property's value under the column's write form.
QVariant boundValue(const ColumnSpec& column, const QVariant& propertyValue);

QString selectText(const QString& table, const QStringList& columns, const QString& key);
QString updateText(const QString& table, const QStringList& columns, const QString& key);
QString insertText(const QString& table, const QStringList& columns);
// The position of a column by name, ignoring letter case; stops the program for a name
// that the description lacks, which is a fault of the description.
int positionOf(const std::vector<ColumnSpec>& columnSpecs, const QString& table,
               const QString& name);

}  // namespace columns

// Which rows of a prescription number an UPDATE writes: an original fill's row takes
// every written column, a refill's leaves out those kept on the original's row only. Any
// other record's row is an original.
enum class RowWritten { Original, Refill };

// Where GetData goes when its test for a row fails (the query could not be opened): as
// the record's original handler resumed, into the branch the test opened. A record that
// asks "is there a row?" reads on; one that asks "is there none?" takes its missing-row
// steps.
enum class FailedRowTest { ReadsOn, MissesTheRow };

template <class Record>
class ColumnTable {
public:
    struct Column {
        QString name;
        Property<Record> property;
        ReadForm read;
        WriteForm write;
    };

    ColumnTable(QString table, QString key, std::initializer_list<Column> columns)
        : table_(std::move(table)), key_(std::move(key)), columns_(columns) {
        for (int i = 0; i < static_cast<int>(columns_.size()); ++i) {
            const Column& column = columns_[static_cast<size_t>(i)];
            specs_.push_back({column.name, column.property.type, column.read, column.write});
            all_.push_back(i);
            if (column.property.takesValue) selected_.push_back(i);
        }
    }

    const QString& table() const { return table_; }
    const QString& key() const { return key_; }
    const std::vector<Column>& columns() const { return columns_; }
    // Every column, in the order of the description.
    const ColumnOrder& all() const { return all_; }
    // Every column whose property takes a value, in the order of the description: what a
    // record's GetData selects when it names its columns.
    const ColumnOrder& selected() const { return selected_; }

    // The named columns in the order given.
    ColumnOrder order(std::initializer_list<const char*> names) const {
        ColumnOrder result;
        for (const char* name : names)
            result.push_back(columns::positionOf(specs_, table_, QString::fromLatin1(name)));
        return result;
    }

    // Statement column names of an order.
    QStringList names(const ColumnOrder& order) const {
        QStringList result;
        for (int i : order) result.append(columns_[static_cast<size_t>(i)].name);
        return result;
    }

    // "SELECT * FROM table WHERE key = ?"
    QString selectAll() const { return columns::selectText(table_, {}, key_); }
    // "SELECT c1, c2, ... FROM table WHERE key = ?" with the columns of the order.
    QString selectList(const ColumnOrder& order) const {
        return columns::selectText(table_, names(order), key_);
    }

    // The read of a GetData: opens the query with the key on the session's main connection
    // and tests for a row, each a step of the caller's frame; with a row, reads the order's
    // columns into the record. Gives whether the row was read; rs keeps the result for a
    // record that reads more of it. A missing row leaves the record to the caller.
    bool load(Frame& frame, RecordSet& rs, const QString& query, const QVariant& key,
              Record& record, const ColumnOrder& order,
              FailedRowTest failedTest = FailedRowTest::ReadsOn) const {
        frame([&] { rs = records::mainConnection().OpenRecordSet(query, {key}); });
        bool hasRow = failedTest == FailedRowTest::ReadsOn;
        frame([&] { hasRow = !rs.Eof(); });
        if (hasRow) read(frame, rs, record, order);
        return hasRow;
    }
    bool load(Frame& frame, const QString& query, const QVariant& key, Record& record,
              const ColumnOrder& order, FailedRowTest failedTest = FailedRowTest::ReadsOn) const {
        RecordSet rs;
        return load(frame, rs, query, key, record, order, failedTest);
    }

    // Reads the current row of rs into the record, one frame step per column that the
    // order (or the description) names and its read form reads.
    void read(Frame& frame, const RecordSet& rs, Record& record) const {
        read(frame, rs, record, all_);
    }
    void read(Frame& frame, const RecordSet& rs, Record& record, const ColumnOrder& order) const {
        for (int i : order) readColumn(frame, rs, record, i);
    }
    void readColumn(Frame& frame, const RecordSet& rs, Record& record, int i) const {
        const Column& column = columns_[static_cast<size_t>(i)];
        const ColumnSpec& columnSpec = specs_[static_cast<size_t>(i)];
        if (columnSpec.read.kind == ReadForm::Kind::NotRead) return;
        frame([&] {
            const std::optional<QVariant> value = columns::readField(rs, columnSpec);
            if (value) column.property.set(record, columns::convertTo(columnSpec.type, *value));
        });
    }

    // The write of an Update: the UPDATE below, run on the session's main connection as one
    // step of the caller's frame.
    void store(Frame& frame, const Record& record, const QVariant& keyValue,
               RowWritten row = RowWritten::Original) const {
        frame([&] {
            const BoundStatement statement = update(record, keyValue, row);
            records::mainConnection().Execute(statement.sql, statement.params);
        });
    }

    // "UPDATE table SET c1 = ?, ... WHERE key = ?": the columns the row takes, in the order
    // of the description, their bound values, then the key's value.
    BoundStatement update(const Record& record, const QVariant& keyValue,
                          RowWritten row = RowWritten::Original) const {
        auto [written, params] = values(record, row);
        params.append(keyValue);
        return {columns::updateText(table_, written, key_), params};
    }

    // "INSERT INTO table (c1, ...) VALUES (?, ...)": every written column.
    BoundStatement insert(const Record& record) const {
        auto [written, params] = values(record, RowWritten::Original);
        return {columns::insertText(table_, written), params};
    }

    // The value the column's write form binds for the record's property.
    QVariant bound(const Record& record, int i) const {
        return columns::boundValue(specs_[static_cast<size_t>(i)],
                                   columns_[static_cast<size_t>(i)].property.get(record));
    }

private:
    // The names and bound values of the columns the row takes.
    std::pair<QStringList, QVariantList> values(const Record& record, RowWritten row) const {
        QStringList written;
        QVariantList params;
        for (int i : all_) {
            const WriteForm& form = specs_[static_cast<size_t>(i)].write;
            if (form.kind == WriteForm::Kind::NotWritten) continue;
            if (form.originalRowOnly && row == RowWritten::Refill) continue;
            written.append(columns_[static_cast<size_t>(i)].name);
            params.append(bound(record, i));
        }
        return {written, params};
    }

    QString table_;
    QString key_;
    std::vector<Column> columns_;
    std::vector<ColumnSpec> specs_;
    ColumnOrder all_;
    ColumnOrder selected_;
};

}  // namespace tvrx
