#include "TinkraSystemLinux/CalendarFolders/CalendarDescription.h"

#include <gtest/gtest.h>

namespace Tinkra::System {
namespace {

using Components = std::vector<double>;

TEST(CalendarDescription, ReadsTheThreeComponentsOfAColor)
{
    EXPECT_EQ(parseColor("#FF8000"), (Components{1.0, 128 / 255.0, 0.0}));
    EXPECT_EQ(parseColor("#ff8000\n"), (Components{1.0, 128 / 255.0, 0.0}));
    EXPECT_EQ(parseColor("  #Ff8000ff \r\n"), (Components{1.0, 128 / 255.0, 0.0}));
}

TEST(CalendarDescription, TakesAnythingElseForNoColor)
{
    for (const auto* text : {"", "#", "FF8000", "#FF800", "#FF80000", "#FF8000F", "#GG8000", "#-18000",
             "#+18000", "#0x8000", "# F8000", "red", "#FF8000 #FF8000", "#FF8000FF00"})
        EXPECT_EQ(parseColor(text), std::nullopt) << text;
}

TEST(CalendarDescription, ReadsTheFirstLineAsTitle)
{
    EXPECT_EQ(parseTitle("Work\n"), "Work");
    EXPECT_EQ(parseTitle("  My work \r\nand more\n"), "My work");
    EXPECT_EQ(parseTitle("\u00c4rzte"), "\u00c4rzte");
    EXPECT_EQ(parseTitle("\n\nWork"), "Work");
}

TEST(CalendarDescription, HasNoTitleInAnEmptyFile)
{
    EXPECT_EQ(parseTitle(""), std::nullopt);
    EXPECT_EQ(parseTitle(" \r\n\t"), std::nullopt);
}

}
}
