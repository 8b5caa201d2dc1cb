#include "session/Conversions.h"

#include "session/Failure.h"

#include <QDateTime>
#include <QStringList>

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <initializer_list>
#include <string>

// Each table below is a table of docs/CONVERSIONS.md, row for row.
namespace tvrx::conv {
namespace {

// The failure number a call raises, 0 when it returns.
template <class Call>
long failureOf(Call&& call) {
    try {
        call();
    } catch (const Failure& failure) {
        return failure.number();
    }
    return 0;
}

// A result as the tables write it: the value, or "#" and the failure number.
std::string shown(double value) {
    char text[400];
    const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed).ptr;
    return std::string(text, end);
}
std::string shown(qint32 value) {
    return std::to_string(value);
}
std::string shown(bool value) {
    return value ? "True" : "False";
}
std::string shown(const QDateTime& value) {
    return value.toString("yyyy-MM-dd hh:mm:ss").toStdString();
}

template <class Call>
std::string outcomeOf(Call&& call) {
    try {
        return shown(call());
    } catch (const Failure& failure) {
        return "#" + std::to_string(failure.number());
    }
}

QVariant text(const char* latin1) {
    return QString::fromLatin1(latin1);
}

QDateTime at(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second));
}

struct TextCase {
    const char* text;
    double value;
    long failure = 0;
};

struct NumberCase {
    double value;
    const char* text;
};

void expectTexts(QString (*convert)(double), std::initializer_list<NumberCase> cases) {
    for (const NumberCase& c : cases) EXPECT_EQ(convert(c.value).toStdString(), c.text) << c.value;
}

struct RoundingCase {
    double value;
    double rounded;
};

void expectNumbers(double (*convert)(double), std::initializer_list<RoundingCase> cases) {
    for (const RoundingCase& c : cases) EXPECT_EQ(convert(c.value), c.rounded) << c.value;
}

TEST(ConversionsTest, ValReadsTheLeadingNumber) {
    const TextCase cases[] = {
        {"", 0},
        {"   ", 0},
        {"12", 12},
        {" 1 2", 12},
        {"\t-\n3", -3},
        {"+5", 5},
        {"- 5", -5},
        {"--5", 0},
        {".5", 0.5},
        {"-.5", -0.5},
        {"5.", 5},
        {".", 0},
        {"-", 0},
        {"-0", 0},
        {"1.2.3", 1.2},
        {"1E3", 1000},
        {"1e-2", 0.01},
        {"1D2", 100},
        {"1 E 3", 1000},
        {"1E", 1},
        {"1E+", 1},
        {"E5", 0},
        {"1.5E3.7", 1500},
        {"12abc", 12},
        {"0x1A", 0},
        {"INFO", 0},
        {"0-5", 0},
        {"1,000", 1},
        {"1\r2", 1},
        {"123456789012345678", 123456789012345678.0},
        {"0000000000000000000000000000000000000000000000000000000000000000000000012.5", 12.5},
        {"&HFF", 255},
        {"&hff", 255},
        {"& H 1F", 31},
        {"&HFFFF", -1},
        {"&H8000", -32768},
        {"&H10000", 65536},
        {"&HFFFFFFFF", -1},
        {"&H", 0},
        {"&HG", 0},
        {"&H1G", 1},
        {"&O17", 15},
        {"&O177777", -1},
        {"&O8", 0},
        {"-&H10", 0},
        {"&17", 0},
        {"1E-400", 0},
        {"1E400", 0, 6},
        {"-1E400", 0, 6},
        {"0.001E309", 1e306},
        {"&H100000000", 0, 6},
    };
    for (const TextCase& c : cases) {
        double value = -99;
        EXPECT_EQ(failureOf([&] { value = Val(QString::fromLatin1(c.text)); }), c.failure)
            << c.text;
        if (c.failure == 0) {
            EXPECT_EQ(value, c.value) << c.text;
        }
    }
    EXPECT_FALSE(std::signbit(Val("-0")));
    EXPECT_EQ(Val(QString("7") + QChar(0) + "1"), 7);
}

