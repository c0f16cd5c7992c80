#include "ViewSupport/FirstName.h"
#include "ViewSupport/SelectionText.h"
#include "ViewSupport/TextScale.h"
#include "ViewSupport/TimeText.h"

#include <gtest/gtest.h>

#include <limits>

namespace Tinkra {
namespace {

using namespace std::chrono;

constexpr Instant fivePastNine = sys_days(2026y / November / 20) + 9h + 5min;

TEST(FirstName, IsTheFirstPieceOfTheFullName)
{
    EXPECT_EQ(firstName("Kraira"), "Kraira");
    EXPECT_EQ(firstName("Kraira Velden Ostrom"), "Kraira");
    EXPECT_EQ(firstName("  \tKraira\nVelden"), "Kraira");
    EXPECT_EQ(firstName("Åsa\u3000Lind"), "Åsa");
}

TEST(FirstName, IsThereWhenTheNameIsEmptyOrBlank)
{
    EXPECT_EQ(firstName(""), "there");
    EXPECT_EQ(firstName(" \t\u00A0"), "there");
}

TEST(NextAlarmText, IsByTheClockOf24HoursWhateverTheLocalePrefers)
{
    for (const auto* locale : {"en_US", "en_GB", "de_DE", "ja_JP", "en_US@hours=h12"})
        EXPECT_EQ(nextAlarmText(fivePastNine, {.locale = locale, .timeZone = "UTC"}), "09:05") << locale;
    EXPECT_EQ(nextAlarmText(fivePastNine + 12h, {.locale = "en_US", .timeZone = "UTC"}), "21:05");
}

TEST(NextAlarmText, IsADashWhenNothingIsUpcoming)
{
    EXPECT_EQ(nextAlarmText(std::nullopt, {.locale = "en_US", .timeZone = "UTC"}), "—");
}

TEST(SelectionText, CountsTheChosenOfAll)
{
    EXPECT_EQ(selectionText(1, 3), "1 of 3");
    EXPECT_EQ(selectionText(0, 12), "0 of 12");
}

TEST(TextScale, IsOneForTheFontsThatDesktopsShipWith)
{
    for (const double pixels : {12.0, 13.0, 13.33, 14.67, 15.0})
        EXPECT_EQ(textScale(pixels), 1) << pixels;
}

TEST(TextScale, GrowsInProportionBeyond)
{
    EXPECT_DOUBLE_EQ(textScale(18), 1.2);
    EXPECT_DOUBLE_EQ(textScale(11), 11.0 / 12);
}

TEST(TextScale, StaysWithinReason)
{
    EXPECT_EQ(textScale(100), 1.5);
    EXPECT_EQ(textScale(1), 0.85);
    EXPECT_EQ(textScale(std::numeric_limits<double>::infinity()), 1.5);
}

}
}
