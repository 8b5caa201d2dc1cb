#include "responses/FieldReader.h"
#include "session/text/Encodings.h"
#include "support/Notation.h"
#include "support/QtPrinters.h"
#include "support/SessionFixture.h"

#include <gtest/gtest.h>

namespace tvrx {
namespace {

// The reader must give every value exactly as GetField does, reports included.
class FieldReaderTest : public test::SessionFixture {
protected:
    static QString getField(const QString& code, const QString& text) {
        QString separator;
        QString scan;
        return mdlMain::GetField(code, text, separator, scan).value_or(QString());
    }
};

TEST_F(FieldReaderTest, ReadsEveryValueAsGetFieldDoes) {
    const char* const notations[] = {
        "<STX>51B10<GS><RS><FS>AM20<FS>F4MESSAGE<RS><FS>AM21<FS>ANP<FS>F3AUTH",
        "<STX>51B10<FS>F4HEADER<GS><RS><FS>AM21<FS>F4SECOND<FS>FQLAST<xE1>AFTER<CR>",
        "<FS>F3ONE<CR>TWO<xE1>THREE",
        "<FS>F3<FS>F3<FS>F",
        "<FS>FQA<GS>B<RS>C<FS>FQ",
        "free text<FS>D2<RS><RS><FS>AN",
    };
    for (const char* notation : notations) {
        const QString text = test::notated(notation);
        const response::FieldReader reader(text);
        for (const char* name : {"F4", "F3", "FQ", "AN", "D2", "ZZ"}) {
            const QLatin1StringView code(name);
            EXPECT_EQ(reader.value(code).toString(), getField(QString(code), text))
                << notation << " " << code.data();
            EXPECT_EQ(reader.find(code), text.indexOf(QChar(28) + QString(code)) + 1);
        }
    }
    EXPECT_TRUE(reporter->reports().isEmpty());
}

TEST_F(FieldReaderTest, LeavesTextsPastGetFieldsReachToGetField) {
    // Early fields read as usual; a value that runs past position 32767 is reported.
    const QString text = QChar(28) + QStringLiteral("E4DD") + QChar(28) + QStringLiteral("FY") +
                         QString(32770, u'x');
    for (const bool closed : {false, true}) {
        const response::FieldReader reader(text,
                                           closed ? QLatin1StringView(":") : QLatin1StringView());
        const QString scan = closed ? text + u':' : text;
        EXPECT_EQ(reader.value(QLatin1StringView("E4")), u"DD");
        EXPECT_EQ(reader.value(QLatin1StringView("FY")).toString(),
                  getField(QStringLiteral("FY"), scan));
    }
    ASSERT_EQ(reporter->reports().size(), 4);
    for (const auto& report : reporter->reports()) EXPECT_EQ(report.location, "mdlMain:GetField");
}

TEST_F(FieldReaderTest, AGroupsLastFieldRunsIntoTheClosingButKeepsNone) {
    const QString group = test::notated("1<FS>FYSEE NOTE:<FS>E4DD");
    const response::FieldReader reader(group, QLatin1StringView(":"));
    EXPECT_EQ(reader.value(QLatin1StringView("E4")), u"DD");
    EXPECT_EQ(reader.value(QLatin1StringView("FY")), u"SEE NOTE:");
}

}  // namespace
}  // namespace tvrx
