#include "session/text/Conversions.h"

#include "session/runtime/Failure.h"
#include "session/text/Currency.h"
#include "session/text/DateDiff.h"
#include "support/MarkdownTables.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QStringList>

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <map>
#include <optional>
#include <string>

// The cases are the tables of docs/CONVERSIONS.md, read from the page itself; the notation
// of its cells is explained at the top of the page.
namespace tvrx::conv {
namespace {

test::MarkdownTable conversionsTable(const char* heading) {
    return test::markdownTable(QStringLiteral(TVRX_SOURCE_DIR "/docs/CONVERSIONS.md"),
                               QString::fromUtf8(heading));
}

// A number cell: "1E+20", "-0", "0.1 + 0.2", "1 / 3", "infinity", "not a number".
std::optional<double> number(const QString& cell) {
    if (cell == u"infinity") return INFINITY;
    if (cell == u"not a number") return NAN;
    for (const QString& op : {QStringLiteral(" + "), QStringLiteral(" / ")}) {
        const qsizetype at = cell.indexOf(op);
        if (at < 0) continue;
        const std::optional<double> left = number(cell.left(at));
        const std::optional<double> right = number(cell.mid(at + op.size()));
        if (!left || !right) return std::nullopt;
        return op == u" + " ? *left + *right : *left / *right;
    }
    const std::string text = cell.toStdString();
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

QDateTime dateTime(const QString& cell) {
    for (const char* format : {"M/d/yyyy h:mm:ss.zzz", "M/d/yyyy h:mm:ss", "M/d/yyyy h:mm"}) {
        QDateTime value = QDateTime::fromString(cell, QString::fromLatin1(format));
        if (value.isValid()) return value;
    }
    return {};
}

// An input cell as the value it stands for; a cell with several texts stands for each.
QList<QVariant> inputs(const QString& cell) {
    if (cell == u"invalid `QVariant`") return {QVariant()};
    if (cell == u"null `QString` column value") return {QVariant(QMetaType::fromType<QString>())};
    if (cell == u"true" || cell == u"false") return {QVariant(cell == u"true")};
    if (const std::optional<QStringList> texts = test::quotedTexts(cell)) {
        return QList<QVariant>(texts->begin(), texts->end());
    }
    if (cell.startsWith(u"string list ")) {
        if (const auto list = test::quotedTexts(cell.mid(12))) return {QVariant(*list)};
    }
    if (cell.startsWith(u"date ")) {
        const QDate date = QDate::fromString(cell.mid(5), QStringLiteral("M/d/yyyy"));
        if (date.isValid()) return {QVariant(date)};
    }
    if (cell.startsWith(u"time ")) {
        const QTime time = QTime::fromString(cell.mid(5), QStringLiteral("h:mm"));
        if (time.isValid()) return {QVariant(time)};
    }
    // A number with its type in brackets; a bare one is an int unless it has a point.
    static const QRegularExpression typed(QStringLiteral(R"(^(.*) \(([a-z0-9 -]+)\)$)"));
    const QRegularExpressionMatch match = typed.match(cell);
    const QString value = match.hasMatch() ? match.captured(1) : cell;
    const QString type = match.hasMatch()       ? match.captured(2)
                         : value.contains(u'.') ? QStringLiteral("double")
                                                : QStringLiteral("int");
    bool whole = false;
    const qlonglong integer = value.toLongLong(&whole);
    const std::optional<double> real = number(value);
    const std::optional<QStringList> bytes = test::quotedTexts(value);
    if (type == u"int" && whole && integer == int(integer)) return {QVariant(int(integer))};
    if (type == u"64-bit" && whole) return {QVariant(integer)};
    if (type == u"double" && real) return {QVariant(*real)};
    if (type == u"byte array" && bytes && bytes->size() == 1) {
        return {QVariant(bytes->front().toLatin1())};
    }
    if (const QDateTime at = dateTime(cell); at.isValid()) return {QVariant(at)};
    return {};
}

QList<QString> texts(const QString& cell) {
    return test::quotedTexts(cell).value_or(QStringList());
}

QList<double> numbers(const QString& cell) {
    const std::optional<double> value = number(cell);
    return value ? QList<double>{*value} : QList<double>();
}

QList<QDateTime> dateTimes(const QString& cell) {
    const QDateTime value = dateTime(cell);
    return value.isValid() ? QList<QDateTime>{value} : QList<QDateTime>();
}

// Outcomes compare as text, so that a failing row shows both sides as the table writes
// them: a double in its shortest exact form (so "-0" is not "0"), "#" and a failure number.
std::string shown(double value) {
    char text[32];
    return std::string(text, std::to_chars(text, text + sizeof text, value).ptr);
}
std::string shown(qint32 value) {
    return std::to_string(value);
}
std::string shown(bool value) {
    return value ? "True" : "False";
}
std::string shown(const QString& value) {
    return value.toStdString();
}
std::string shown(const QDateTime& value) {
    return value.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")).toStdString();
}

template <class Call>
std::string outcomeOf(Call&& call) {
    try {
        return shown(call());
    } catch (const Failure& failure) {
        return "#" + std::to_string(failure.number());
    }
}

// The outcome a result cell expects, in the form outcomeOf gives.
std::string expected(const QString& cell) {
    const std::optional<QStringList> text = test::quotedTexts(cell);
    if (text && text->size() == 1) return text->front().toStdString();
    if (const std::optional<double> value = number(cell)) return shown(*value);
    return cell.toStdString();
}

template <class Arg>
using Outcome = std::string (*)(const Arg&);

template <auto function, class Arg>
std::string outcome(const Arg& arg) {
    return outcomeOf([&] { return function(arg); });
}

// Tables whose first column is the input and whose other columns are the results of the
// functions the map names by column header.
template <class Arg>
void checkColumns(const char* heading, QList<Arg> (*read)(const QString&),
                  const std::map<QString, Outcome<Arg>>& functions) {
    const test::MarkdownTable table = conversionsTable(heading);
    for (const QString& column : table.header.mid(1)) {
        EXPECT_TRUE(functions.contains(column) || column == u"Note")
            << heading << ": no function for the column " << column.toStdString();
    }
    for (const test::MarkdownRow& row : table.rows) {
        const QList<Arg> args = read(row.cells[0]);
        EXPECT_FALSE(args.isEmpty()) << row.where.toStdString() << ": the input cannot be read";
        for (qsizetype column = 1; column < row.cells.size(); ++column) {
            const auto function = functions.find(table.header[column]);
            if (function == functions.end()) continue;
            for (const Arg& arg : args) {
                EXPECT_EQ(function->second(arg), expected(row.cells[column]))
                    << row.where.toStdString() << " (" << table.header[column].toStdString() << ")";
            }
        }
    }
}

// Tables with a "Function" column: each row names the function its value goes through.
void checkNamedFunctions(const char* heading, const std::map<QString, Outcome<double>>& functions) {
    for (const test::MarkdownRow& row : conversionsTable(heading).rows) {
        const auto function = functions.find(row.cells[0]);
        const std::optional<double> value = number(row.cells[1]);
        if (function == functions.end() || !value) {
            ADD_FAILURE() << row.where.toStdString() << ": the row cannot be read";
            continue;
        }
        EXPECT_EQ(function->second(*value), expected(row.cells[2])) << row.where.toStdString();
    }
}

TEST(ConversionsTest, ValReadsTheLeadingNumberAndTrimmingRemovesBlanksOnly) {
    checkColumns<QString>("## Numeric value of a text: `Val`", texts,
                          {{"Result", outcome<Val, QString>}});
    checkColumns<QString>("## Trimming: `Trim`, `LTrim`, `RTrim`", texts,
                          {{"Trim", outcome<Trim, QString>},
                           {"LTrim", outcome<LTrim, QString>},
                           {"RTrim", outcome<RTrim, QString>}});
}

TEST(ConversionsTest, StrictNumbersFailWhereTheRuntimeFails) {
    checkColumns<QVariant>(
        "## Strict conversions: `ToDouble`, `ToInteger`, `ToLong`, `ToCurrency`, `ToBoolean`",
        inputs,
        {{"ToDouble", outcome<ToDouble, QVariant>},
         {"ToInteger", outcome<ToInteger, QVariant>},
         {"ToLong", outcome<ToLong, QVariant>},
         {"ToCurrency", outcome<ToCurrency, QVariant>},
         {"ToBoolean", outcome<ToBoolean, QVariant>}});
}

TEST(ConversionsTest, NarrowingRoundingAndTextOfADouble) {
    checkColumns<double>(
        "### A double into a 16-bit or 32-bit member: `IntegerFromDouble`, `LongFromDouble`",
        numbers,
        {{"IntegerFromDouble", outcome<IntegerFromDouble, double>},
         {"LongFromDouble", outcome<LongFromDouble, double>}});
    checkColumns<double>("## Currency form: `FormatCurrency`", numbers,
                         {{"Text", outcome<FormatCurrency, double>}});
    const std::map<QString, Outcome<double>> named{
        {"RoundHalfEven", outcome<RoundHalfEven, double>},
        {"WholeHundredths", outcome<WholeHundredths, double>},
        {"WholeThousandths", outcome<WholeThousandths, double>},
        {"RoundCurrency", outcome<RoundCurrency, double>},
        {"NumberText", outcome<NumberText, double>},
        {"NumberTextSigned", outcome<NumberTextSigned, double>},
        {"NumberTextRTrimmed", outcome<NumberTextRTrimmed, double>},
        {"PlainNumber", outcome<PlainNumber, double>}};
    checkNamedFunctions("## Rounding", named);
    checkNamedFunctions("## Number to text", named);
}

// A currency value rounds as RoundCurrency does, made from a number directly or through
// a QVariant, and gives the rounded number back.
TEST(ConversionsTest, CurrencyValuesRoundAsRoundCurrency) {
    for (const test::MarkdownRow& row : conversionsTable("## Rounding").rows) {
        if (row.cells[0] != u"RoundCurrency") continue;
        const double rounded = *number(row.cells[2]);
        const Currency assigned = *number(row.cells[1]);
        EXPECT_EQ(static_cast<double>(assigned), rounded) << row.where.toStdString();
        EXPECT_EQ(QVariant(*number(row.cells[1])).value<Currency>(), rounded)
            << row.where.toStdString();
        EXPECT_EQ(QVariant::fromValue(assigned).toDouble(), rounded) << row.where.toStdString();
    }
}

TEST(ConversionsTest, NumberPictures) {
    for (const test::MarkdownRow& row : conversionsTable("## Number pictures: `Format`").rows) {
        const QList<QString> picture = texts(row.cells[0]);
        const std::optional<double> value = number(row.cells[1]);
        ASSERT_TRUE(picture.size() == 1 && value) << row.where.toStdString();
        EXPECT_EQ(shown(Format(*value, picture.front())), expected(row.cells[2]))
            << row.where.toStdString();
    }
    // An over-punched amount is formatted from its default text read back as a number.
    for (double value : {2.675, 1.005, 1.0 / 3, -1234.5678, 0.1 + 0.2, 1e-7, 123456789.125}) {
        EXPECT_EQ(Format(Val(NumberText(value)), "0.00"), Format(value, "0.00")) << value;
    }
}

TEST(ConversionsTest, StrictDatesAndTheDefaultTextOfADate) {
    checkColumns<QVariant>("### Strict conversion: `ToDate`", inputs,
                           {{"Date", outcome<ToDate, QVariant>}});
    checkColumns<QDateTime>("### Default text of a date: `DateTimeText`", dateTimes,
                            {{"Text", outcome<DateTimeText, QDateTime>}});
    EXPECT_EQ(ToDate(QVariant(46095.25)).timeSpec(), Qt::LocalTime);
    EXPECT_EQ(ZeroDate(), QDateTime(QDate(1899, 12, 30), QTime(0, 0)));
}

// The column headers are the dates each picture is applied to.
TEST(ConversionsTest, DatePictures) {
    const test::MarkdownTable table = conversionsTable("### Date pictures: `FormatDate`");
    for (const test::MarkdownRow& row : table.rows) {
        const QList<QString> picture = texts(row.cells[0]);
        ASSERT_EQ(picture.size(), 1) << row.where.toStdString();
        for (qsizetype column = 1; column < row.cells.size(); ++column) {
            const QDateTime at = dateTime(table.header[column]);
            ASSERT_TRUE(at.isValid()) << table.header[column].toStdString();
            EXPECT_EQ(shown(FormatDate(at, picture.front())), expected(row.cells[column]))
                << row.where.toStdString() << " (" << table.header[column].toStdString() << ")";
        }
    }
    EXPECT_EQ(FormatDate(QDateTime(), "MM/DD/YYYY"), "");
}

TEST(ConversionsTest, DatesOfCoverage) {
    for (const test::MarkdownRow& row :
         conversionsTable("### Date of coverage: `CoverageDate`").rows) {
        const QList<QString> answers = texts(row.cells[0]);
        ASSERT_FALSE(answers.isEmpty()) << row.where.toStdString();
        const std::optional<QDate> expected =
            row.cells[1] == u"not a date"
                ? std::nullopt
                : std::optional(QDate::fromString(row.cells[1].mid(5), QStringLiteral("M/d/yyyy")));
        ASSERT_TRUE(!expected || expected->isValid()) << row.where.toStdString();
        for (const QString& answer : answers) {
            EXPECT_EQ(CoverageDate(answer), expected)
                << row.where.toStdString() << " \"" << answer.toStdString() << '"';
        }
    }
}

TEST(ConversionsTest, DateDifferences) {
    for (const test::MarkdownRow& row :
         conversionsTable("### Date differences: `DateDiff` (session/text/DateDiff.h)").rows) {
        const QVariant from =
            row.cells[0] == u"null" ? QVariant() : QVariant(dateTime(row.cells[0]));
        const QDateTime to = dateTime(row.cells[1]);
        const auto difference = [&](DateInterval interval) {
            return outcomeOf([&] { return qint32(DateDiff(interval, from, to)); });
        };
        EXPECT_EQ(difference(DateInterval::Day), expected(row.cells[2])) << row.where.toStdString();
        EXPECT_EQ(difference(DateInterval::Month), expected(row.cells[3]))
            << row.where.toStdString();
    }
}

}  // namespace
}  // namespace tvrx::conv
