#include "ViewSupport/HexColor.h"

#include <gtest/gtest.h>

namespace Tinkra {
namespace {

constexpr HexColor terracotta{.red = 0xC9, .green = 0x5B, .blue = 0x4B};

TEST(HexColor, ReadsSixDigitsOfEitherCaseWithAndWithoutASharp)
{
    EXPECT_EQ(parseHexColor("#C95B4B"), terracotta);
    EXPECT_EQ(parseHexColor("C95B4B"), terracotta);
    EXPECT_EQ(parseHexColor("#c95b4b"), terracotta);
    EXPECT_EQ(parseHexColor("c95b4b"), terracotta);
    EXPECT_EQ(parseHexColor("c95B4b"), terracotta);
}

TEST(HexColor, PassesOverWhiteSpaceAtBothEnds)
{
    EXPECT_EQ(parseHexColor("  #C95B4B "), terracotta);
    EXPECT_EQ(parseHexColor(" c95b4b\t\r\n"), terracotta);
    EXPECT_EQ(parseHexColor("\u00A0\u3000#C95B4B\u2028"), terracotta);
}

TEST(HexColor, TakesBitsFromTheTopForRedToTheBottomForBlue)
{
    EXPECT_EQ(parseHexColor("010203"), (HexColor{.red = 1, .green = 2, .blue = 3}));
    EXPECT_EQ(parseHexColor("000000"), (HexColor{}));
    EXPECT_EQ(parseHexColor("ffFFff"), (HexColor{.red = 255, .green = 255, .blue = 255}));
}

TEST(HexColor, IsNothingForAnAbsentText)
{
    EXPECT_FALSE(parseHexColor(std::nullopt));
}

TEST(HexColor, IsNothingForAnotherNumberOfDigits)
{
    for (const auto* text : {"", " ", "#", "#FFF", "FFFFF", "#FFFFFFF", "#C95B4BFF"})
        EXPECT_FALSE(parseHexColor(text)) << text;
}

TEST(HexColor, IsNothingForWhatIsNotHexadecimal)
{
    for (const auto* text : {"#GGGGGG", "+12345", "-12345", "0x1234", "12 456", "1_2345", "12345g", "éééa"})
        EXPECT_FALSE(parseHexColor(text)) << text;
}

TEST(HexColor, RemovesOneSharpAndNoWhiteSpaceAfterIt)
{
    EXPECT_FALSE(parseHexColor("##C95B4B"));
    EXPECT_FALSE(parseHexColor("# C95B4B"));
    EXPECT_FALSE(parseHexColor("#C95B4B#"));
}

TEST(HexColor, IsNothingForForeignDigitsAndBrokenUtf8)
{
    EXPECT_FALSE(parseHexColor("１２３４５６")); // full-width
    EXPECT_FALSE(parseHexColor("١٢٣٤٥٦")); // Arabic-Indic
    EXPECT_FALSE(parseHexColor("C95B4B\xC2"));
    EXPECT_FALSE(parseHexColor("\xFF\xFE\xFD\xFC\xFB\xFA"));
}

TEST(HexColor, SeesNoFurtherThanTheText)
{
    constexpr std::string_view longer = "#C95B4B\u00A0tail";
    EXPECT_EQ(parseHexColor(longer.substr(0, 7)), terracotta);
    EXPECT_FALSE(parseHexColor(longer.substr(0, 8))); // half a no-break space
}

}
}