TEST(ConversionsTest, RoundingGoesToTheEvenNeighbour) {
    expectNumbers(RoundHalfEven, {{2.5, 2},
                                  {3.5, 4},
                                  {-2.5, -2},
                                  {-3.5, -4},
                                  {0.5, 0},
                                  {1.5, 2},
                                  {2.4999, 2},
                                  {2.5001, 3},
                                  {-0.4, 0},
                                  {1e20, 1e20}});
    expectNumbers(WholeHundredths, {{12.34, 1234},
                                    {0.125, 12},
                                    {-0.125, -12},
                                    {0.135, 14},
                                    {1.115, 112},
                                    {2.675, 268},
                                    {1.005, 100},
                                    {0.285, 28}});
    expectNumbers(WholeThousandths,
                  {{0.0005, 0}, {0.0015, 2}, {0.0025, 2}, {1.0005, 1000}, {0.1235, 124}});
    expectNumbers(RoundCurrency, {{1.23455, 1.2346},
                                  {2.00025, 2.0002},
                                  {1.00005, 1.0001},
                                  {-1.00005, -1.0001},
                                  {12.34565, 12.3456},
                                  {0.00005, 0}});
    EXPECT_FALSE(std::signbit(RoundHalfEven(-0.4)));
}

TEST(ConversionsTest, DefaultTextOfADouble) {
    expectTexts(NumberText, {{0, "0"},
                             {-0.0, "0"},
                             {12, "12"},
                             {-3, "-3"},
                             {0.5, "0.5"},
                             {-0.5, "-0.5"},
                             {1234.5, "1234.5"},
                             {0.1 + 0.2, "0.3"},
                             {1.0 / 3, "0.333333333333333"},
                             {2.0 / 3, "0.666666666666667"},
                             {123456789012345, "123456789012345"},
                             {999999999999999, "999999999999999"},
                             {999999999999999.9, "1E+15"},
                             {1e15, "1E+15"},
                             {1234567890123456, "1.23456789012346E+15"},
                             {-1.5e20, "-1.5E+20"},
                             {1e100, "1E+100"},
                             {0.0001, "0.0001"},
                             {0.00012345, "0.00012345"},
                             {0.00001, "1E-05"},
                             {1.5e-7, "1.5E-07"},
                             {1e-300, "1E-300"},
                             {INFINITY, "1.#INF"}});
    expectTexts(NumberTextSigned, {{0, " 0"},
                                   {12, " 12"},
                                   {-12, "-12"},
                                   {0.5, " .5"},
                                   {-0.5, "-.5"},
                                   {1234.5, " 1234.5"},
                                   {0.0001, " .0001"},
                                   {1e15, " 1E+15"},
                                   {-1.5e-7, "-1.5E-07"}});
    expectTexts(NumberTextRTrimmed, {{12, " 12"}, {-0.5, "-.5"}});
    expectTexts(PlainNumber, {{0.5, "0.5"}, {-1234.5, "-1234.5"}});
}

TEST(ConversionsTest, NumberPictures) {
    struct Case {
        const char* picture;
        double value;
        const char* text;
    };
    const Case cases[] = {
        {"0", 0, "0"},
        {"0", 2.5, "3"},
        {"0", -2.5, "-3"},
        {"0", 0.49, "0"},
        {"0", -0.4, "-0"},
        {"0", 1234567, "1234567"},
        {"0", 1e20, "100000000000000000000"},
        {"00", 7.49, "07"},
        {"00000", -2.5, "-00003"},
        {"00000000", 0, "00000000"},
        {"00000000", 1234, "00001234"},
        {"00000000", 1234.5, "00001235"},
        {"00000000", 123456789, "123456789"},
        {"0.00", 2.675, "2.68"},
        {"0.00", 1.005, "1.01"},
        {"0.00", 0.125, "0.13"},
        {"0.00", 9.995, "10.00"},
        {"0.00", -0.001, "-0.00"},
        {"0.##", 1.5, "1.5"},
        {"0.##", 1, "1."},
        {".00", 12.5, "12.50"},
        {"$ #.00", 0.5, "$ .50"},
        {"$ #.00", 0, "$ .00"},
        {"$ #.00", -1.5, "-$ 1.50"},
        {"$ #.00", 1234.567, "$ 1234.57"},
        {"$ 0.00", 0.5, "$ 0.50"},
        {"$ 0.00", 12, "$ 12.00"},
        {"##0.00 %", 0.125, "12.50 %"},
        {"##0.00 %", 0, "0.00 %"},
        {"##0.00 %", 1.23456, "123.46 %"},
        {"##0.00 %", 12.3456, "1234.56 %"},
        {"#######", 0, ""},
        {"#######", 1234.5, "1235"},
        {"#######", -3, "-3"},
        {"#######", 123456789, "123456789"},
        {"", 0.5, "0.5"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Format(c.value, c.picture).toStdString(), c.text)
            << c.picture << " of " << c.value;
    }
    // An over-punched amount is formatted from its default text read back as a number.
    for (double value : {2.675, 1.005, 1.0 / 3, -1234.5678, 0.1 + 0.2, 1e-7, 123456789.125}) {
        EXPECT_EQ(Format(Val(NumberText(value)), "0.00"), Format(value, "0.00")) << value;
    }
}

