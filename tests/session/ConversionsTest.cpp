#include "session/Conversions.h"

#include "session/Failure.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>

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

}  // namespace
}  // namespace tvrx::conv
