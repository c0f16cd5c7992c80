#include "PrintableText.h"

#include <gtest/gtest.h>

namespace Tinkra::CommandLine {
namespace {

TEST(PrintableText, KeepsOrdinaryTextInAnyScript)
{
    EXPECT_EQ(
        printable("Caf\xC3\xA9 \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x92\xBB \\n"),
        "Caf\xC3\xA9 \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x92\xBB \\n");
}

TEST(PrintableText, StaysOnOneLine)
{
    EXPECT_EQ(printable("a\nb\r\tc"), "a\\nb\\r\\tc");
    EXPECT_EQ(printable("a\xE2\x80\xA8z"), "a\\u{2028}z");
}

TEST(PrintableText, NeverSteersTheTerminal)
{
    EXPECT_EQ(printable("\x1B[31mred"), "\\u{1B}[31mred");
    EXPECT_EQ(printable("\xC2\x9B"
                        "31m"),
        "\\u{9B}31m");
    EXPECT_EQ(printable(std::string_view("a\0\x7F", 3)), "a\\u{0}\\u{7F}");
}

TEST(PrintableText, ShowsBidirectionalControls)
{
    EXPECT_EQ(printable("\xE2\x80\xAE"
                        "fdp.exe"),
        "\\u{202E}fdp.exe");
    EXPECT_EQ(printable("\xE2\x81\xA6x\xE2\x81\xA9"), "\\u{2066}x\\u{2069}");
}

TEST(PrintableText, ReplacesWhatIsNotUtf8)
{
    EXPECT_EQ(printable("caf\xE9"), "caf\xEF\xBF\xBD");
}

TEST(DisplayWidth, CountsColumnsRatherThanBytes)
{
    EXPECT_EQ(displayWidth(""), 0U);
    EXPECT_EQ(displayWidth("plain"), 5U);
    EXPECT_EQ(displayWidth("Caf\xC3\xA9"), 4U);
    EXPECT_EQ(displayWidth("Cafe\xCC\x81"), 4U);
    EXPECT_EQ(displayWidth("\xE6\x97\xA5\xE6\x9C\xAC"), 4U);
}

TEST(DisplayWidth, CountsWhatReadsAsOneCharacterOnce)
{
    EXPECT_EQ(displayWidth("\xF0\x9F\x98\x80"), 2U);
    EXPECT_EQ(displayWidth("\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x92\xBB"), 2U);
    EXPECT_EQ(displayWidth("\xE2\x9D\xA4\xEF\xB8\x8F"), 2U);
    EXPECT_EQ(displayWidth("\xF0\x9F\x87\xA8\xF0\x9F\x87\xAD"), 2U);
}

}
}
