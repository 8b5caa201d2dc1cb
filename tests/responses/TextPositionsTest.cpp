#include "responses/TextPositions.h"
#include "session/text/Conversions.h"
#include "session/text/Encodings.h"
#include "support/SessionFixture.h"

#include <gtest/gtest.h>

#include <bit>

namespace tvrx {
namespace {

class TextPositionsTest : public test::SessionFixture {};

// The quick readings of amounts and numbers must give the very bits the general
// conversions give, the sign of a zero included.
TEST_F(TextPositionsTest, AmountsAndNumbersReadAsTheConversionsReadThem) {
    const char* const texts[] = {
        "",
        "0",
        "{",
        "}",
        "00000}",
        "000412F",
        "150{",
        "00350A",
        "0075",
        "012E",
        "1R",
        "-12}",
        " 12{",
        "12 {",
        "1.5{",
        "&H1F",
        "1E3{",
        "12x",
        "999999999999999",
        "99999999999999{",
        "9999999999999999",
        "1234567890123456}",
    };
    for (const char* latin : texts) {
        const QString text = QString::fromLatin1(latin);
        QString punched = text;
        EXPECT_EQ(std::bit_cast<quint64>(response::overPunched(text)),
                  std::bit_cast<quint64>(mdlMain::OverPunch(punched)))
            << latin;
        EXPECT_EQ(std::bit_cast<quint64>(response::numericValue(text)),
                  std::bit_cast<quint64>(conv::Val(text)))
            << latin;
    }
    EXPECT_TRUE(reporter->reports().isEmpty());
}

}  // namespace
}  // namespace tvrx
