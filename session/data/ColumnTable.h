#pragma once

#include "session/data/RecordSet.h"
#include "session/runtime/Frame.h"

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
// reads a row into a record and builds the bound statements that write it back.
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
//         {"Fee", currency(&C::Fee), R::zeroText(), W::value()},
//         {"Code", member(&C::Code), R::text().at(3), W::doubledThenCut(10)},
//     });
//     // Where the row is read in another order than the statement writes it:
//     static const ColumnOrder readOrder = table.order({"InsID", "ExpDate", "subscribersname"});
//
//     Frame frame("PATINS:GetData");
//     RecordSet rs;
//     frame([&] { rs = connection.OpenRecordSet(table.selectAll(), {PatInsID}); });
//     table.read(frame, rs, *this, readOrder);  // one frame step per column
//
//     Frame frame("PATINS:Update");
//     frame([&] {
//         const BoundStatement update = table.update(*this, PatInsID);  // description's order
//         connection.Execute(update.sql, update.params);
//     });
//
// A record whose SELECT list, read and UPDATE each take their own order names three
// orders and passes them: table.selectList(selectOrder), table.read(frame, rs, *this,
// readOrder), table.update(*this, key, updateOrder). An order may leave columns out (a
// refill's update without the original's columns). The description itself lists every
// column once; a column that one statement must not touch has R::none() or W::none().
//
// Reading a column: the read form turns the field into a value, then the strict conversion
// of the property's type (ToInteger, ToLong, ToCurrency, ToDate, ...) makes the property's
// value, then the setter stores it. Each column is its own step of the caller's frame, so
// a bad column costs one report and leaves its property as it was; the rest still reads.
//
// Writing a column: the write form turns the property's value into the value that the
// record's original statement text would have stored, and that value is bound. The
// statement's column list, its order and the key come from the same description.
namespace tvrx {

// The types of the record properties: 16-bit integer (qint16), 32-bit integer (qint32),
// double, currency (double rounded to four places), date (QDateTime), text, boolean.
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
    };

    Kind kind = Kind::NotRead;
    // NullScreen: the default; without one a null reads as the empty text.
    std::optional<QVariant> screenDefault;
    // Read by 0-based position in the result instead of by name.
    int position = -1;
    std::function<QVariant(const QVariant& field)> rule;

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

private:
    static WriteForm of(Kind kind) {
        WriteForm form;
        form.kind = kind;
        return form;
    }
};

// A property of a record: its type and how to get and set it. Values travel as QVariants
// of one kind per type: int for both integer types, double, QDateTime, QString, bool.
template <class Record>
struct Property {
    ValueType type;
    std::function<QVariant(const Record&)> get;
    std::function<void(Record&, const QVariant&)> set;
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
    } else {
        return QVariant::fromValue(value);
    }
}

template <class T>
T unheld(const QVariant& value) {
    if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
        return static_cast<T>(value.toInt());
    } else {
        return value.value<T>();
    }
}

}  // namespace columns

// A plain member: qint16, qint32, double, QDateTime, QString or bool.
template <class Record, class T>
Property<Record> member(T Record::*field) {
    return {columns::typeOf<T>(),
            [field](const Record& record) { return columns::held(record.*field); },
            [field](Record& record, const QVariant& value) {
                record.*field = columns::unheld<T>(value);
            }};
}

// A currency member: a double that conversions round to four places.
template <class Record>
Property<Record> currency(double Record::*field) {
    Property<Record> property = member(field);
    property.type = ValueType::Currency;
    return property;
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
        for (const Column& column : columns_)
            specs_.push_back({column.name, column.property.type, column.read, column.write});
        for (int i = 0; i < static_cast<int>(columns_.size()); ++i) all_.push_back(i);
    }

    const QString& table() const { return table_; }
    const QString& key() const { return key_; }
    const std::vector<Column>& columns() const { return columns_; }
    // Every column, in the order of the description.
    const ColumnOrder& all() const { return all_; }

    // The named columns in the order given.
    ColumnOrder order(std::initializer_list<const char*> names) const {
        ColumnOrder result;
        for (const char* name : names)
            result.push_back(columns::positionOf(specs_, table_, QString::fromLatin1(name)));
        return result;
    }

    // The columns named in a text, separated by blanks, in the order given.
    ColumnOrder order(const QString& names) const {
        ColumnOrder result;
        for (const QString& name : names.split(QLatin1Char(' '), Qt::SkipEmptyParts))
            result.push_back(columns::positionOf(specs_, table_, name));
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

    // Reads the current row of rs into the record, one frame step per column that the
    // order names and its read form reads.
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

    // "UPDATE table SET c1 = ?, ... WHERE key = ?": the written columns of the order, their
    // bound values, then the key's value.
    BoundStatement update(const Record& record, const QVariant& keyValue) const {
        return update(record, keyValue, all_);
    }
    BoundStatement update(const Record& record, const QVariant& keyValue,
                          const ColumnOrder& order) const {
        auto [written, params] = values(record, order);
        params.append(keyValue);
        return {columns::updateText(table_, written, key_), params};
    }

    // "INSERT INTO table (c1, ...) VALUES (?, ...)": the written columns of the order.
    BoundStatement insert(const Record& record) const { return insert(record, all_); }
    BoundStatement insert(const Record& record, const ColumnOrder& order) const {
        auto [written, params] = values(record, order);
        return {columns::insertText(table_, written), params};
    }

    // The value the column's write form binds for the record's property.
    QVariant bound(const Record& record, int i) const {
        return columns::boundValue(specs_[static_cast<size_t>(i)],
                                   columns_[static_cast<size_t>(i)].property.get(record));
    }

private:
    // The written columns' names and their bound values.
    std::pair<QStringList, QVariantList> values(const Record& record,
                                                const ColumnOrder& order) const {
        QStringList written;
        QVariantList params;
        for (int i : order) {
            if (specs_[static_cast<size_t>(i)].write.kind == WriteForm::Kind::NotWritten) continue;
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
};

}  // namespace tvrx
