#include "session/ClaimNotation.h"
#include "session/Encodings.h"
#include "support/SessionFixture.h"

#include <QMetaType>

#include <optional>

namespace tvrx {
namespace {

using namespace mdlMain;

class EncodingsTest : public test::SessionFixture {
protected:
    // Failure numbers reported since the last call, in order; forgets them.
    QStringList takeReportedNumbers() {
        QStringList numbers;
        for (const ErrorReport& report : reporter->reports()) numbers << report.number;
        reporter->clear();
        return numbers;
    }
};

// Test claim texts are written in the readable notation.
QString claim(const char* notation) {
    const NotationResult read = fromNotation(QString::fromLatin1(notation));
    EXPECT_TRUE(read) << notation << ": " << read.error.toStdString();
    return read.text.value_or(QString());
}

TEST_F(EncodingsTest, FixedLength) {
    struct Case {
        const char* text;
        qint16 width;
        const char* fill;
        const char* expected;
        QStringList reported;
    };
    const Case cases[] = {
        {"ABC", 2, "0", "AB", {}},       {"ABC", 5, "0", "ABC00", {}},
        {"ABC", 3, "", "ABC", {}},       {"ABC", 5, "xy", "ABCxx", {}},
        {"12", 5, " ", "12   ", {}},     {"", 3, "<NUL>", "<NUL><NUL><NUL>", {}},
        {"<FS>AB", 2, " ", "<FS>A", {}}, {"ABC", 0, "0", "", {}},
        {"ABC", 5, "", "", {"5"}},       {"ABC", -1, "0", "", {"5"}},
        {"", -1, "", "", {"5"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.text << " width " << c.width << " fill " << c.fill);
        QString text = claim(c.text);
        const QString result = FixedLength(text, c.width, claim(c.fill));
        EXPECT_EQ(toNotation(result), QString::fromLatin1(c.expected));
        EXPECT_EQ(takeReportedNumbers(), c.reported);
    }
}

TEST_F(EncodingsTest, OverPunchDecodesAndRewritesTheText) {
    struct Case {
        const char* text;
        double value;
        const char* rewritten;
    };
    const Case cases[] = {
        {"0000123}", -12.30, "00001230"},
        {"0000123{", 12.30, "00001230"},
        {"0000123A", 12.31, "00001231"},
        {"0000123I", 12.39, "00001239"},
        {"0000123J", -12.31, "00001231"},
        {"0000123R", -12.39, "00001239"},
        {"12345", 123.45, "12345"},
        {"", 0, ""},
        {"}", 0, "0"},
        {"0000123S", 1.23, "0000123S"},
        {"0000123a", 1.23, "0000123a"},
        {"12.5}", -0.125, "12.50"},
        {" 1 2C", 1.23, " 1 23"},
        {"ABCD", 0, "ABC4"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        QString text = QString::fromLatin1(c.text);
        EXPECT_DOUBLE_EQ(OverPunch(text), c.value);
        EXPECT_EQ(text, QString::fromLatin1(c.rewritten));
        EXPECT_EQ(takeReportedNumbers(), QStringList());
    }
}

TEST_F(EncodingsTest, OverPunchReturnEncodesWholeHundredths) {
    struct Case {
        double amount;
        const char* expected;
    };
    const Case cases[] = {
        {1234, "0000123D"},
        {-1234, "0000123M"},
        {0, "0000000{"},
        {-0.0, "0000000{"},
        {1, "0000000A"},
        {-1, "0000000J"},
        {-9, "0000000R"},
        {123456789, "12345678I"},
        {99999999, "9999999I"},
        {-100000000, "10000000}"},
        {0.4, "0000000{"},
        {-0.4, "0000000}"},  // rounds to zero, still in the negative column
        {0.5, "0000000A"},   // a tie goes away from zero
        {-1234.5, "0000123N"},
        {0.1 + 0.2, "0000000{"},
        {1e15, "100000000000000{"},
        {1e-20, "10000000000000000000{"},  // "1E-20" loses its minus: 1E20
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.amount);
        double amount = c.amount;
        EXPECT_EQ(OverPunchReturn(amount), QString::fromLatin1(c.expected));
        EXPECT_EQ(takeReportedNumbers(), QStringList());
    }
}

struct FieldCase {
    const char* what;
    const char* code;
    const char* scan;
    std::optional<const char*> expected;
};

TEST_F(EncodingsTest, GetFieldFindsTheValueAfterSeparatorAndCode) {
    const FieldCase cases[] = {
        {"middle field", "C9", "<STX>HDR<FS>C9ABC<FS>D2XYZ", "ABC"},
        {"last field runs to the end", "D2", "<FS>C9ABC<FS>D2XYZ", "XYZ"},
        {"code not there", "E1", "<FS>C9ABC<FS>D2XYZ", std::nullopt},
        {"code without separator", "C9", "C9ABC", std::nullopt},
        {"codes are case-sensitive", "c9", "<FS>C9ABC", std::nullopt},
        {"empty value", "C9", "<FS>C9<FS>D2X", ""},
        {"empty last value", "C9", "<FS>D2X<FS>C9", ""},
        {"end of group", "C9", "<FS>C9ABC<GS><FS>D2X", "ABC"},
        {"end of segment", "C9", "<FS>C9ABC<RS><FS>AM04", "ABC"},
        {"exactly one character is cut", "C9", "<FS>C9AB<RS><GS><FS>D2", "AB<RS>"},
        {"the terminator is taken to be last", "C9", "<FS>C9A<GS>BC<FS>D2", "A<GS>B"},
        {"group separator after the last field stays", "C9", "<FS>C9ABC<GS>", "ABC<GS>"},
        {"byte 225 ends the last field", "C9", "<FS>C9ABC<xE1>junk", "ABC"},
        {"carriage return ends the last field", "C9", "<FS>C9ABC<CR><LF>", "ABC"},
        {"byte 225 before a carriage return", "C9", "<FS>C9AB<CR>C<xE1>", "AB<CR>C"},
        {"code inside another value", "C9", "<FS>D2XC9Q<FS>C9ABC", "ABC"},
        {"first occurrence wins", "C9", "<FS>F4MSG<FS>C9 first<FS>C9ABC", " first"},
        {"codes count two characters", "C", "<FS>C9ABC<FS>D2", "ABC"},
    };
    for (const FieldCase& c : cases) {
        SCOPED_TRACE(c.what);
        QString separator;
        QString scan = claim(c.scan);
        const std::optional<QString> value =
            GetField(QString::fromLatin1(c.code), {}, separator, scan);
        ASSERT_EQ(value.has_value(), c.expected.has_value());
        if (value) {
            EXPECT_EQ(toNotation(*value), QString::fromLatin1(*c.expected));
        }
        EXPECT_EQ(separator, claim("<FS>"));
        EXPECT_EQ(scan, claim(c.scan));
        EXPECT_EQ(takeReportedNumbers(), QStringList());
    }
}

TEST_F(EncodingsTest, GetFieldRewritesAnEmptySeparatorAndAnEmptyScan) {
    const QString whole = claim("<FS>C9ABC<FS>D2XYZ");
    struct Case {
        QString separator;
        QString scan;
        QString separatorAfter;
        QString scanAfter;
        std::optional<QString> expected;
    };
    const Case cases[] = {
        {"", "", claim("<FS>"), whole, "ABC"},
        {"", "|C9OWN", claim("<FS>"), "|C9OWN", std::nullopt},
        {"|", "|C9OWN|D2X", "|", "|C9OWN|D2X", "OWN"},
        {"|", "", "|", whole, std::nullopt},
        // The value starts three characters after the separator, whatever its length.
        {"||", "||C9AB|C||D2", "||", "||C9AB|C||D2", "9AB|C"},
    };
    for (const Case& c : cases) {
        QString separator = c.separator;
        QString scan = c.scan;
        EXPECT_EQ(GetField(QStringLiteral("C9"), whole, separator, scan), c.expected);
        EXPECT_EQ(separator, c.separatorAfter);
        EXPECT_EQ(scan, c.scanAfter);
    }
}

TEST_F(EncodingsTest, GetFieldReportsFailuresOfItsArithmetic) {
    struct Report {
        QString number;
        int fieldPos;
        int fieldLen;
    };
    struct Case {
        const char* what;
        QString scan;
        QString code;
        std::optional<QString> expected;
        QList<Report> reports;
    };
    const QString value = claim("<FS>C9ABC");
    const Case cases[] = {
        {"last position that works", QString(32763, u'x') + value, "C9", "ABC", {}},
        {"value starts past 32767",
         QString(32764, u'x') + value,
         "C9",
         std::nullopt,
         {{"6", 32765, 3}}},
        {"search start past 32767",
         QString(32766, u'x') + value,
         "C9",
         std::nullopt,
         {{"6", 32767, 0}, {"6", 32767, 0}}},
        {"field past 32767", QString(32767, u'x') + value, "C9", std::nullopt, {{"6", 0, 0}}},
        {"value longer than 32767", value + QString(32768, u'x'), "C9", "", {{"6", 1, 0}}},
        {"short code before a separator",
         claim("<FS>C<FS>D2X"),
         "C",
         std::nullopt,
         {{"5", 1, -1}, {"5", 1, -1}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        QString separator;
        QString scan = c.scan;
        EXPECT_EQ(GetField(c.code, {}, separator, scan), c.expected);
        ASSERT_EQ(reporter->reports().size(), c.reports.size());
        for (qsizetype i = 0; i < c.reports.size(); ++i) {
            const ErrorReport& report = reporter->reports().at(i);
            EXPECT_EQ(report.number, c.reports.at(i).number);
            EXPECT_EQ(report.location, "mdlMain:GetField");
            EXPECT_EQ(report.details, QStringLiteral("Scan: %1, Field Pos: %2, Field Len: %3")
                                          .arg(scan)
                                          .arg(c.reports.at(i).fieldPos)
                                          .arg(c.reports.at(i).fieldLen));
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

TEST_F(EncodingsTest, PhoneString) {
    struct Case {
        const char* text;
        const char* expected;
    };
    const Case cases[] = {
        {"", ""},
        {"5555550199", "(555) 555-0199"},
        {"15555550199", "(555) 555-0199"},
        {"25555550199", "(255) 555-0199"},
        {"555-555-0199", "(555) 555-0199"},
        {"555-555-0199 ", "(555) 555-0199"},
        {"5550199", "(555) 5550199"},
        {"555555019", "(555) 55555019"},
        {"12", "(12  12"},
        {"555-5A5-0199", "(555) 5 5-0199"},
        {"ABC5550199", "(   ) 555-0199"},
        {"(555) 555-0199", "(555) 555-0199"},
        {"(5A5) 555-0199", "(5 5) 555-0199"},
        {"(555) 555-01__", ""},
        {"(555) 555-019", ""},
        {"(555) 5550-199", ""},
        {"(555)-555-0199", ""},
    };
    for (const Case& c : cases) {
        QString text = QString::fromLatin1(c.text);
        EXPECT_EQ(PhoneString(text), QString::fromLatin1(c.expected)) << c.text;
        EXPECT_EQ(text, QString::fromLatin1(c.text));
        EXPECT_EQ(takeReportedNumbers(), QStringList());
    }
}

TEST_F(EncodingsTest, ZipString) {
    struct Case {
        const char* text;
        const char* expected;
    };
    const Case cases[] = {
        {"", ""},
        {"730725555", "73072-5555"},
        {" 730725555 ", "73072-5555"},
        {"a23456789", "a2345-6789"},
        {"73072-5555", "73072-5555"},
        {"73072", "73072<NUL><NUL><NUL><NUL><NUL>"},
        {"7307A", "73070<NUL><NUL><NUL><NUL><NUL>"},
        {"73072-", "73072-<NUL><NUL><NUL><NUL>"},
        {"73072 5555", "73072-5555"},
        {"730721", "73072-<NUL><NUL><NUL><NUL>"},
        {"7307215", "73072-5<NUL><NUL><NUL>"},
        {"7307255556", "73072-5556"},
        {"730721X555", "73072-X555"},
        {"73072-555X", "73072-5550"},
        {"7307-5555", "73070-555<NUL>"},
        {"73072-55551234", "73072-5555"},
    };
    for (const Case& c : cases) {
        QString text = QString::fromLatin1(c.text);
        EXPECT_EQ(toNotation(ZipString(text)), QString::fromLatin1(c.expected)) << c.text;
        EXPECT_EQ(takeReportedNumbers(), QStringList());
    }
}

}  // namespace
}  // namespace tvrx
