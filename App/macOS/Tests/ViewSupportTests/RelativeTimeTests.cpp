#include "ViewSupport/RelativeTime.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace Tinkra {
namespace {

using namespace std::chrono_literals;
using std::chrono::days;

std::string english(Seconds left)
{
    return RelativeTimeFormat("en_US").text(left);
}

TEST(RelativeTime, NamesTheTwoLargestUnits)
{
    EXPECT_EQ(english(12min + 8s), "12 min, 8 sec");
    EXPECT_EQ(english(3h + 12min + 20s), "3 hr, 12 min");
    EXPECT_EQ(english(days(2) + 23h + 59min), "2 days, 23 hr");
}

TEST(RelativeTime, NamesSecondsAloneInTheLastMinute)
{
    EXPECT_EQ(english(59s), "59 sec");
    EXPECT_EQ(english(1s), "1 sec");
}

TEST(RelativeTime, KeepsTheSecondsOfAWholeMinuteAndLeavesOutOtherUnitsOfNone)
{
    EXPECT_EQ(english(5min), "5 min, 0 sec");
    EXPECT_EQ(english(2h), "2 hr");
    EXPECT_EQ(english(2h + 59s), "2 hr");
    EXPECT_EQ(english(days(1)), "1 day");
}

TEST(RelativeTime, RoundsUpToWholeSeconds)
{
    EXPECT_EQ(english(Seconds(7.001)), "8 sec");
    EXPECT_EQ(english(Seconds(0.001)), "1 sec");
    EXPECT_EQ(english(Seconds(59.2)), "1 min, 0 sec");
    EXPECT_EQ(english(Seconds(3599.5)), "1 hr");
}

TEST(RelativeTime, SaysNowOnceNothingIsLeft)
{
    EXPECT_EQ(english(0s), "now");
    EXPECT_EQ(english(-90s), "now");
    EXPECT_EQ(english(Seconds(std::nan(""))), "now");
}

TEST(RelativeTime, SpeaksTheUsersLanguage)
{
    EXPECT_EQ(RelativeTimeFormat("de_DE.UTF-8").text(12min + 8s), "12 Min., 8 Sek.");
    EXPECT_EQ(RelativeTimeFormat("ar_EG").text(3h + 12min), "٣ س و١٢ د");
    EXPECT_EQ(RelativeTimeFormat("de_DE").text(0s), "jetzt");
}

TEST(RelativeTime, HasATextForEverySpan)
{
    EXPECT_FALSE(english(Seconds(std::numeric_limits<double>::infinity())).empty());
    EXPECT_FALSE(RelativeTimeFormat("not a locale ///").text(5min).empty());
}

TEST(RelativeTime, StaysTrueUntilItsNextChange)
{
    for (const double left : {0.25, 1.0, 59.0, 59.5, 60.0, 61.25, 727.5, 3599.5, 3600.0, 3600.5, 3659.0,
             3659.5, 3660.0, 3661.0, 11520.0, 86399.5, 86400.0, 100000.25}) {
        const double change = untilNextChange(Seconds(left)).count();
        ASSERT_GT(change, 0) << left;
        ASSERT_LE(change, 61) << left;
        EXPECT_EQ(english(Seconds(left)), english(Seconds(left - change + 0.001))) << left;
    }
}

TEST(RelativeTime, ChangesWhenItSaysSo)
{
    for (const double left :
        {0.25, 1.0, 59.5, 60.0, 727.5, 3599.5, 3600.0, 3659.5, 3660.0, 11520.0, 86399.5}) {
        const double change = untilNextChange(Seconds(left)).count();
        EXPECT_NE(english(Seconds(left)), english(Seconds(left - change))) << left;
    }
}

TEST(RelativeTime, DoesNotChangeOnceItIsOver)
{
    EXPECT_TRUE(std::isinf(untilNextChange(0s).count()));
    EXPECT_TRUE(std::isinf(untilNextChange(-5s).count()));
}

}
}
