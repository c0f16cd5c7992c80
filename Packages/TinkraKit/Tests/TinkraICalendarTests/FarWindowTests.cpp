// A far range is reached without walking there; the result must be that of the walk.

#include "RuleOracle.h"
#include "RuleTestSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tinkra::ICalendar::Test {

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr std::string_view kZone = "Europe/Zurich";

TimeRange range(std::string_view from, std::string_view to)
{
    return {utc(from), utc(to)};
}

TEST(FarWindow, IsReachedByADailyRuleFromLongAgo)
{
    EXPECT_THAT(localTimes({.start = "19700101T090000",
                    .rule = "FREQ=DAILY;INTERVAL=3",
                    .zone = kZone,
                    .range = range("20260101", "20260108")}),
        ElementsAreArray(daysAt("19700101T090000", "2026 Jan 1,4,7")));
}

TEST(FarWindow, IsReachedWithTheCountOfWhatLiesBefore)
{
    // 1 January 2026 is instance number 20,455.
    for (const auto& [count, days] : std::initializer_list<std::pair<std::string, std::string>>{
             {"20454", ""}, {"20455", "2026 Jan 1"}, {"20457", "2026 Jan 1-3"}, {"99999", "2026 Jan 1-4"}}) {
        EXPECT_THAT(localTimes({.start = "19700101T090000",
                        .rule = "FREQ=DAILY;COUNT=" + count,
                        .zone = kZone,
                        .range = range("20260101", "20260105")}),
            ElementsAreArray(daysAt("19700101T090000", days)))
            << count;
    }
}

TEST(FarWindow, CountsADtstartThatDoesNotFitOnTheWay)
{
    // From Thursday, 1 January 1970: DTSTART, then two a week.
    const auto last = [](int count) {
        const auto times = localTimes({.start = "19700101T090000",
            .rule = "FREQ=WEEKLY;BYDAY=MO,FR;COUNT=" + std::to_string(count),
            .zone = kZone,
            .range = range("20251201", "20270101")});
        return times.empty() ? std::string("none") : times.back();
    };
    EXPECT_EQ(last(5847), "20260105T090000");
    EXPECT_EQ(last(5848), "20260109T090000");
}

TEST(FarWindow, IsReachedByAnHourlyRuleInElapsedTime)
{
    EXPECT_THAT(localTimes({.start = "19700101T000000",
                    .rule = "FREQ=HOURLY;INTERVAL=7",
                    .zone = "UTC",
                    .range = range("20260101", "20260102")}),
        ElementsAre("20260101T000000", "20260101T070000", "20260101T140000", "20260101T210000"));
    EXPECT_THAT(instants({.start = "19700101T000000",
                    .rule = "FREQ=SECONDLY;COUNT=1767225602",
                    .zone = "UTC",
                    .range = range("20260101", "20260102")}),
        ElementsAre("20260101T000000Z", "20260101T000001Z"));
}

TEST(FarWindow, IsReachedAtOnceByTheFinestRuleFromTheEarliestYear)
{
    EXPECT_THAT(localTimes({.start = "00010101T000000",
                    .rule = "FREQ=SECONDLY;BYHOUR=9;BYMINUTE=0;BYSECOND=0",
                    .zone = kZone,
                    .range = range("99990601", "99990603")}),
        ElementsAre("99990601T090000", "99990602T090000"));
}

TEST(FarWindow, IsEmptyBeforeDtstartAndAfterUntil)
{
    EXPECT_THAT(
        localTimes(
            {.start = "20260101T090000", .rule = "FREQ=DAILY", .range = range("20250101", "20251231")}),
        IsEmpty());
    EXPECT_THAT(localTimes({.start = "20200101T090000",
                    .rule = "FREQ=DAILY;UNTIL=20201231T000000Z",
                    .range = range("20250101", "20251231")}),
        IsEmpty());
}

TEST(FarWindow, ShowsWhatAWalkFromDtstartShows)
{
    // Windows of some days anywhere in the span, against the same rule over all of it.
    for (std::uint64_t seed = 1; seed <= 1500; ++seed) {
        std::mt19937_64 random(seed * 7919);
        const auto series = randomSeries(random, static_cast<Frequency>(2 + seed % 5));
        const SeriesStart start{
            .local = series.start, .zone = findZone(series.zone), .isDate = series.isDate};
        const ExpansionBudget budget{.occurrences = 10'000'000, .time = std::chrono::seconds{60}};
        const auto parsed = rule(series.rule);
        const auto begin = utc(written(series.start));
        const TimeRange window{
            begin + std::chrono::days{seed * 11 % 6000}, begin + std::chrono::days{seed * 11 % 6000 + 40}};

        std::vector<std::string> walked;
        expandRule(parsed, start, {begin - std::chrono::days{2}, window.to}, budget,
            [&](const RuleInstance& instance) {
                if (instance.utc >= window.from)
                    walked.push_back(written(instance.local));
            });
        std::vector<std::string> reached;
        expandRule(parsed, start, window, budget,
            [&](const RuleInstance& instance) { reached.push_back(written(instance.local)); });

        ASSERT_THAT(reached, ElementsAreArray(walked)) << series.rule << " from " << written(series.start);
    }
}

}

}
