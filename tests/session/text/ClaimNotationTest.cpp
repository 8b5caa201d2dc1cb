#include "session/text/ClaimNotation.h"

#include <gtest/gtest.h>

#include <string_view>

namespace tvrx {
namespace {

using namespace std::string_view_literals;

QString bytes(std::string_view latin1) {
    return QString::fromLatin1(latin1.data(), static_cast<qsizetype>(latin1.size()));
}

// Every notation reads as its claim text; the canonical ones are also what a text is written as.
TEST(ClaimNotationTest, WritesCanonicalNotationAndReadsEveryForm) {
    const struct {
        std::string_view claim;
        const char* notation;
        bool canonical;
    } cases[] = {
        {""sv, "", true},
        {"plain text 123 >"sv, "plain text 123 >", true},
        {" ~"sv, " ~", true},
        {"\002ABC\003"sv, "<STX>ABC<ETX>", true},
        {"\034C9X\035\036"sv, "<FS>C9X<GS><RS>", true},
        {"A\r\n\0"sv, "A<CR><LF><NUL>", true},
        {"\x01\x1f"sv, "<x01><x1F>", true},
        {"\x7f\x80\xe1\xff"sv, "<x7F><x80><xE1><xFF>", true},
        {"a<b"sv, "a<x3C>b", true},
        {"\x1c"sv, "<x1c>", false},
        {"\xe1"sv, "<xE1>", false},
        {"A"sv, "<x41>", false},
        {"<"sv, "<x3c>", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.notation);
        if (c.canonical) {
            EXPECT_EQ(toNotation(bytes(c.claim)), QString::fromLatin1(c.notation));
        }
        const NotationResult read = fromNotation(QString::fromLatin1(c.notation));
        ASSERT_TRUE(read) << read.error.toStdString();
        EXPECT_EQ(*read.text, bytes(c.claim));
    }
}

TEST(ClaimNotationTest, EveryByteSurvivesTheRoundTripAsPrintableText) {
    QString all;
    for (int byte = 0; byte < 256; ++byte) all += QChar(byte);
    const QString notation = toNotation(all);
    for (const QChar c : notation) EXPECT_TRUE(c >= u' ' && c <= u'~') << int{c.unicode()};
    const NotationResult read = fromNotation(notation);
    ASSERT_TRUE(read);
    EXPECT_EQ(*read.text, all);
}

TEST(ClaimNotationTest, MalformedNotationIsAnErrorThatSaysWhere) {
    const struct {
        const char* notation;
        const char* error;
    } cases[] = {
        {"AB<FOO>", "position 3: unknown tag <FOO>"},
        {"<stx>", "position 1: unknown tag <stx>"},
        {"<>", "position 1: unknown tag <>"},
        {"<x4>", "position 1: unknown tag <x4>"},
        {"<FS><x4G>", "position 5: <x4G> is not two hexadecimal digits"},
        {"abc<FS", "position 4: \"<\" without its \">\""},
        {"a<<FS>", "position 2: \"<\" without its \">\""},
    };
    for (const auto& c : cases) {
        const NotationResult read = fromNotation(QString::fromLatin1(c.notation));
        EXPECT_FALSE(read.text.has_value()) << c.notation;
        EXPECT_TRUE(read.error.startsWith(QString::fromLatin1(c.error)))
            << c.notation << " gave: " << read.error.toStdString();
    }
}

}  // namespace
}  // namespace tvrx
