// Local times that a clock change skips or repeats (RFC 5545, section 3.3.5).

#include "RuleTestSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tinkra::ICalendar::Test {

namespace {

using testing::ElementsAre;

struct Change {
    std::string_view name;
    std::string_view zone;
    std::string_view localTime;
    std::string_view instant; ///< in UTC
};

void PrintTo(const Change& change, std::ostream* out)
{
    *out << change.localTime << ' ' << change.zone;
}

class ClockChange : public testing::TestWithParam<Change> { };

TEST_P(ClockChange, MovesASkippedTimeForwardAndTakesTheFirstOfARepeatedOne)
{
    const auto& change = GetParam();

    const auto instant = findZone(change.zone)->toUtc(local(change.localTime));

    EXPECT_EQ(written(LocalSeconds{instant.time_since_epoch()}), change.instant);
}

TEST_P(ClockChange, GivesADailyRuleOneInstanceOnThatDayAndNoCarryToTheNext)
{
    const auto& change = GetParam();
    const auto zone = findZone(change.zone);
    const auto day = local(change.localTime);
    const auto start = written(day - std::chrono::days{1});

    const auto expansion = expansionOf({.start = start, .rule = "FREQ=DAILY;COUNT=3", .zone = change.zone});

    ASSERT_EQ(expansion.instances.size(), 3U);
    EXPECT_EQ(written(LocalSeconds{expansion.instances[1].utc.time_since_epoch()}), change.instant);
    EXPECT_EQ(expansion.instances[1].local, day);
    EXPECT_EQ(zone->toLocal(expansion.instances[2].utc), day + std::chrono::days{1});
}

INSTANTIATE_TEST_SUITE_P(HalfPastTwoOnTheDayOfTheChange, ClockChange,
    testing::Values( //
        Change{"ZurichSpring", "Europe/Zurich", "20230326T023000", "20230326T013000"},
        Change{"ZurichAutumn", "Europe/Zurich", "20231029T023000", "20231029T003000"},
        Change{"NewYorkSpring", "America/New_York", "20230312T023000", "20230312T073000"},
        Change{"NewYorkAutumn", "America/New_York", "20231105T013000", "20231105T053000"},
        // Half an hour: 02:00 becomes 02:30, and back 02:00 becomes 01:30.
        Change{"LordHoweSpring", "Australia/Lord_Howe", "20231001T021500", "20230930T154500"},
        Change{"LordHoweSpringEndOfGap", "Australia/Lord_Howe", "20231001T023000", "20230930T153000"},
        Change{"LordHoweAutumn", "Australia/Lord_Howe", "20230402T014500", "20230401T144500"},
        // Back for Ramadan on 19 March 2023, forward again on 23 April.
        Change{"CasablancaBeforeRamadan", "Africa/Casablanca", "20230319T023000", "20230319T013000"},
        Change{"CasablancaAfterRamadan", "Africa/Casablanca", "20230423T023000", "20230423T023000"},
        // 30 December 2011 did not exist there.
        Change{"ApiaSkippedDay", "Pacific/Apia", "20111230T023000", "20111230T123000"},
        // Negative daylight saving time in winter.
        Change{"DublinSpring", "Europe/Dublin", "20230326T013000", "20230326T013000"},
        Change{"DublinAutumn", "Europe/Dublin", "20231029T013000", "20231029T003000"},
        // At midnight: the day has no 00:00.
        Change{"SaoPauloMidnight", "America/Sao_Paulo", "20181104T000000", "20181104T030000"}),
    [](const auto& change) { return std::string(change.param.name); });

TEST(ClockChanges, AreFollowedInElapsedTimeByHourlyRules)
{
    EXPECT_THAT(instants({"20230326T003000", "FREQ=HOURLY;COUNT=4", "Europe/Zurich"}),
        ElementsAre("20230325T233000Z", "20230326T003000Z", "20230326T013000Z", "20230326T023000Z"));
    EXPECT_THAT(localTimes({"20230326T003000", "FREQ=HOURLY;COUNT=4", "Europe/Zurich"}),
        ElementsAre("20230326T003000", "20230326T013000", "20230326T033000", "20230326T043000"));
    EXPECT_THAT(localTimes({"20231029T013000", "FREQ=HOURLY;COUNT=4", "Europe/Zurich"}),
        ElementsAre("20231029T013000", "20231029T023000", "20231029T023000", "20231029T033000"));
}

TEST(ClockChanges, AreFollowedInElapsedTimeByMinutelyRules)
{
    EXPECT_THAT(instants({"20231029T023000", "FREQ=MINUTELY;INTERVAL=45;COUNT=4", "Europe/Zurich"}),
        ElementsAre("20231029T003000Z", "20231029T011500Z", "20231029T020000Z", "20231029T024500Z"));
}

TEST(ClockChanges, RepeatTheHourOfARuleThatIsLimitedToIt)
{
    EXPECT_THAT(instants({"20231028T021500", "FREQ=HOURLY;BYHOUR=2;COUNT=4", "Europe/Zurich"}),
        ElementsAre("20231028T001500Z", "20231029T001500Z", "20231029T011500Z", "20231030T011500Z"));
    EXPECT_THAT(instants({"20231028T020500", "FREQ=MINUTELY;BYHOUR=2;BYMINUTE=5;COUNT=4", "Europe/Zurich"}),
        ElementsAre("20231028T000500Z", "20231029T000500Z", "20231029T010500Z", "20231030T010500Z"));
}

TEST(ClockChanges, LeaveTheHourOutThatAnHourlyRuleIsLimitedTo)
{
    EXPECT_THAT(instants({"20230325T021500", "FREQ=HOURLY;BYHOUR=2;COUNT=2", "Europe/Zurich"}),
        ElementsAre("20230325T011500Z", "20230327T001500Z"));
}

TEST(ClockChanges, KeepAWeeklyMeetingAtItsWallClockTime)
{
    EXPECT_THAT(instants({"20230319T100000", "FREQ=WEEKLY;COUNT=3", "Europe/Zurich"}),
        ElementsAre("20230319T090000Z", "20230326T080000Z", "20230402T080000Z"));
}

TEST(ClockChanges, GiveASkippedAndAShiftedTimeTheirOwnInstances)
{
    // 02:30 moves to 03:30, where another instance already is: both are named.
    const auto expansion = expansionOf({"20230326T013000", "FREQ=HOURLY;COUNT=1", "Europe/Zurich"});
    EXPECT_EQ(expansion.instances.size(), 1U);
    EXPECT_THAT(instants({"20230326T023000", "FREQ=DAILY;BYHOUR=2,3;COUNT=3", "Europe/Zurich"}),
        ElementsAre("20230326T013000Z", "20230326T013000Z", "20230327T003000Z"));
}

TEST(ClockChanges, HoldOnTheClockOfTheFutureToo)
{
    EXPECT_THAT(instants({"24000326T023000", "FREQ=DAILY;COUNT=2", "Europe/Zurich"}),
        ElementsAre("24000326T013000Z", "24000327T003000Z"));
}

}

}
