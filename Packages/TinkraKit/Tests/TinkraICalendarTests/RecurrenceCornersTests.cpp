// Where engines disagree, this is what ours does.

#include "RuleTestSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tinkra::ICalendar::Test {

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

TEST(RecurrenceCorners, EmitsADtstartThatDoesNotFitTheRule)
{
    EXPECT_THAT(localTimes({"20240103T090000", "FREQ=WEEKLY;BYDAY=MO;UNTIL=20240116"}),
        ElementsAreArray(daysAt("20240103T090000", "2024 Jan 3,8,15")));
}

TEST(RecurrenceCorners, CountsADtstartThatDoesNotFitTheRule)
{
    EXPECT_THAT(localTimes({"20240103T090000", "FREQ=WEEKLY;BYDAY=MO;COUNT=3"}),
        ElementsAreArray(daysAt("20240103T090000", "2024 Jan 3,8,15")));
    EXPECT_THAT(localTimes({"20240103T090000", "FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30;COUNT=2"}),
        ElementsAreArray(daysAt("20240103T090000", "2024 Jan 3")));
}

TEST(RecurrenceCorners, EmitsADtstartWhoseHourDoesNotFitAnHourlyRule)
{
    EXPECT_THAT(localTimes({"20240103T090000", "FREQ=HOURLY;BYHOUR=11,12;COUNT=3"}),
        ElementsAre("20240103T090000", "20240103T110000", "20240103T120000"));
}

TEST(RecurrenceCorners, GivesDtstartAloneWhenUntilLiesBeforeIt)
{
    EXPECT_THAT(
        localTimes({"20240103T090000", "FREQ=DAILY;UNTIL=20240101T000000Z"}), ElementsAre("20240103T090000"));
    EXPECT_THAT(localTimes({"20240103T090000", "FREQ=DAILY;UNTIL=20231231"}), ElementsAre("20240103T090000"));
    EXPECT_THAT(
        localTimes({"20240103T090000", "FREQ=HOURLY;UNTIL=20240101T000000"}), ElementsAre("20240103T090000"));
}

TEST(RecurrenceCorners, IncludesAnInstanceAtUntilItself)
{
    EXPECT_THAT(localTimes({"20240103T090000", "FREQ=DAILY;UNTIL=20240105T140000Z"}),
        ElementsAreArray(daysAt("20240103T090000", "2024 Jan 3-5")));
    EXPECT_THAT(localTimes({"20240103T090000", "FREQ=DAILY;UNTIL=20240105T135959Z"}),
        ElementsAreArray(daysAt("20240103T090000", "2024 Jan 3-4")));
    EXPECT_THAT(localTimes({"20240103T090000", "FREQ=DAILY;UNTIL=20240105T090000"}),
        ElementsAreArray(daysAt("20240103T090000", "2024 Jan 3-5")));
}

TEST(RecurrenceCorners, IncludesTheWholeDayOfAnUntilThatIsADate)
{
    EXPECT_THAT(localTimes({"20240103T233000", "FREQ=DAILY;UNTIL=20240105"}),
        ElementsAreArray(daysAt("20240103T233000", "2024 Jan 3-5")));
}

TEST(RecurrenceCorners, HoldsDatesAgainstTheDateOfAnUntilInUtc)
{
    for (const auto* const zone : {"America/Los_Angeles", "UTC", "Pacific/Auckland"}) {
        EXPECT_THAT(localTimes({"20240103", "FREQ=DAILY;UNTIL=20240105T000000Z", zone}),
            ElementsAreArray(daysAt("20240103", "2024 Jan 3-5")));
        EXPECT_THAT(localTimes({"20240103", "FREQ=DAILY;UNTIL=20240105T235959Z", zone}),
            ElementsAreArray(daysAt("20240103", "2024 Jan 3-5")));
    }
}

TEST(RecurrenceCorners, StopsAtTheEarlierOfCountAndUntil)
{
    EXPECT_THAT(localTimes({"20240103T090000", "FREQ=DAILY;COUNT=2;UNTIL=20240131"}),
        ElementsAreArray(daysAt("20240103T090000", "2024 Jan 3,4")));
    EXPECT_THAT(localTimes({"20240103T090000", "FREQ=DAILY;COUNT=9;UNTIL=20240104"}),
        ElementsAreArray(daysAt("20240103T090000", "2024 Jan 3,4")));
}

