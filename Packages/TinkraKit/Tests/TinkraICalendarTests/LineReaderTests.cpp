#include "TinkraICalendar/LineReader.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace Tinkra::ICalendar {

namespace {

/// The content lines, each with its number.
std::vector<std::string> contentLines(std::string_view text, std::size_t longest = 1'000)
{
    Notices notices;
    LineReader lines{text, longest, notices};
    std::vector<std::string> all;
    std::string buffer;
    while (lines.next()) {
        const auto number = lines.number();
        all.push_back(std::to_string(number) + " " + std::string{lines.unfolded(buffer)});
    }
    return all;
}

using Lines = std::vector<std::string>;

}

TEST(LineReader, EndsLinesAtEachKindOfLineEndAndAnyMixture)
{
    const Lines expected{"1 A:1", "2 B:2", "3 C:3"};
    EXPECT_EQ(contentLines("A:1\r\nB:2\r\nC:3\r\n"), expected);
    EXPECT_EQ(contentLines("A:1\nB:2\nC:3\n"), expected);
    EXPECT_EQ(contentLines("A:1\rB:2\rC:3\r"), expected);
    EXPECT_EQ(contentLines("A:1\rB:2\nC:3\r\n"), expected);
    EXPECT_EQ(contentLines("A:1\r\nB:2\rC:3"), expected);
}

TEST(LineReader, UnfoldsAtSpaceAndTabAfterAnyLineEnd)
{
    EXPECT_EQ(contentLines("SUM\r\n MARY\n\t:a\r b\nB:2"), (Lines{"1 SUMMARY:ab", "5 B:2"}));
}

TEST(LineReader, UnfoldsInsideACharacterOfSeveralBytes)
{
    EXPECT_EQ(contentLines("A:\xC3\r\n \xAB\r\n"), (Lines{"1 A:ë"}));
}

TEST(LineReader, ToleratesAFoldInsideTheLineEnd)
{
    EXPECT_EQ(contentLines("A:1\r\r\n \nB:2\r\n"), (Lines{"1 A:1", "4 B:2"}));
}

TEST(LineReader, PassesOverBlankLinesEvenInsideAFoldedLine)
{
    EXPECT_EQ(contentLines("\r\n\r\nA:1\r\r\n 2\r\r\nB:3\n\n\n"), (Lines{"3 A:12", "7 B:3"}));
}

TEST(LineReader, FindsNoLineInAnEmptyTextOrInLineEndsAlone)
{
    EXPECT_TRUE(contentLines("").empty());
    EXPECT_TRUE(contentLines("\n\r\r\n\n").empty());
}

TEST(LineReader, PassesOverALineThatIsTooLongAndNamesIt)
{
    Notices notices;
    const std::string text = "A:1\n" + std::string(20, 'x') + "\nB:2\n";
    LineReader lines{text, 10, notices};
    ASSERT_TRUE(lines.next());
    ASSERT_TRUE(lines.next());
    EXPECT_EQ(lines.line(), "B:2");
    EXPECT_EQ(notices.take(), (Lines{"Line 2: the line is too long and was passed over."}));
}

TEST(LineReader, LeavesOutAContinuationThatIsTooLong)
{
    EXPECT_EQ(contentLines("A:1\n " + std::string(20, 'x') + "\n 2\nB:3\n", 10), (Lines{"1 A:12", "4 B:3"}));
}

}
