#include "RuleTestSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tinkra::ICalendar::Test {

namespace {

using testing::ElementsAre;
using testing::SizeIs;

class RuleThatYieldsNothing : public testing::TestWithParam<std::string_view> { };

TEST_P(RuleThatYieldsNothing, EndsByItselfWithDtstartAlone)
{
    const auto expansion = expansionOf({.start = "20260101T060000", .rule = GetParam(), .zone = "UTC"});

    EXPECT_EQ(expansion.end, ExpansionEnd::Complete);
    EXPECT_THAT(expansion.instances, SizeIs(1));
}

INSTANTIATE_TEST_SUITE_P(OfEveryKind, RuleThatYieldsNothing,
    testing::Values("FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30", "FREQ=YEARLY;BYYEARDAY=366;BYMONTH=1",
        "FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30;COUNT=2", "FREQ=YEARLY;BYWEEKNO=20;BYMONTH=1",
        "FREQ=YEARLY;BYDAY=MO;BYSETPOS=60", "FREQ=YEARLY;BYDAY=53MO,-53MO;BYMONTH=3",
        "FREQ=YEARLY;INTERVAL=2;BYYEARDAY=-366;BYMONTHDAY=31", "FREQ=MONTHLY;BYMONTH=4;BYMONTHDAY=31",
        "FREQ=MONTHLY;BYDAY=6MO", "FREQ=MONTHLY;BYMONTHDAY=1;BYDAY=2TU", "FREQ=MONTHLY;INTERVAL=12;BYMONTH=2",
        "FREQ=WEEKLY;BYMONTH=2;BYMONTHDAY=30", "FREQ=WEEKLY;BYDAY=MO;BYSETPOS=2",
        "FREQ=DAILY;BYMONTH=2;BYMONTHDAY=30", "FREQ=DAILY;INTERVAL=7;BYDAY=TU", "FREQ=DAILY;BYSETPOS=2",
        "FREQ=HOURLY;BYMONTH=2;BYMONTHDAY=30", "FREQ=HOURLY;INTERVAL=24;BYHOUR=5",
        "FREQ=HOURLY;INTERVAL=168;BYDAY=SU", "FREQ=HOURLY;INTERVAL=2;BYHOUR=1,3",
        "FREQ=MINUTELY;BYMONTH=2;BYMONTHDAY=30", "FREQ=MINUTELY;INTERVAL=60;BYMINUTE=7",
        "FREQ=MINUTELY;INTERVAL=1440;BYHOUR=23;COUNT=5", "FREQ=SECONDLY;BYMONTH=2;BYMONTHDAY=30",
        "FREQ=SECONDLY;INTERVAL=2;BYSECOND=31", "FREQ=SECONDLY;INTERVAL=90061;BYMONTH=6;BYMONTHDAY=31",
        "FREQ=SECONDLY;INTERVAL=86400;BYHOUR=7", "FREQ=SECONDLY;BYSETPOS=2;BYYEARDAY=366;BYMONTH=3"));

TEST(ExpansionBudget, EndsARuleThatGivesTooManyOccurrences)
{
    for (const std::string_view text :
        {"FREQ=SECONDLY", "FREQ=DAILY", "FREQ=YEARLY;BYMONTH=1,2;BYMONTHDAY=1,2"}) {
        const auto expansion = expansionOf({.start = "20260101T060000", .rule = text, .atMost = 100});
        EXPECT_EQ(expansion.end, ExpansionEnd::TooManyOccurrences);
        EXPECT_THAT(expansion.instances, SizeIs(100));
    }
}

TEST(ExpansionBudget, IsCompleteWithExactlyAsManyOccurrencesAsItAllows)
{
    const auto expansion =
        expansionOf({.start = "20260101T060000", .rule = "FREQ=DAILY;COUNT=100", .atMost = 100});

    EXPECT_EQ(expansion.end, ExpansionEnd::Complete);
    EXPECT_THAT(expansion.instances, SizeIs(100));
}

TEST(ExpansionBudget, EndsARuleThatTakesTooMuchTime)
{
    // Two thousand million steps lie before the range, and COUNT makes each of them count.
    std::size_t given = 0;
    const auto end = expandRule(rule("FREQ=MINUTELY;BYSECOND=0,1,2;COUNT=4000000000"),
        {.local = local("00010101"), .zone = utcZone()}, {utc("99980101"), utc("99990101")},
        {.occurrences = 10, .time = std::chrono::milliseconds{5}}, [&](const RuleInstance&) { ++given; });

    EXPECT_EQ(end, ExpansionEnd::TooMuchTime);
    EXPECT_EQ(given, 0U);
}

TEST(ExpansionBudget, TakesTheLongestListsThatARuleCanHave)
{
    std::string text = "FREQ=YEARLY;BYYEARDAY=1";
    for (int i = 2; i <= 366; ++i)
        text += "," + std::to_string(i) + ",-" + std::to_string(i);
    text += ";BYHOUR=0";
    for (int i = 1; i < 24; ++i)
        text += "," + std::to_string(i);
    for (const std::string part : {";BYMINUTE=0", ";BYSECOND=0"}) {
        text += part;
        for (int i = 1; i < 60; ++i)
            text += "," + std::to_string(i);
    }

    EXPECT_THAT(localTimes({.start = "20240101T000000", .rule = text, .zone = "UTC", .atMost = 2}),
        ElementsAre("20240101T000000", "20240101T000001"));
    EXPECT_THAT(localTimes({.start = "20240101T000000",
                    .rule = text + ";BYSETPOS=-366,-1,1,366",
                    .zone = "UTC",
                    .atMost = 4}),
        ElementsAre("20240101T000000", "20240101T000605", "20241231T235354", "20241231T235959"));
    EXPECT_THAT(localTimes({.start = "20240101T000000",
                    .rule = text,
                    .zone = "UTC",
                    .range = {utc("20250630T235959"), utc("20250701T000001")}}),
        ElementsAre("20250630T235959", "20250701T000000"));
}

}

}
