#include "TinkraICalendar/Encoding.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace Tinkra::ICalendar {

namespace {

using namespace std::string_literals;

std::string utf8(std::string_view bytes)
{
    std::string out;
    appendUtf8(out, bytes);
    return out;
}

std::string plain(std::string_view text)
{
    std::string buffer;
    return std::string{withoutByteOrder(text, buffer)};
}

}

TEST(Encoding, KeepsValidUtf8AsItIs)
{
    for (const auto* text : {"", "Stand-up", "Café mit Zoë", "採用面談", "🎉 party", "\xF4\x8F\xBF\xBF"})
        EXPECT_EQ(utf8(text), text);
}

TEST(Encoding, ReadsBytesThatAreNoUtf8AsWindows1252)
{
    EXPECT_EQ(utf8("Caf\xE9"), "Café");
    EXPECT_EQ(utf8("M\xFCller \x96 10 \x80"), "Müller – 10 €");
}

TEST(Encoding, ReplacesDamageInATextThatHasMultiByteCharacters)
{
    EXPECT_EQ(utf8("Zo\xC3\xAB \xC3"), "Zoë \uFFFD");
    EXPECT_EQ(utf8("\xE6\x8E\xA1 \xE6\x8E"), "採 \uFFFD\uFFFD");
}

TEST(Encoding, RefusesOverlongSurrogateAndTooLargeForms)
{
    EXPECT_EQ(utf8("ë \xC0\x80"), "ë \uFFFD\uFFFD");
    EXPECT_EQ(utf8("ë \xED\xA0\x80"), "ë \uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(utf8("ë \xF4\x90\x80\x80"), "ë \uFFFD\uFFFD\uFFFD\uFFFD");
}

TEST(Encoding, ReplacesZeroBytes)
{
    EXPECT_EQ(utf8("a\0b"s), "a\uFFFDb");
    EXPECT_EQ(utf8("\xE9\0"s), "é\uFFFD");
    EXPECT_EQ(utf8("ë\0"s), "ë\uFFFD");
}

TEST(Encoding, DropsTheUtf8ByteOrderMark)
{
    EXPECT_EQ(plain("\xEF\xBB\xBF"
                    "BEGIN"),
        "BEGIN");
}

TEST(Encoding, RewritesUtf16OfEitherOrderWithAndWithoutMark)
{
    EXPECT_EQ(plain("\xFF\xFE"
                    "B\0\xEB\0\x3D\xD8\x00\xDE"s),
        "Bë😀");
    EXPECT_EQ(plain("\xFE\xFF"
                    "\0B\0\xEB\xD8\x3D\xDE\x00"s),
        "Bë😀");
    EXPECT_EQ(plain("B\0E\0G\0"s), "BEG");
    EXPECT_EQ(plain("\0B\0E\0G"s), "BEG");
}

TEST(Encoding, ReplacesLoneSurrogatesAndDropsHalfAUnitOfUtf16)
{
    EXPECT_EQ(plain("\xFF\xFE"
                    "\x3D\xD8"
                    "a\0"s),
        "\uFFFDa");
    EXPECT_EQ(plain("\xFF\xFE"
                    "a\0b"s),
        "a");
    EXPECT_EQ(plain("\xFF\xFE"s), "");
}

}