TEST(RecurrenceCorners, TakesTheWeekdayOfDtstartForWeekNumbersWithoutBydayInAYearlyRule)
{
    EXPECT_THAT(localTimes({.start = "20240103T090000", .rule = "FREQ=YEARLY;BYWEEKNO=1,20", .atMost = 5}),
        ElementsAreArray(daysAt("20240103T090000", "2024 Jan 3 May 15 2025 Jan 1 May 14 Dec 31")));
}

TEST(RecurrenceCorners, LetsABymonthdayDecideTheDayOfAWeekNumber)
{
    EXPECT_THAT(
        localTimes({.start = "20240101T090000", .rule = "FREQ=YEARLY;BYWEEKNO=1;BYMONTHDAY=31", .atMost = 3}),
        ElementsAreArray(daysAt("20240101T090000", "2024 Jan 1 Dec 31 2025 Dec 31")));
}

TEST(RecurrenceCorners, SkipsWeek53InYearsWithout)
{
    EXPECT_THAT(
        localTimes({.start = "20201228T090000", .rule = "FREQ=YEARLY;BYWEEKNO=53;BYDAY=MO", .atMost = 3}),
        ElementsAreArray(daysAt("20201228T090000", "2020 Dec 28 2026 Dec 28 2032 Dec 27")));
}

TEST(RecurrenceCorners, CountsAWeekToTheYearThatHasFourOfItsDays)
{
    EXPECT_THAT(
        localTimes({.start = "20241230T090000", .rule = "FREQ=YEARLY;BYWEEKNO=1;BYDAY=MO,SU", .atMost = 4}),
        ElementsAreArray(daysAt("20241230T090000", "2024 Dec 30 2025 Jan 5 Dec 29 2026 Jan 4")));
    EXPECT_THAT(
        localTimes({.start = "20201228T090000", .rule = "FREQ=YEARLY;BYWEEKNO=-1;BYDAY=MO,SU", .atMost = 3}),
        ElementsAreArray(daysAt("20201228T090000", "2020 Dec 28 2021 Jan 3 Dec 27")));
}

TEST(RecurrenceCorners, CountsWeeksFromTheWeekStartOfTheRule)
{
    EXPECT_THAT(
        localTimes(
            {.start = "20240103T090000", .rule = "FREQ=YEARLY;BYWEEKNO=1;BYDAY=SU;WKST=SU", .atMost = 3}),
        ElementsAreArray(daysAt("20240103T090000", "2024 Jan 3 Dec 29 2026 Jan 4")));
}

TEST(RecurrenceCorners, KeepsTheIntervalOfYearsByTheYearsOfTheWeeks)
{
    EXPECT_THAT(
        localTimes(
            {.start = "20191230T090000", .rule = "FREQ=YEARLY;INTERVAL=2;BYWEEKNO=1;BYDAY=MO", .atMost = 3}),
        ElementsAreArray(daysAt("20191230T090000", "2019 Dec 30 2022 Jan 3 2024 Jan 1")));
}

TEST(RecurrenceCorners, TakesTheMonthOfDtstartForMonthDaysInAYearlyRule)
{
    EXPECT_THAT(localTimes({.start = "20240315T090000", .rule = "FREQ=YEARLY;BYMONTHDAY=15,20", .atMost = 4}),
        ElementsAreArray(daysAt("20240315T090000", "2024 Mar 15,20 2025 Mar 15,20")));
}

TEST(RecurrenceCorners, UnitesWeekdaysWithAndWithoutNumber)
{
    EXPECT_THAT(
        localTimes({.start = "20240101T090000", .rule = "FREQ=MONTHLY;BYDAY=MO,1MO,2TU", .atMost = 7}),
        ElementsAreArray(daysAt("20240101T090000", "2024 Jan 1,8,9,15,22,29 Feb 5")));
    EXPECT_THAT(localTimes({.start = "20240101T090000", .rule = "FREQ=YEARLY;BYDAY=1MO,MO", .atMost = 3}),
        ElementsAreArray(daysAt("20240101T090000", "2024 Jan 1,8,15")));
}

