#include "TinkraCore/UsableSettings.h"

#include <gtest/gtest.h>

#include <limits>

namespace Tinkra {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double tenYears = maximumInterval.count();

Seconds usableLeadTime(double stored)
{
    TinkraConfiguration configuration;
    configuration.settings.leadTime = Seconds(stored);
    return usable(configuration).settings.leadTime;
}

Seconds usableSnooze(double stored)
{
    TinkraConfiguration configuration;
    configuration.settings.snoozeInterval = Seconds(stored);
    return usable(configuration).settings.snoozeInterval;
}

TEST(UsableSettings, LeavesWhatIsInReachAsItIs)
{
    TinkraConfiguration configuration;
    configuration.masterEnabled = false;
    configuration.settings.leadTime = Seconds(-600.25);
    configuration.settings.snoozeInterval = Seconds(0);
    configuration.settings.soundName = "../../x";
    configuration.monitoring.selectedCalendarIDs = {"work"};

    EXPECT_EQ(usable(configuration), configuration);
}

TEST(UsableSettings, KeepsLeadTimesWithinTenYears)
{
    EXPECT_EQ(usableLeadTime(1e308), Seconds(tenYears));
    EXPECT_EQ(usableLeadTime(-1e308), Seconds(-tenYears));
    EXPECT_EQ(usableLeadTime(infinity), Seconds(tenYears));
    EXPECT_EQ(usableLeadTime(-infinity), Seconds(-tenYears));
    EXPECT_EQ(usableLeadTime(tenYears), Seconds(tenYears));
}

TEST(UsableSettings, ALeadTimeThatIsNotANumberIsTheDefault)
{
    EXPECT_EQ(usableLeadTime(notANumber), AlarmSettings().leadTime);
}

TEST(UsableSettings, KeepsSnoozesBetweenNothingAndTenYears)
{
    EXPECT_EQ(usableSnooze(-1), Seconds(0));
    EXPECT_EQ(usableSnooze(-infinity), Seconds(0));
    EXPECT_EQ(usableSnooze(0), Seconds(0));
    EXPECT_EQ(usableSnooze(1e18), Seconds(tenYears));
    EXPECT_EQ(usableSnooze(infinity), Seconds(tenYears));
}

TEST(UsableSettings, ASnoozeThatIsNotANumberIsTheDefault)
{
    EXPECT_EQ(usableSnooze(notANumber), AlarmSettings().snoozeInterval);
}

}
}
