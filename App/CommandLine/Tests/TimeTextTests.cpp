#include "TimeText.h"

#include <gtest/gtest.h>

namespace Tinkra::CommandLine {
namespace {

using namespace std::chrono;

constexpr double november20 = 1'795'132'800; // 2026-11-20 00:00:00 UTC

std::optional<double> parsed(std::string_view text, const char* zone = "UTC")
{
    const auto instant = parseInstant(text, *ICalendar::findZone(zone));
    return instant ? std::optional(secondsSince1970(*instant)) : std::nullopt;
}

TEST(ParseInstant, ADateIsItsMidnightInTheViewersZone)
{
    EXPECT_EQ(parsed("2026-11-20"), november20);
    EXPECT_EQ(parsed("20261120"), november20);
    EXPECT_EQ(parsed("2026-11-20", "Europe/Zurich"), november20 - 3600);
}

TEST(ParseInstant, TakesDateAndTimeInBothFormsOfTheStandard)
{
    const auto nine = november20 + 9 * 3600;
    EXPECT_EQ(parsed("2026-11-20T09:00"), nine);
    EXPECT_EQ(parsed("2026-11-20 09:00:00"), nine);
    EXPECT_EQ(parsed("20261120T090000Z"), nine);
    EXPECT_EQ(parsed("20261120T0900"), nine);
    EXPECT_EQ(parsed("2026-11-20t09:00:30.25z"), nine + 30.25);
    EXPECT_EQ(parsed("2026-11-19T24:00"), november20);
}

TEST(ParseInstant, AnOffsetOrZWinsOverTheViewersZone)
{
    const auto nine = november20 + 9 * 3600;
    EXPECT_EQ(parsed("2026-11-20T09:00Z", "America/New_York"), nine);
    EXPECT_EQ(parsed("2026-11-20T10:00+01:00", "America/New_York"), nine);
    EXPECT_EQ(parsed("2026-11-20T03:30-0530", "America/New_York"), nine);
    EXPECT_EQ(parsed("2026-11-20T10:00+01", "America/New_York"), nine);
    EXPECT_EQ(parsed("2026-11-20T09:00", "America/New_York"), nine + 5 * 3600);
}

TEST(ParseInstant, ALocalTimeThatOccursTwiceIsTheFirstAndASkippedOneMovesForward)
{
    EXPECT_EQ(parsed("2023-10-29T02:30", "Europe/Zurich"), 1'698'539'400);
    EXPECT_EQ(parsed("2023-03-26T02:30", "Europe/Zurich"), 1'679'794'200);
}

TEST(ParseInstant, TakesSecondsSince1970)
{
    EXPECT_EQ(parsed("@1795132800"), november20);
    EXPECT_EQ(parsed("@-5.5"), -5.5);
}

TEST(ParseInstant, RefusesEverythingElse)
{
    for (const auto* text : {"", "now", "2026", "2026-11", "2026-13-01", "2026-02-29", "2026-11-20T",
             "2026-11-20T9:00", "2026-11-20T25:00", "2026-11-20T24:01", "2026-11-20T09:60",
             "2026-11-20T09:00:61", "2026-11-20T09:00+", "2026-11-20T09:00+25:00", "2026-11-20T09:00Zx",
             "2026-11-20x", "2026-11-20Z", "@", "@x", "@1e400", "@nan", "@inf", "@99999999999999999999",
             " 2026-11-20", "2026-1120", "2026-11-20T09:"})
        EXPECT_EQ(parsed(text), std::nullopt) << text;
}

TEST(UtcText, WritesWholeSecondsWithoutAFraction)
{
    EXPECT_EQ(utcText(sys_seconds(sys_days(year(2026) / 11 / 20)) + hours(9)), "2026-11-20T09:00:00Z");
    EXPECT_EQ(utcText(instantAt(november20)), "2026-11-20T00:00:00Z");
}

TEST(UtcText, WritesFractionsInMilliseconds)
{
    EXPECT_EQ(utcText(instantAt(november20 + 0.5)), "2026-11-20T00:00:00.500Z");
    EXPECT_EQ(utcText(instantAt(-0.25)), "1969-12-31T23:59:59.750Z");
}

TEST(UtcText, StaysWithinTheYearsOfACalendar)
{
    EXPECT_EQ(utcText(instantAt(1e300)), "9999-12-31T23:59:59Z");
    EXPECT_EQ(utcText(instantAt(-1e300)), "0000-01-01T00:00:00Z");
}

TEST(LocalText, NamesTheWeekdayAndLeavesZeroSecondsOut)
{
    EXPECT_EQ(localText({2026, 11, 20, 9, 5, 0}), "Fri 2026-11-20 09:05");
    EXPECT_EQ(localText({2026, 11, 22, 9, 5, 7}), "Sun 2026-11-22 09:05:07");
    EXPECT_EQ(isoText({2026, 11, 20, 9, 5, 7}), "2026-11-20T09:05:07");
}

}
}
