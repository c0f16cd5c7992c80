// The examples of RFC 5545, section 3.8.5.3, and of section 3.3.10. Where the text shows an endless rule, its
// first instances are compared.

#include "RuleTestSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tinkra::ICalendar::Test {

namespace {

using testing::ElementsAreArray;

struct Example {
    std::string_view name;
    std::string_view start;
    std::string_view rule;
    std::string_view days;
};

void PrintTo(const Example& example, std::ostream* out)
{
    *out << example.rule;
}

class RfcExample : public testing::TestWithParam<Example> { };

TEST_P(RfcExample, GivesTheDaysThatTheStandardLists)
{
    const auto& example = GetParam();
    const auto expected = daysAt(example.start, example.days);

    const auto given = localTimes({.start = example.start, .rule = example.rule, .atMost = expected.size()});

    EXPECT_THAT(given, ElementsAreArray(expected));
}

TEST_P(RfcExample, EndsWhereTheStandardSaysSo)
{
    const auto& example = GetParam();
    const bool isEndless = example.rule.find("COUNT") == std::string_view::npos
        && example.rule.find("UNTIL") == std::string_view::npos;

    const auto listed = daysAt(example.start, example.days).size();
    const auto expansion = expansionOf({.start = example.start, .rule = example.rule, .atMost = listed});

    EXPECT_EQ(expansion.end, isEndless ? ExpansionEnd::TooManyOccurrences : ExpansionEnd::Complete);
}

INSTANTIATE_TEST_SUITE_P(Section3853, RfcExample,
    testing::Values(
        Example{"DailyForTenOccurrences", "19970902T090000", "FREQ=DAILY;COUNT=10", "1997 Sep 2-11"},
        Example{"DailyUntilDecember24", "19970902T090000", "FREQ=DAILY;UNTIL=19971224T000000Z",
            "1997 Sep 2-30 Oct 1-31 Nov 1-30 Dec 1-23"},
        Example{"EveryOtherDay", "19970902T090000", "FREQ=DAILY;INTERVAL=2",
            "1997 Sep 2,4,6,8,10,12,14,16,18,20,22,24,26,28,30 Oct 2,4,6,8,10,12,14,16,18,20,22,24,26,28,30 "
            "Nov 1,3,5,7,9,11,13,15,17,19,21,23,25,27,29 Dec 1,3"},
        Example{
            "EveryTenDays", "19970902T090000", "FREQ=DAILY;INTERVAL=10;COUNT=5", "1997 Sep 2,12,22 Oct 2,12"},
        Example{"EveryDayInJanuaryAsYearly", "19980101T090000",
            "FREQ=YEARLY;UNTIL=20000131T140000Z;BYMONTH=1;BYDAY=SU,MO,TU,WE,TH,FR,SA",
            "1998 Jan 1-31 1999 Jan 1-31 2000 Jan 1-31"},
        Example{"EveryDayInJanuaryAsDaily", "19980101T090000", "FREQ=DAILY;UNTIL=20000131T140000Z;BYMONTH=1",
            "1998 Jan 1-31 1999 Jan 1-31 2000 Jan 1-31"},
        Example{"WeeklyForTenOccurrences", "19970902T090000", "FREQ=WEEKLY;COUNT=10",
            "1997 Sep 2,9,16,23,30 Oct 7,14,21,28 Nov 4"},
        Example{"WeeklyUntilDecember24", "19970902T090000", "FREQ=WEEKLY;UNTIL=19971224T000000Z",
            "1997 Sep 2,9,16,23,30 Oct 7,14,21,28 Nov 4,11,18,25 Dec 2,9,16,23"},
        Example{"EveryOtherWeek", "19970902T090000", "FREQ=WEEKLY;INTERVAL=2;WKST=SU",
            "1997 Sep 2,16,30 Oct 14,28 Nov 11,25 Dec 9,23 1998 Jan 6,20 Feb 3,17"},
        Example{"TuesdayAndThursdayForFiveWeeksByUntil", "19970902T090000",
            "FREQ=WEEKLY;UNTIL=19971007T000000Z;WKST=SU;BYDAY=TU,TH",
            "1997 Sep 2,4,9,11,16,18,23,25,30 Oct 2"},
        Example{"TuesdayAndThursdayForFiveWeeksByCount", "19970902T090000",
            "FREQ=WEEKLY;COUNT=10;WKST=SU;BYDAY=TU,TH", "1997 Sep 2,4,9,11,16,18,23,25,30 Oct 2"},
        Example{"EveryOtherWeekOnThreeDays", "19970901T090000",
            "FREQ=WEEKLY;INTERVAL=2;UNTIL=19971224T000000Z;WKST=SU;BYDAY=MO,WE,FR",
            "1997 Sep 1,3,5,15,17,19,29 Oct 1,3,13,15,17,27,29,31 Nov 10,12,14,24,26,28 Dec 8,10,12,22"},
        Example{"EveryOtherWeekOnTwoDays", "19970902T090000",
            "FREQ=WEEKLY;INTERVAL=2;COUNT=8;WKST=SU;BYDAY=TU,TH", "1997 Sep 2,4,16,18,30 Oct 2,14,16"},
        Example{"FirstFridayForTenOccurrences", "19970905T090000", "FREQ=MONTHLY;COUNT=10;BYDAY=1FR",
            "1997 Sep 5 Oct 3 Nov 7 Dec 5 1998 Jan 2 Feb 6 Mar 6 Apr 3 May 1 Jun 5"},
        Example{"FirstFridayUntilDecember24", "19970905T090000",
            "FREQ=MONTHLY;UNTIL=19971224T000000Z;BYDAY=1FR", "1997 Sep 5 Oct 3 Nov 7 Dec 5"},
        Example{"FirstAndLastSundayOfEveryOtherMonth", "19970907T090000",
            "FREQ=MONTHLY;INTERVAL=2;COUNT=10;BYDAY=1SU,-1SU",
            "1997 Sep 7,28 Nov 2,30 1998 Jan 4,25 Mar 1,29 May 3,31"},
        Example{"SecondToLastMonday", "19970922T090000", "FREQ=MONTHLY;COUNT=6;BYDAY=-2MO",
            "1997 Sep 22 Oct 20 Nov 17 Dec 22 1998 Jan 19 Feb 16"},
        Example{"ThirdToLastDay", "19970928T090000", "FREQ=MONTHLY;BYMONTHDAY=-3",
            "1997 Sep 28 Oct 29 Nov 28 Dec 29 1998 Jan 29 Feb 26"},
        Example{"SecondAndFifteenth", "19970902T090000", "FREQ=MONTHLY;COUNT=10;BYMONTHDAY=2,15",
            "1997 Sep 2,15 Oct 2,15 Nov 2,15 Dec 2,15 1998 Jan 2,15"},
        Example{"FirstAndLastDay", "19970930T090000", "FREQ=MONTHLY;COUNT=10;BYMONTHDAY=1,-1",
            "1997 Sep 30 Oct 1,31 Nov 1,30 Dec 1,31 1998 Jan 1,31 Feb 1"},
        Example{"TenthToFifteenthEveryEighteenMonths", "19970910T090000",
            "FREQ=MONTHLY;INTERVAL=18;COUNT=10;BYMONTHDAY=10,11,12,13,14,15",
            "1997 Sep 10-15 1999 Mar 10-13"},
        Example{"EveryTuesdayOfEveryOtherMonth", "19970902T090000", "FREQ=MONTHLY;INTERVAL=2;BYDAY=TU",
            "1997 Sep 2,9,16,23,30 Nov 4,11,18,25 1998 Jan 6,13,20,27 Mar 3,10,17,24,31"},
        Example{"YearlyInJuneAndJuly", "19970610T090000", "FREQ=YEARLY;COUNT=10;BYMONTH=6,7",
            "1997 Jun 10 Jul 10 1998 Jun 10 Jul 10 1999 Jun 10 Jul 10 2000 Jun 10 Jul 10 2001 Jun 10 Jul 10"},
        Example{"EveryOtherYearInThreeMonths", "19970310T090000",
            "FREQ=YEARLY;INTERVAL=2;COUNT=10;BYMONTH=1,2,3",
            "1997 Mar 10 1999 Jan 10 Feb 10 Mar 10 2001 Jan 10 Feb 10 Mar 10 2003 Jan 10 Feb 10 Mar 10"},
        Example{"ThreeDaysOfEveryThirdYear", "19970101T090000",
            "FREQ=YEARLY;INTERVAL=3;COUNT=10;BYYEARDAY=1,100,200",
            "1997 Jan 1 Apr 10 Jul 19 2000 Jan 1 Apr 9 Jul 18 2003 Jan 1 Apr 10 Jul 19 2006 Jan 1"},
        Example{"TwentiethMondayOfTheYear", "19970519T090000", "FREQ=YEARLY;BYDAY=20MO",
            "1997 May 19 1998 May 18 1999 May 17"},
        Example{"MondayOfWeekTwenty", "19970512T090000", "FREQ=YEARLY;BYWEEKNO=20;BYDAY=MO",
            "1997 May 12 1998 May 11 1999 May 17"},
        Example{"EveryThursdayInMarch", "19970313T090000", "FREQ=YEARLY;BYMONTH=3;BYDAY=TH",
            "1997 Mar 13,20,27 1998 Mar 5,12,19,26 1999 Mar 4,11,18,25"},
        Example{"EveryThursdayInSummer", "19970605T090000", "FREQ=YEARLY;BYDAY=TH;BYMONTH=6,7,8",
            "1997 Jun 5,12,19,26 Jul 3,10,17,24,31 Aug 7,14,21,28 1998 Jun 4,11,18,25 Jul 2,9,16,23,30 "
            "Aug 6,13,20,27 1999 Jun 3,10,17,24 Jul 1,8,15,22,29 Aug 5,12,19,26"},
        // DTSTART, which the standard takes out with an EXDATE, comes first.
        Example{"EveryFridayTheThirteenth", "19970902T090000", "FREQ=MONTHLY;BYDAY=FR;BYMONTHDAY=13",
            "1997 Sep 2 1998 Feb 13 Mar 13 Nov 13 1999 Aug 13 2000 Oct 13"},
        Example{"SaturdayAfterTheFirstSunday", "19970913T090000",
            "FREQ=MONTHLY;BYDAY=SA;BYMONTHDAY=7,8,9,10,11,12,13",
            "1997 Sep 13 Oct 11 Nov 8 Dec 13 1998 Jan 10 Feb 7 Mar 7 Apr 11 May 9 Jun 13"},
        Example{"ElectionDay", "19961105T090000",
            "FREQ=YEARLY;INTERVAL=4;BYMONTH=11;BYDAY=TU;BYMONTHDAY=2,3,4,5,6,7,8",
            "1996 Nov 5 2000 Nov 7 2004 Nov 2"},
        Example{"ThirdOfTuesdayToThursday", "19970904T090000",
            "FREQ=MONTHLY;COUNT=3;BYDAY=TU,WE,TH;BYSETPOS=3", "1997 Sep 4 Oct 7 Nov 6"},
        Example{"SecondToLastWorkday", "19970929T090000", "FREQ=MONTHLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=-2",
            "1997 Sep 29 Oct 30 Nov 27 Dec 30 1998 Jan 29 Feb 26 Mar 30"},
        Example{"WeekStartOnMonday", "19970805T090000", "FREQ=WEEKLY;INTERVAL=2;COUNT=4;BYDAY=TU,SU;WKST=MO",
            "1997 Aug 5,10,19,24"},
        Example{"WeekStartOnSunday", "19970805T090000", "FREQ=WEEKLY;INTERVAL=2;COUNT=4;BYDAY=TU,SU;WKST=SU",
            "1997 Aug 5,17,19,31"},
        Example{"ThirtiethOfFebruaryIsSkipped", "20070115T090000", "FREQ=MONTHLY;BYMONTHDAY=15,30;COUNT=5",
            "2007 Jan 15,30 Feb 15 Mar 15,30"},
        Example{"LastWorkdayOfTheMonth", "19970930T090000", "FREQ=MONTHLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=-1",
            "1997 Sep 30 Oct 31 Nov 28 Dec 31 1998 Jan 30"}),
    [](const auto& example) { return std::string(example.param.name); });

std::vector<std::string> onDay(std::string_view day, std::initializer_list<std::string_view> times)
{
    std::vector<std::string> result;
    for (const auto time : times)
        result.push_back(std::string(day) + "T" + std::string(time) + "00");
    return result;
}

// The standard prints 17:00 UTC here, which is 13:00 in New York, and lists 15:00 all the same (erratum).
TEST(RfcExamples, EveryThreeHoursUntilOneInTheAfternoon)
{
    EXPECT_THAT(localTimes({"19970902T090000", "FREQ=HOURLY;INTERVAL=3;UNTIL=19970902T170000Z"}),
        ElementsAreArray(onDay("19970902", {"0900", "1200"})));
}

TEST(RfcExamples, EveryThreeHoursUntilFiveInTheAfternoon)
{
    EXPECT_THAT(localTimes({"19970902T090000", "FREQ=HOURLY;INTERVAL=3;UNTIL=19970902T210000Z"}),
        ElementsAreArray(onDay("19970902", {"0900", "1200", "1500"})));
}

TEST(RfcExamples, EveryFifteenMinutesForSixOccurrences)
{
    EXPECT_THAT(localTimes({"19970902T090000", "FREQ=MINUTELY;INTERVAL=15;COUNT=6"}),
        ElementsAreArray(onDay("19970902", {"0900", "0915", "0930", "0945", "1000", "1015"})));
}

TEST(RfcExamples, EveryHourAndAHalfForFourOccurrences)
{
    EXPECT_THAT(localTimes({"19970902T090000", "FREQ=MINUTELY;INTERVAL=90;COUNT=4"}),
        ElementsAreArray(onDay("19970902", {"0900", "1030", "1200", "1330"})));
}

TEST(RfcExamples, EveryTwentyMinutesOfTheWorkingDayInBothWays)
{
    std::vector<std::string> expected;
    for (const std::string day : {"19970902", "19970903"}) {
        for (int hour = 9; hour <= 16; ++hour) {
            for (const std::string minute : {"00", "20", "40"})
                expected.push_back(day + "T" + (hour < 10 ? "0" : "") + std::to_string(hour) + minute + "00");
        }
    }

    EXPECT_THAT(localTimes({.start = "19970902T090000",
                    .rule = "FREQ=DAILY;BYHOUR=9,10,11,12,13,14,15,16;BYMINUTE=0,20,40",
                    .atMost = 48}),
        ElementsAreArray(expected));
    EXPECT_THAT(localTimes({.start = "19970902T090000",
                    .rule = "FREQ=MINUTELY;INTERVAL=20;BYHOUR=9,10,11,12,13,14,15,16",
                    .atMost = 48}),
        ElementsAreArray(expected));
}

TEST(RfcExamples, EveryOtherYearOnSundaysOfJanuaryAtTwoTimes)
{
    EXPECT_THAT(localTimes({.start = "19970105T083000",
                    .rule = "FREQ=YEARLY;INTERVAL=2;BYMONTH=1;BYDAY=SU;BYHOUR=8,9;BYMINUTE=30",
                    .atMost = 10}),
        testing::ElementsAre("19970105T083000", "19970105T093000", "19970112T083000", "19970112T093000",
            "19970119T083000", "19970119T093000", "19970126T083000", "19970126T093000", "19990103T083000",
            "19990103T093000"));
}

}

}