TEST(RecurrenceCorners, DropsTheNumberOfAWeekdayWhereItHasNoMeaning)
{
    EXPECT_THAT(localTimes({.start = "20240102T090000", .rule = "FREQ=DAILY;BYDAY=1TU", .atMost = 3}),
        ElementsAreArray(daysAt("20240102T090000", "2024 Jan 2,9,16")));
    EXPECT_THAT(localTimes({.start = "20240102T090000", .rule = "FREQ=WEEKLY;BYDAY=2TU", .atMost = 3}),
        ElementsAreArray(daysAt("20240102T090000", "2024 Jan 2,9,16")));
    EXPECT_THAT(localTimes({.start = "20240102T220000", .rule = "FREQ=HOURLY;BYDAY=1TU", .atMost = 3}),
        ElementsAre("20240102T220000", "20240102T230000", "20240109T000000"));
    EXPECT_THAT(localTimes({.start = "20240102T235900", .rule = "FREQ=MINUTELY;BYDAY=1TU", .atMost = 2}),
        ElementsAre("20240102T235900", "20240109T000000"));
}

TEST(RecurrenceCorners, ChoosesPositionsFromTheWholePeriodWhenDtstartIsInsideOfIt)
{
    // The first Monday of January 2024 is the 1st, before DTSTART.
    EXPECT_THAT(
        localTimes({.start = "20240110T090000", .rule = "FREQ=MONTHLY;BYDAY=MO;BYSETPOS=1,3", .atMost = 4}),
        ElementsAreArray(daysAt("20240110T090000", "2024 Jan 10,15 Feb 5,19")));
}

TEST(RecurrenceCorners, ChoosesPositionsFromDaysAndTimesTogether)
{
    EXPECT_THAT(localTimes({.start = "20240101T090000",
                    .rule = "FREQ=WEEKLY;BYDAY=MO,TU;BYHOUR=9,17;BYSETPOS=-1,1",
                    .atMost = 4}),
        ElementsAre("20240101T090000", "20240102T170000", "20240108T090000", "20240109T170000"));
}

TEST(RecurrenceCorners, ReadsAListWithDuplicatesAsASet)
{
    EXPECT_EQ(rule("FREQ=WEEKLY;BYDAY=SU,TH,TH"), rule("FREQ=WEEKLY;BYDAY=TH,SU"));
    EXPECT_THAT(localTimes({"20240101T050000", "FREQ=DAILY;BYHOUR=5,4,4;COUNT=3"}),
        ElementsAre("20240101T050000", "20240102T040000", "20240102T050000"));
    EXPECT_THAT(localTimes({"20240131T090000", "FREQ=MONTHLY;BYMONTHDAY=31,-1;COUNT=3"}),
        ElementsAreArray(daysAt("20240131T090000", "2024 Jan 31 Feb 29 Mar 31")));
}

TEST(RecurrenceCorners, KeepsThePhaseOfAnIntervalThatIsLimited)
{
    // Every 5 hours from 09:00: 09, 14, 19, 00, 05, 10...
    EXPECT_THAT(localTimes({"20240101T090000", "FREQ=HOURLY;INTERVAL=5;BYHOUR=10,14;COUNT=4", "UTC"}),
        ElementsAre("20240101T090000", "20240101T140000", "20240102T100000", "20240106T140000"));
    EXPECT_THAT(localTimes({"20240101T000000", "FREQ=MINUTELY;INTERVAL=1441;BYMINUTE=0,2;COUNT=3", "UTC"}),
        ElementsAre("20240101T000000", "20240103T000200", "20240301T010000"));
}

TEST(RecurrenceCorners, KeepsThePhaseOfAnIntervalOf90061Seconds)
{
    EXPECT_THAT(
        localTimes(
            {.start = "20240101T000000", .rule = "FREQ=SECONDLY;INTERVAL=90061", .zone = "UTC", .atMost = 3}),
        ElementsAre("20240101T000000", "20240102T010101", "20240103T020202"));
    EXPECT_THAT(localTimes({"20240101T000000", "FREQ=SECONDLY;INTERVAL=90061;BYSECOND=0;COUNT=2", "UTC"}),
        ElementsAre("20240101T000000", "20240303T130100"));
}

TEST(RecurrenceCorners, SkipsThe29thOfFebruaryInYearsWithout)
{
    EXPECT_THAT(localTimes({.start = "20240229T090000", .rule = "FREQ=YEARLY", .atMost = 3}),
        ElementsAreArray(daysAt("20240229T090000", "2024 Feb 29 2028 Feb 29 2032 Feb 29")));
    EXPECT_THAT(localTimes({.start = "20960229T090000", .rule = "FREQ=YEARLY", .atMost = 2}),
        ElementsAreArray(daysAt("20960229T090000", "2096 Feb 29 2104 Feb 29")));
}

