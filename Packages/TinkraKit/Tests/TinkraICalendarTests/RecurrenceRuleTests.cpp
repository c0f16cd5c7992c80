#include "RuleTestSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tinkra::ICalendar::Test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

struct Parsed {
    std::optional<RecurrenceRule> rule;
    std::vector<std::string> notices;
};

Parsed parsed(std::string_view text)
{
    Parsed result;
    result.rule = parseRecurrenceRule(text, result.notices);
    return result;
}

TEST(RecurrenceRuleText, IsReadPartByPart)
{
    const auto result =
        parsed("FREQ=YEARLY;INTERVAL=2;COUNT=10;BYMONTH=2,1;BYDAY=SU,-1MO,+2TU;BYHOUR=8,9;BYMINUTE=30;"
               "BYSECOND=0;BYMONTHDAY=-1,5;BYYEARDAY=-366,1;BYSETPOS=-1,1;WKST=SU");

    EXPECT_THAT(result.notices, IsEmpty());
    ASSERT_TRUE(result.rule);
    EXPECT_EQ(result.rule->frequency, Frequency::Yearly);
    EXPECT_EQ(result.rule->interval, 2U);
    EXPECT_EQ(result.rule->count, 10U);
    EXPECT_THAT(result.rule->byMonth, ElementsAre(1, 2));
    EXPECT_THAT(result.rule->byDay,
        ElementsAre(WeekdayNumber{0, std::chrono::Sunday}, WeekdayNumber{-1, std::chrono::Monday},
            WeekdayNumber{2, std::chrono::Tuesday}));
    EXPECT_THAT(result.rule->byHour, ElementsAre(8, 9));
    EXPECT_THAT(result.rule->byMinute, ElementsAre(30));
    EXPECT_THAT(result.rule->bySecond, ElementsAre(0));
    EXPECT_THAT(result.rule->byMonthDay, ElementsAre(-1, 5));
    EXPECT_THAT(result.rule->byYearDay, ElementsAre(-366, 1));
    EXPECT_THAT(result.rule->bySetPos, ElementsAre(-1, 1));
    EXPECT_EQ(result.rule->weekStart, std::chrono::Sunday);
}

TEST(RecurrenceRuleText, IsReadInAnyCaseOrderAndSpacing)
{
    const auto plain = parsed("FREQ=WEEKLY;INTERVAL=2;BYDAY=MO,FR;UNTIL=20240101T000000Z");

    for (const auto* const text : {"until=20240101t000000z;byday=mo,fr;interval=2;freq=weekly",
             " FREQ = WEEKLY ; BYDAY = MO , FR ; INTERVAL = 2 ; UNTIL = 20240101T000000Z ;",
             ";FREQ=WEEKLY;;INTERVAL=02;BYDAY=FR,,MO,;UNTIL=20240101T000000Z;;"}) {
        const auto result = parsed(text);
        EXPECT_EQ(result.rule, plain.rule) << text;
        EXPECT_THAT(result.notices, IsEmpty()) << text;
    }
}

TEST(RecurrenceRuleText, IsNoRuleWithoutAKnownFrequency)
{
    for (const auto* const text :
        {"", ";", "INTERVAL=2", "FREQ=", "FREQ", "FREQ=FORTNIGHTLY;BYDAY=MO", "=DAILY"}) {
        const auto result = parsed(text);
        EXPECT_FALSE(result.rule) << text;
        EXPECT_FALSE(result.notices.empty()) << text;
    }
}

TEST(RecurrenceRuleText, NamesUnknownPartsAndGoesOn)
{
    const auto result = parsed("FREQ=DAILY;X-LUNCH=YES;BYEASTER=0;COUNT=2");

    EXPECT_EQ(result.rule, parsed("FREQ=DAILY;COUNT=2").rule);
    EXPECT_THAT(result.notices, ElementsAre(HasSubstr("X-LUNCH=YES"), HasSubstr("BYEASTER=0")));
}

TEST(RecurrenceRuleText, CountsOnlyTheFirstOfADuplicatePart)
{
    const auto result = parsed("FREQ=DAILY;COUNT=3;COUNT=5;FREQ=WEEKLY");

    EXPECT_EQ(result.rule, parsed("FREQ=DAILY;COUNT=3").rule);
    EXPECT_THAT(result.notices, ElementsAre(HasSubstr("COUNT"), HasSubstr("FREQ")));
}