TEST(ConversionsTest, TrimmingRemovesBlanksOnly) {
    struct Case {
        QString text;
        const char* trimmed;
        const char* left;
        const char* right;
    };
    const Case cases[] = {
        {"  a b  ", "a b", "a b  ", "  a b"},
        {"\ta\t", "\ta\t", "\ta\t", "\ta\t"},
        {"   ", "", "", ""},
        {"", "", "", ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Trim(c.text).toStdString(), c.trimmed) << c.text.toStdString();
        EXPECT_EQ(LTrim(c.text).toStdString(), c.left) << c.text.toStdString();
        EXPECT_EQ(RTrim(c.text).toStdString(), c.right) << c.text.toStdString();
    }
    const QString withNul = QString(" ") + QChar(0) + "x ";
    EXPECT_EQ(Trim(withNul), QString(QChar(0)) + "x");
}

TEST(ConversionsTest, StrictNumbersFailWhereTheRuntimeFails) {
    struct Case {
        QVariant input;
        const char* asDouble;
        const char* asInteger;
        const char* asLong;
        const char* asCurrency;
        const char* asBoolean;
    };
    const Case cases[] = {
        {text("12"), "12", "12", "12", "12", "True"},
        {text(" 12  "), "12", "12", "12", "12", "True"},
        {text("+5"), "5", "5", "5", "5", "True"},
        {text("0"), "0", "0", "0", "0", "False"},
        {text("2.5"), "2.5", "2", "2", "2.5", "True"},
        {text("3.5"), "3.5", "4", "4", "3.5", "True"},
        {text("-2.5"), "-2.5", "-2", "-2", "-2.5", "True"},
        {text(".5"), "0.5", "0", "0", "0.5", "True"},
        {text("5."), "5", "5", "5", "5", "True"},
        {text("1E3"), "1000", "1000", "1000", "1000", "True"},
        {text("1.5e-2"), "0.015", "0", "0", "0.015", "True"},
        {text("1D2"), "100", "100", "100", "100", "True"},
        {text("1.00005"), "1.00005", "1", "1", "1.0001", "True"},
        {text("True"), "-1", "-1", "-1", "-1", "True"},
        {text(" TRUE "), "-1", "-1", "-1", "-1", "True"},
        {text("false"), "0", "0", "0", "0", "False"},
        {text("&HFFFF"), "-1", "-1", "-1", "-1", "True"},
        {text("&H8000"), "-32768", "-32768", "-32768", "-32768", "True"},
        {text("&H10000"), "65536", "#6", "65536", "65536", "True"},
        {text("&O17"), "15", "15", "15", "15", "True"},
        {text("32767"), "32767", "32767", "32767", "32767", "True"},
        {text("32767.5"), "32767.5", "#6", "32768", "32767.5", "True"},
        {text("32766.5"), "32766.5", "32766", "32766", "32766.5", "True"},
        {text("32768"), "32768", "#6", "32768", "32768", "True"},
        {text("-32768.5"), "-32768.5", "-32768", "-32768", "-32768.5", "True"},
        {text("-32769"), "-32769", "#6", "-32769", "-32769", "True"},
        {text("2147483647"), "2147483647", "#6", "2147483647", "2147483647", "True"},
        {text("2147483647.5"), "2147483647.5", "#6", "#6", "2147483647.5", "True"},
        {text("-2147483648.5"), "-2147483648.5", "#6", "-2147483648", "-2147483648.5", "True"},
        {text("-2147483649"), "-2147483649", "#6", "#6", "-2147483649", "True"},
        {text("922337203685477"), "922337203685477", "#6", "#6", "922337203685477", "True"},
        {text("922337203685478"), "922337203685478", "#6", "#6", "#6", "True"},
        {text("1E400"), "#6", "#6", "#6", "#6", "#6"},
        {text("&H100000000"), "#6", "#6", "#6", "#6", "#6"},
        {text(""), "#13", "#13", "#13", "#13", "#13"},
        {text("   "), "#13", "#13", "#13", "#13", "#13"},
        {text("0-5"), "#13", "#13", "#13", "#13", "#13"},
        {text("0True"), "#13", "#13", "#13", "#13", "#13"},
        {text("1,2,3"), "#13", "#13", "#13", "#13", "#13"},
        {text("12abc"), "#13", "#13", "#13", "#13", "#13"},
        {text("1E"), "#13", "#13", "#13", "#13", "#13"},
        {text("."), "#13", "#13", "#13", "#13", "#13"},
        {text("-"), "#13", "#13", "#13", "#13", "#13"},
        {text("1 2"), "#13", "#13", "#13", "#13", "#13"},
        {text("- 5"), "#13", "#13", "#13", "#13", "#13"},
        {text("$5"), "#13", "#13", "#13", "#13", "#13"},
        {text("\t5"), "#13", "#13", "#13", "#13", "#13"},
        {text("&H"), "#13", "#13", "#13", "#13", "#13"},
        {text("yes"), "#13", "#13", "#13", "#13", "#13"},
        {QVariant(), "#94", "#94", "#94", "#94", "#94"},
        {QVariant(QMetaType::fromType<QString>()), "#94", "#94", "#94", "#94", "#94"},
        {QVariant(true), "-1", "-1", "-1", "-1", "True"},
        {QVariant(false), "0", "0", "0", "0", "False"},
        {QVariant(40000), "40000", "#6", "40000", "40000", "True"},
        {QVariant(2.5), "2.5", "2", "2", "2.5", "True"},
        {QVariant(qlonglong(3000000000)), "3000000000", "#6", "#6", "3000000000", "True"},
        {QVariant(QByteArray(" 12")), "12", "12", "12", "12", "True"},
        {QVariant(QDate(2026, 3, 14)), "46095", "#6", "46095", "46095", "True"},
        {QVariant(at(2026, 3, 14, 6)), "46095.25", "#6", "46095", "46095.25", "True"},
        {QVariant(at(1899, 12, 29, 6)), "-1.25", "-1", "-1", "-1.25", "True"},
        {QVariant(QTime(18, 0)), "0.75", "1", "1", "0.75", "True"},
        {QVariant(QStringList{"1"}), "#13", "#13", "#13", "#13", "#13"},
    };
    for (const Case& c : cases) {
        const std::string input = c.input.toString().toStdString();
        EXPECT_EQ(outcomeOf([&] { return ToDouble(c.input); }), c.asDouble) << input;
        EXPECT_EQ(outcomeOf([&] { return qint32{ToInteger(c.input)}; }), c.asInteger) << input;
        EXPECT_EQ(outcomeOf([&] { return ToLong(c.input); }), c.asLong) << input;
        EXPECT_EQ(outcomeOf([&] { return ToCurrency(c.input); }), c.asCurrency) << input;
        EXPECT_EQ(outcomeOf([&] { return ToBoolean(c.input); }), c.asBoolean) << input;
    }
}