TEST(RecurrenceCorners, SkipsThe31stInMonthsWithout)
{
    EXPECT_THAT(localTimes({"20240131T090000", "FREQ=MONTHLY;COUNT=4"}),
        ElementsAreArray(daysAt("20240131T090000", "2024 Jan 31 Mar 31 May 31 Jul 31")));
}

TEST(RecurrenceCorners, GivesTheNextDayForATwoWeeklySundayFromTheSaturdayBefore)
{
    EXPECT_THAT(localTimes({"20240106T090000", "FREQ=WEEKLY;INTERVAL=2;BYDAY=SU;COUNT=3"}),
        ElementsAreArray(daysAt("20240106T090000", "2024 Jan 6,7,21")));
}

TEST(RecurrenceCorners, ReadsALeapSecondAsTheOneBefore)
{
    EXPECT_THAT(localTimes({"20161231T235959", "FREQ=MINUTELY;BYSECOND=60;COUNT=2", "UTC"}),
        ElementsAre("20161231T235959", "20170101T000059"));
}

TEST(RecurrenceCorners, LeavesTimePartsOutWhereDtstartIsADate)
{
    EXPECT_THAT(localTimes({"20240101", "FREQ=DAILY;BYHOUR=9;BYMINUTE=30;COUNT=2"}),
        ElementsAreArray(daysAt("20240101", "2024 Jan 1,2")));
}

TEST(RecurrenceCorners, GivesEachDateOnceForAnHourlyRuleOverDates)
{
    // With the clock change of March 10 in between.
    EXPECT_THAT(localTimes({"20240309", "FREQ=HOURLY;INTERVAL=12;COUNT=4"}),
        ElementsAreArray(daysAt("20240309", "2024 Mar 9-12")));
}

TEST(RecurrenceCorners, LimitsTheDaysByPartsThatDoNotBelongToTheFrequency)
{
    EXPECT_THAT(localTimes({"20240101T090000", "FREQ=DAILY;BYYEARDAY=1,100,-1;COUNT=4"}),
        ElementsAreArray(daysAt("20240101T090000", "2024 Jan 1 Apr 9 Dec 31 2025 Jan 1")));
    EXPECT_THAT(localTimes({"20240513T090000", "FREQ=MONTHLY;BYWEEKNO=20;COUNT=2"}),
        ElementsAreArray(daysAt("20240513T090000", "2024 May 13 2025 May 12")));
    EXPECT_THAT(localTimes({"20240105T090000", "FREQ=WEEKLY;BYDAY=FR;BYMONTHDAY=13;COUNT=3"}),
        ElementsAreArray(daysAt("20240105T090000", "2024 Jan 5 Sep 13 Dec 13")));
}

TEST(RecurrenceCorners, EndsWithTheYear9999)
{
    EXPECT_THAT(localTimes({"99991229T090000", "FREQ=DAILY"}),
        ElementsAreArray(daysAt("99991229T090000", "9999 Dec 29-31")));
    EXPECT_THAT(localTimes({"99991231T220000", "FREQ=HOURLY", "UTC"}),
        ElementsAre("99991231T220000", "99991231T230000"));
}

TEST(RecurrenceCorners, SurvivesTheLargestInterval)
{
    for (const auto* const frequency :
        {"SECONDLY", "MINUTELY", "HOURLY", "DAILY", "WEEKLY", "MONTHLY", "YEARLY"}) {
        const auto text = std::string("FREQ=") + frequency + ";INTERVAL=4294967295";
        EXPECT_THAT(localTimes({.start = "20240101T090000", .rule = text, .atMost = 1}),
            ElementsAre("20240101T090000"));
    }
}

TEST(RecurrenceCorners, NamesNoInstanceOutsideOfTheRange)
{
    EXPECT_THAT(localTimes({.start = "20240101T090000",
                    .rule = "FREQ=DAILY",
                    .zone = "UTC",
                    .range = {utc("20240102T090000"), utc("20240104T090000")}}),
        ElementsAreArray(daysAt("20240101T090000", "2024 Jan 2,3")));
    EXPECT_THAT(localTimes({.start = "20240101T090000",
                    .rule = "FREQ=DAILY",
                    .range = {utc("20240104T000000"), utc("20240102T000000")}}),
        IsEmpty());
}

}

}
