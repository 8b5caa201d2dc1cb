#include "session/text/ClaimNotation.h"
#include "session/text/Encodings.h"
#include "support/DataRows.h"
#include "support/SessionFixture.h"

#include <QMetaType>

#include <charconv>
#include <functional>
#include <map>
#include <optional>
#include <string>

namespace tvrx {
namespace {

using namespace mdlMain;

// A claim text written in notation; bad notation fails the test.
QString claim(const QString& notation) {
    const NotationResult read = fromNotation(notation);
    EXPECT_TRUE(read) << notation.toStdString() << ": " << read.error.toStdString();
    return read.text.value_or(QString());
}

// Expected texts compare in the form the codec writes, so "<x20>" and a blank are one.
QString canonical(const QString& cell) {
    return cell == u"<none>" ? cell : toNotation(claim(cell));
}

QString shown(double value) {
    char text[32];
    return QString::fromLatin1(text, std::to_chars(text, text + sizeof text, value).ptr - text);
}

double number(const QString& cell) {
    const std::string text = cell.toStdString();
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    EXPECT_TRUE(error == std::errc() && end == text.data() + text.size()) << text;
    return value;
}

// The functions that take a text by reference and give another.
template <QString (*function)(QString&)>
QStringList textCall(const QStringList& in) {
    QString text = claim(in[0]);
    const QString result = function(text);
    return {toNotation(result), toNotation(text)};
}

// How a row of tests/data/encodings.tsv calls its function: the number of inputs, which of
// them are passed by reference, and the call, giving the result and those arguments
// afterwards, in notation except for the one output that is a number.
struct Call {
    qsizetype inputs;
    QList<qsizetype> byReference;
    std::function<QStringList(const QStringList&)> run;
    qsizetype numberOutput = -1;
};

const std::map<QString, Call>& calls() {
    static const std::map<QString, Call> calls{
        {"FixedLength",
         {3,
          {0},
          [](const QStringList& in) -> QStringList {
              QString text = claim(in[0]);
              const QString result = FixedLength(text, qint16(number(in[1])), claim(in[2]));
              return {toNotation(result), toNotation(text)};
          }}},
        {"OverPunch",
         {1,
          {0},
          [](const QStringList& in) -> QStringList {
              QString text = claim(in[0]);
              const double result = OverPunch(text);
              return {shown(result), toNotation(text)};
          },
          0}},
        {"OverPunchReturn",
         {1,
          {0},
          [](const QStringList& in) -> QStringList {
              double amount = number(in[0]);
              const QString result = OverPunchReturn(amount);
              return {toNotation(result), shown(amount)};
          },
          1}},
        {"GetField",
         {4,
          {2, 3},
          [](const QStringList& in) -> QStringList {
              QString separator = claim(in[2]);
              QString scan = claim(in[3]);
              const std::optional<QString> value =
                  GetField(claim(in[0]), claim(in[1]), separator, scan);
              return {value ? toNotation(*value) : QStringLiteral("<none>"), toNotation(separator),
                      toNotation(scan)};
          }}},
        {"PhoneString", {1, {0}, textCall<PhoneString>}},
        {"ZipString", {1, {0}, textCall<ZipString>}},
    };
    return calls;
}

using EncodingsTest = test::SessionFixture;

TEST_F(EncodingsTest, EveryRowOfTheDataFile) {
    for (const test::DataRow& row : test::dataRows(QStringLiteral("encodings.tsv"))) {
        SCOPED_TRACE(row.where);
        QStringList cells = row.cells;
        const auto call = calls().find(cells.takeFirst());
        ASSERT_NE(call, calls().end()) << "unknown function";
        const Call& c = call->second;
        const qsizetype expectedCells = c.inputs + 1 + c.byReference.size() + 2;
        ASSERT_LE(cells.size(), expectedCells) << "too many fields";
        while (cells.size() < expectedCells) cells << QString();
        for (const QString& cell : cells) {
            EXPECT_TRUE(cell == cell.trimmed())
                << "write a blank at either end of a field as <x20>";
        }

        const QStringList inputs = cells.mid(0, c.inputs);
        const QStringList actual = c.run(inputs);
        for (qsizetype i = 0; i < actual.size(); ++i) {
            QString cell = cells[c.inputs + i];
            if (i > 0 && cell == u"<same>") cell = inputs[c.byReference[i - 1]];
            const QString expected = i == c.numberOutput ? shown(number(cell)) : canonical(cell);
            EXPECT_EQ(actual[i].toStdString(), expected.toStdString())
                << (i == 0 ? "result" : "by-reference argument afterwards");
        }
        QStringList reported;
        for (const ErrorReport& report : reporter->reports()) {
            reported << report.number;
            EXPECT_EQ(report.location.toStdString(), "mdlMain:" + call->first.toStdString());
            if (!cells.last().isEmpty()) {
                EXPECT_EQ(toNotation(report.details).toStdString(),
                          canonical(cells.last()).toStdString());
            }
        }
        EXPECT_EQ(reported.join(u' ').toStdString(), cells[cells.size() - 2].toStdString())
            << "failures reported";
        reporter->clear();
    }
}

// Position 32767 is the last a 16-bit position reaches; the scans are long generated texts.
TEST_F(EncodingsTest, GetFieldReportsFailuresOfItsArithmetic) {
    const QString value = claim("<FS>C9ABC");
    const struct {
        const char* what;
        QString scan;
        std::optional<QString> expected;
        QList<std::pair<int, int>> overflows;  // the field position and length each shows
    } cases[] = {
        {"last position that works", QString(32763, u'x') + value, "ABC", {}},
        {"value starts past 32767", QString(32764, u'x') + value, std::nullopt, {{32765, 3}}},
        {"search start past 32767",
         QString(32766, u'x') + value,
         std::nullopt,
         {{32767, 0}, {32767, 0}}},
        {"field past 32767", QString(32767, u'x') + value, std::nullopt, {{0, 0}}},
        {"value longer than 32767", value + QString(32768, u'x'), "", {{1, 0}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        QString separator;
        QString scan = c.scan;
        EXPECT_EQ(GetField(QStringLiteral("C9"), {}, separator, scan), c.expected);
        ASSERT_EQ(reporter->reports().size(), c.overflows.size());
        for (qsizetype i = 0; i < c.overflows.size(); ++i) {
            const ErrorReport& report = reporter->reports().at(i);
            EXPECT_EQ(report.number, "6");
            EXPECT_EQ(report.location, "mdlMain:GetField");
            EXPECT_EQ(report.details, QStringLiteral("Scan: %1, Field Pos: %2, Field Len: %3")
                                          .arg(scan)
                                          .arg(c.overflows.at(i).first)
                                          .arg(c.overflows.at(i).second));
        }
        reporter->clear();
    }
}

TEST_F(EncodingsTest, ScreenForNull) {
    struct Case {
        QVariant value;
        std::optional<QVariant> defaultValue;
        QVariant expected;
    };
    const QVariant nullInteger(QMetaType::fromType<int>());
    const Case cases[] = {
        {QVariant(5), std::nullopt, QVariant(5)},
        {QVariant(QString()), std::nullopt, QVariant(QString())},
        {QVariant(5), QVariant(7), QVariant(5)},
        {QVariant(), std::nullopt, QVariant(QStringLiteral(""))},
        {nullInteger, std::nullopt, QVariant(QStringLiteral(""))},
        {nullInteger, QVariant(7), QVariant(7)},
        {QVariant(), QVariant(), QVariant()},
    };
    for (const Case& c : cases) {
        const QVariant result = ScreenForNull(c.value, c.defaultValue);
        EXPECT_EQ(result.metaType(), c.expected.metaType()) << c.value.typeName();
        EXPECT_EQ(result, c.expected);
        EXPECT_EQ(result.isNull(), c.expected.isNull());
    }
}

}  // namespace
}  // namespace tvrx