TEST(ConversionsTest, NarrowingADoubleRoundsThenChecksTheRange) {
    struct Case {
        double value;
        const char* asInteger;
        const char* asLong;
    };
    const Case cases[] = {
        {32767.5, "#6", "32768"},   {-32768.5, "-32768", "-32768"},
        {2147483647.5, "#6", "#6"}, {-2147483648.5, "#6", "-2147483648"},
        {NAN, "#6", "#6"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(outcomeOf([&] { return qint32{IntegerFromDouble(c.value)}; }), c.asInteger);
        EXPECT_EQ(outcomeOf([&] { return LongFromDouble(c.value); }), c.asLong);
    }
}

TEST(ConversionsTest, CurrencyForm) {
    expectTexts(FormatCurrency, {{1234.5, "$1,234.50"},
                                 {-1234.5, "($1,234.50)"},
                                 {0, "$0.00"},
                                 {0.125, "$0.13"},
                                 {12, "$12.00"},
                                 {1234567.891, "$1,234,567.89"},
                                 {999.995, "$1,000.00"},
                                 {-0.001, "($0.00)"}});
}

TEST(ConversionsTest, StrictDates) {
    struct Case {
        QVariant input;
        const char* date;
    };
    const Case cases[] = {
        {text("3/14/2026"), "2026-03-14 00:00:00"},
        {text(" 03/14/2026 9:26 "), "2026-03-14 09:26:00"},
        {text("3/14/2026 9:26:53 PM"), "2026-03-14 21:26:53"},
        {text("3/14/2026 12:00:00 am"), "2026-03-14 00:00:00"},
        {text("3/14/2026 12:30PM"), "2026-03-14 12:30:00"},
        {text("2026-03-14"), "2026-03-14 00:00:00"},
        {text("2026-03-14 21:26:53"), "2026-03-14 21:26:53"},
        {text("2026-03-14T21:26:53"), "2026-03-14 21:26:53"},
        {text("9:26:53 AM"), "1899-12-30 09:26:53"},
        {text("2/30/2026"), "#13"},
        {text("3/14/26"), "#13"},
        {text("14.03.2026"), "#13"},
        {text("3/14/2026 25:00"), "#13"},
        {text("3/14/2026 13:00 PM"), "#13"},
        {text("2026-03-14T"), "#13"},
        {text("3/14/2026x"), "#13"},
        {text(""), "#13"},
        {text("46095"), "#13"},
        {QVariant(46095.25), "2026-03-14 06:00:00"},
        {QVariant(0), "1899-12-30 00:00:00"},
        {QVariant(-1.25), "1899-12-29 06:00:00"},
        {QVariant(0.9999999999), "1899-12-31 00:00:00"},
        {QVariant(true), "1899-12-29 00:00:00"},
        {QVariant(3000000), "#6"},
        {QVariant(QDate(2026, 3, 14)), "2026-03-14 00:00:00"},
        {QVariant(at(2026, 3, 14, 9, 26, 53).addMSecs(789)), "2026-03-14 09:26:53"},
        {QVariant(), "#94"},
        {QVariant(QStringList{"3/14/2026"}), "#13"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(outcomeOf([&] { return ToDate(c.input); }), c.date)
            << c.input.toString().toStdString();
    }
    EXPECT_EQ(ToDate(QVariant(46095.25)).timeSpec(), Qt::LocalTime);
    EXPECT_EQ(ZeroDate(), at(1899, 12, 30));
}

TEST(ConversionsTest, DatePictures) {
    struct Case {
        const char* picture;
        const char* morning;
        const char* evening;
    };
    const Case cases[] = {
        {"YYYYMMDD", "20260304", "20260304"},
        {"MM/DD/YYYY", "03/04/2026", "03/04/2026"},
        {"MM/DD/YYYY hh:mm", "03/04/2026 09:05", "03/04/2026 21:05"},
        {"MM/DD/YYYY hh:mm:ss", "03/04/2026 09:05:07", "03/04/2026 21:05:07"},
        {"MM/DD/YY", "03/04/26", "03/04/26"},
        {"MM-DD-YY", "03-04-26", "03-04-26"},
        {"MMDDHHMM", "03040905", "03042105"},
        {"YYYY-MM-DD", "2026-03-04", "2026-03-04"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(FormatDate(at(2026, 3, 4, 9, 5, 7), c.picture).toStdString(), c.morning);
        EXPECT_EQ(FormatDate(at(2026, 3, 4, 21, 5, 7), c.picture).toStdString(), c.evening);
    }
    EXPECT_EQ(FormatDate(QDateTime(), "MM/DD/YYYY"), "");
}

TEST(ConversionsTest, DefaultTextOfADate) {
    struct Case {
        QDateTime value;
        const char* text;
    };
    const Case cases[] = {
        {at(2026, 3, 14, 9, 26, 53), "3/14/2026 9:26:53 AM"},
        {at(2026, 3, 14, 21, 5, 7), "3/14/2026 9:05:07 PM"},
        {at(2026, 3, 14), "3/14/2026"},
        {at(2026, 3, 14, 12), "3/14/2026 12:00:00 PM"},
        {at(2026, 3, 14, 0, 0, 1), "3/14/2026 12:00:01 AM"},
        {at(1899, 12, 30, 9, 26, 53), "9:26:53 AM"},
        {at(1899, 12, 30), "12:00:00 AM"},
    };
    for (const Case& c : cases) EXPECT_EQ(DateTimeText(c.value).toStdString(), c.text);
}

}  // namespace
}  // namespace tvrx::conv
