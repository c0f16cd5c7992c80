// The range that a calendar claims for itself.

#include "CalendarTesting.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace Tinkra::ICalendar {

namespace {

TimeRange reachOf(std::string_view lines)
{
    return Calendar::read(calendarWithEvent(lines)).reach();
}

}

TEST(CalendarReach, IsEmptyWithoutEvents)
{
    const auto reach = Calendar::read(calendarWith("")).reach();

    EXPECT_EQ(reach.from, reach.to);
}

TEST(CalendarReach, LiesCloseAroundASingleEvent)
{
    const auto reach = reachOf("");

    EXPECT_LE(reach.from, instant("2024-03-04T10:00:00Z"));
    EXPECT_GE(reach.from, instant("2024-02-28T00:00:00Z"));
    EXPECT_GE(reach.to, instant("2024-03-04T11:00:00Z"));
    EXPECT_LE(reach.to, instant("2024-03-10T00:00:00Z"));
}

TEST(CalendarReach, EndsWithASeriesThatEnds)
{
    EXPECT_LE(reachOf("RRULE:FREQ=DAILY;UNTIL=20240601T000000Z\n").to, instant("2024-07-01T00:00:00Z"));
    EXPECT_GE(reachOf("RRULE:FREQ=DAILY\n").to, instant("9000-01-01T00:00:00Z"));
}

TEST(CalendarReach, BeginsWithADateThatWasAddedBeforeTheStart)
{
    EXPECT_LE(reachOf("RDATE:20200101T000000Z\n").from, instant("2020-01-01T00:00:00Z"));
}

TEST(CalendarReach, HoldsEveryOccurrenceOfOddFilesInEveryZone)
{
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TINKRA_TEST_DATA "/Odd")) {
        std::ifstream file{entry.path(), std::ios::binary};
        const std::string text{std::istreambuf_iterator<char>{file}, {}};
        const auto calendar = Calendar::read(text);
        const auto reach = calendar.reach();
        for (const auto* zone : {"Pacific/Kiritimati", "Pacific/Pago_Pago", "UTC"}) {
            const TimeRange always{instant("1900-01-01T00:00:00Z"), instant("2100-01-01T00:00:00Z")};
            calendar.forEachOccurrence(always, findZone(zone), [&](const Occurrence& occurrence) {
                EXPECT_GE(occurrence.start, reach.from) << entry.path();
                EXPECT_LE(occurrence.end, reach.to) << entry.path();
                ++count;
            });
        }
    }
    EXPECT_GT(count, 100U);
}

}