TEST(RecurrenceRuleText, LeavesValuesOutOfRangeOutWithANotice)
{
    struct Case {
        std::string text;
        std::string remainder;
        std::size_t notices;
    };
    for (const auto& [text, remainder, notices] : std::initializer_list<Case>{
             {"FREQ=DAILY;BYMONTH=0,1,13", "FREQ=DAILY;BYMONTH=1", 2},
             {"FREQ=DAILY;BYMONTH=5L", "FREQ=DAILY", 1},
             {"FREQ=DAILY;BYHOUR=-1,0,23,24", "FREQ=DAILY;BYHOUR=0,23", 2},
             {"FREQ=DAILY;BYMINUTE=60,x,59", "FREQ=DAILY;BYMINUTE=59", 2},
             {"FREQ=DAILY;BYSECOND=61", "FREQ=DAILY", 1},
             {"FREQ=DAILY;BYMONTHDAY=-32,0,32,7", "FREQ=DAILY;BYMONTHDAY=7", 3},
             {"FREQ=YEARLY;BYYEARDAY=367,0,-366", "FREQ=YEARLY;BYYEARDAY=-366", 2},
             {"FREQ=YEARLY;BYWEEKNO=54,53", "FREQ=YEARLY;BYWEEKNO=53", 1},
             {"FREQ=MONTHLY;BYDAY=54MO,0MO,MO,M,XX", "FREQ=MONTHLY;BYDAY=MO", 4},
             {"FREQ=MONTHLY;BYDAY=MO;BYSETPOS=0,367,-1", "FREQ=MONTHLY;BYDAY=MO;BYSETPOS=-1", 2},
             {"FREQ=DAILY;WKST=MONDAY", "FREQ=DAILY", 1},
             {"FREQ=DAILY;COUNT=0", "FREQ=DAILY", 1},
             {"FREQ=DAILY;COUNT=-3", "FREQ=DAILY", 1},
             {"FREQ=DAILY;INTERVAL=0", "FREQ=DAILY", 1},
             {"FREQ=DAILY;INTERVAL=-2", "FREQ=DAILY", 1},
             {"FREQ=DAILY;INTERVAL=two", "FREQ=DAILY", 1},
             {"FREQ=DAILY;UNTIL=tomorrow", "FREQ=DAILY", 1},
             {"FREQ=DAILY;UNTIL=20241301", "FREQ=DAILY", 1},
             {"FREQ=DAILY;UNTIL=20240101T250000Z", "FREQ=DAILY", 1},
             {"FREQ=DAILY;UNTIL=2024-101", "FREQ=DAILY", 1},
             {"FREQ=DAILY;BYHOUR=99999999999999999999", "FREQ=DAILY", 1},
         }) {
        const auto result = parsed(text);
        EXPECT_EQ(result.rule, parsed(remainder).rule) << text;
        EXPECT_THAT(result.notices, SizeIs(notices)) << text;
    }
}

TEST(RecurrenceRuleText, LimitsNumbersThatAreTooLarge)
{
    const auto result = parsed("FREQ=DAILY;INTERVAL=99999999999999999999;COUNT=5000000000");

    EXPECT_EQ(result.rule->interval, 4'294'967'295U);
    EXPECT_EQ(result.rule->count, 4'294'967'295U);
}

TEST(RecurrenceRuleText, HasAnUntilOfThreeTypes)
{
    const auto inUtc = parsed("FREQ=DAILY;UNTIL=20240102T030405Z").rule;
    const auto floating = parsed("FREQ=DAILY;UNTIL=20240102T030405").rule;
    const auto date = parsed("FREQ=DAILY;UNTIL=20240102").rule;

    EXPECT_EQ(inUtc->until, Until(utc("20240102T030405")));
    EXPECT_EQ(floating->until, Until(local("20240102T030405")));
    EXPECT_FALSE(floating->untilIsDate);
    EXPECT_EQ(date->until, Until(local("20240102")));
    EXPECT_TRUE(date->untilIsDate);
}

TEST(RecurrenceRuleText, CountsAnUntilOnThatTheMonthDoesNotHave)
{
    EXPECT_EQ(parsed("FREQ=DAILY;UNTIL=20240231").rule->until, Until(local("20240302")));
}

TEST(RecurrenceRuleText, WarnsOfNumbersInBydayThatHaveNoMeaning)
{
    for (const auto* const frequency : {"DAILY", "WEEKLY", "HOURLY", "MINUTELY", "SECONDLY"}) {
        const auto result = parsed(std::string("FREQ=") + frequency + ";BYDAY=1TU,TU,-2FR");
        EXPECT_THAT(result.rule->byDay,
            ElementsAre(WeekdayNumber{0, std::chrono::Tuesday}, WeekdayNumber{0, std::chrono::Friday}));
        EXPECT_THAT(result.notices, SizeIs(1));
    }
    EXPECT_THAT(parsed("FREQ=YEARLY;BYWEEKNO=1;BYDAY=1TU").notices, SizeIs(1));
    EXPECT_THAT(parsed("FREQ=YEARLY;BYDAY=1TU").notices, IsEmpty());
}

TEST(RecurrenceRuleText, AcceptsTheGregorianScaleAndWarnsOfOthers)
{
    EXPECT_THAT(parsed("RSCALE=GREGORIAN;FREQ=YEARLY;SKIP=OMIT").notices, IsEmpty());
    EXPECT_THAT(parsed("RSCALE=CHINESE;FREQ=YEARLY").notices, ElementsAre(HasSubstr("CHINESE")));
    EXPECT_THAT(
        parsed("RSCALE=GREGORIAN;FREQ=YEARLY;SKIP=FORWARD").notices, ElementsAre(HasSubstr("FORWARD")));
    EXPECT_EQ(parsed("RSCALE=CHINESE;FREQ=YEARLY").rule, parsed("FREQ=YEARLY").rule);
}

TEST(RecurrenceRuleText, HasOnlySoManyNotices)
{
    std::string text = "FREQ=DAILY;BYHOUR=99";
    for (int i = 0; i < 1000; ++i)
        text += ",99";

    EXPECT_THAT(parsed(text).notices, SizeIs(testing::Le(10U)));
}

}

}
