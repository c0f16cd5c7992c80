#include "ViewSupport/ShownTitle.h"

#include <gtest/gtest.h>

#include <string>

namespace Tinkra {
namespace {

std::string repeated(const std::string& text, int count)
{
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

TEST(ShownTitle, KeepsOrdinaryTitlesInEveryScript)
{
    for (const std::string title : {"Design review with Ida", "Zahnärztin", "会議 15時", "اجتماع الفريق",
             "क्षत्रिय", "👩‍👩‍👧 Family ❤️", "می‌خواهم", "<b>Lunch</b> & more", ""})
        EXPECT_EQ(shownTitle(title), title);
}

TEST(ShownTitle, IsOneLineWithoutControlCharacters)
{
    EXPECT_EQ(shownTitle("Lunch\r\nat\tnoon"), "Lunch  at noon");
    EXPECT_EQ(shownTitle("a\u2028b\u2029c\u0085d\x1b[31me\x7f"), "a b c d [31me ");
    EXPECT_EQ(shownTitle(std::string{"a\0b", 3}), "a b");
}

TEST(ShownTitle, LosesWhatTurnsTheLineRoundOrHidesInIt)
{
    EXPECT_EQ(shownTitle("invoice\u202egnp.exe"), "invoicegnp.exe");
    EXPECT_EQ(shownTitle("\u2066a\u2069\u200e\u200f\u061cb"), "ab");
    EXPECT_EQ(shownTitle("L\u200bu\u2060n\ufeffc\u00adh"), "Lunch");
}

TEST(ShownTitle, DoesNotPileUpCombiningMarks)
{
    EXPECT_EQ(shownTitle("e" + repeated("\u0301", 400) + "x"), "e" + repeated("\u0301", 8) + "x");
}

TEST(ShownTitle, ReplacesBytesThatAreNotUtf8)
{
    EXPECT_EQ(shownTitle("caf\xe9 \xff"), "caf\ufffd \ufffd");
}

TEST(ShownTitle, OfAMegabyteIsCutAndEndsInAnEllipsis)
{
    EXPECT_EQ(shownTitle(std::string(1'000'000, 'a')), std::string(500, 'a') + "…");
}

TEST(ShownTitle, IsNotCutInTheMiddleOfWhatAReaderSeesAsOneCharacter)
{
    const std::string family = "👩‍👩‍👧"; // eight UTF-16 units
    EXPECT_EQ(shownTitle(repeated(family, 10'000)), repeated(family, 62) + "…");
}

TEST(ShownTitle, OfExactlyTheLimitIsNotCut)
{
    EXPECT_EQ(shownTitle(std::string(500, 'a')), std::string(500, 'a'));
}

}
}
