// When a single event begins and ends.

#include "CalendarTesting.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace Tinkra::ICalendar {

namespace {

struct Case {
    std::string_view lines;
    std::string_view expected; ///< start and end
};

void PrintTo(const Case& one, std::ostream* out)
{
    *out << one.lines;
}

class EventTime : public testing::TestWithParam<Case> { };

}

TEST_P(EventTime, IsAsWritten)
{
    const auto found = occurrences(calendarWithEvent(GetParam().lines), {.zone = "Europe/Berlin"});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.front().substr(0, 41), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(EndsAndDurations, EventTime,
    testing::Values(
        Case{"DTSTART:20240304T100000Z\nDTEND:20240304T113000Z", "2024-03-04T10:00:00Z/2024-03-04T11:30:00Z"},
        Case{"DTEND:20240304T113000Z\nDTSTART:20240304T100000Z", "2024-03-04T10:00:00Z/2024-03-04T11:30:00Z"},
        Case{"DTSTART:20240304T100000", "2024-03-04T09:00:00Z/2024-03-04T09:00:00Z"},
        Case{"DTSTART;TZID=America/New_York:20240304T100000\nDURATION:PT90M",
            "2024-03-04T15:00:00Z/2024-03-04T16:30:00Z"},
        // Days are days on the wall clock, hours are hours: the clocks change on 31 March.
        Case{"DTSTART;TZID=Europe/Berlin:20240330T100000\nDURATION:P1D",
            "2024-03-30T09:00:00Z/2024-03-31T08:00:00Z"},
        Case{"DTSTART;TZID=Europe/Berlin:20240330T100000\nDURATION:PT24H",
            "2024-03-30T09:00:00Z/2024-03-31T09:00:00Z"},
        Case{"DTSTART;TZID=Europe/Berlin:20240330T100000\nDURATION:P1DT1H",
            "2024-03-30T09:00:00Z/2024-03-31T09:00:00Z"},
        Case{"DTSTART;TZID=Europe/Berlin:20240330T100000\nDURATION:P1W",
            "2024-03-30T09:00:00Z/2024-04-06T08:00:00Z"},
        Case{"DTSTART;TZID=Europe/Berlin:20240330T220000\nDTEND;TZID=Europe/Berlin:20240331T060000",
            "2024-03-30T21:00:00Z/2024-03-31T04:00:00Z"},
        // A flight.
        Case{"DTSTART;TZID=Europe/Berlin:20240304T100000\nDTEND;TZID=America/New_York:20240304T130000",
            "2024-03-04T09:00:00Z/2024-03-04T18:00:00Z"},
        Case{"DTSTART;TZID=Europe/Berlin:20240304T100000\nDTEND:20240304T100000Z",
            "2024-03-04T09:00:00Z/2024-03-04T10:00:00Z"},
        Case{"DTSTART;TZID=America/New_York:20240304T100000\nDTEND:20240304T110000",
            "2024-03-04T15:00:00Z/2024-03-04T16:00:00Z"},
        Case{"DTSTART:20240304T100000Z\nDTEND:20240304T113000Z\nDURATION:PT5H",
            "2024-03-04T10:00:00Z/2024-03-04T11:30:00Z"}));

INSTANTIATE_TEST_SUITE_P(NeverEndsBeforeItStarts, EventTime,
    testing::Values(
        Case{"DTSTART:20240304T100000Z\nDTEND:20240304T090000Z", "2024-03-04T10:00:00Z/2024-03-04T10:00:00Z"},
        Case{"DTSTART:20240304T100000Z\nDURATION:-PT1H", "2024-03-04T10:00:00Z/2024-03-04T10:00:00Z"},
        Case{"DTSTART:20240304T100000Z\nDURATION:-P1D", "2024-03-04T10:00:00Z/2024-03-04T10:00:00Z"},
        Case{"DTSTART:20240304T100000Z\nDURATION:nonsense", "2024-03-04T10:00:00Z/2024-03-04T10:00:00Z"},
        Case{"DTSTART:20240304T100000Z\nDTEND:20240230", "2024-03-04T10:00:00Z/2024-03-04T10:00:00Z"},
        Case{"DTSTART;VALUE=DATE:20240304\nDTEND;VALUE=DATE:20240301",
            "2024-03-03T23:00:00Z/2024-03-03T23:00:00Z"},
        Case{"DTSTART;TZID=Europe/Berlin:20240331T023000\nDTEND;TZID=Europe/Berlin:20240331T030000",
            "2024-03-31T01:30:00Z/2024-03-31T01:30:00Z"}));

INSTANTIATE_TEST_SUITE_P(LastsWholeDaysOfTheViewer, EventTime,
    testing::Values( //
        Case{"DTSTART;VALUE=DATE:20240304", "2024-03-03T23:00:00Z/2024-03-04T23:00:00Z"},
        Case{"DTSTART:20240304", "2024-03-03T23:00:00Z/2024-03-04T23:00:00Z"},
        Case{"DTSTART;TZID=Asia/Tokyo;VALUE=DATE:20240304", "2024-03-03T23:00:00Z/2024-03-04T23:00:00Z"},
        Case{"DTSTART;VALUE=DATE:20240304T101500", "2024-03-03T23:00:00Z/2024-03-04T23:00:00Z"},
        Case{"DTSTART;VALUE=DATE:20240330\nDTEND;VALUE=DATE:20240402",
            "2024-03-29T23:00:00Z/2024-04-01T22:00:00Z"},
        Case{"DTSTART;VALUE=DATE:20240304\nDURATION:P2D", "2024-03-03T23:00:00Z/2024-03-05T23:00:00Z"},
        Case{"DTSTART;VALUE=DATE:20240304\nDURATION:PT12H", "2024-03-03T23:00:00Z/2024-03-04T23:00:00Z"},
        Case{"DTSTART;VALUE=DATE:20240304\nDTEND:20240306T000000",
            "2024-03-03T23:00:00Z/2024-03-05T23:00:00Z"},
        Case{"DTSTART;VALUE=DATE:20240304\nDTEND:20240305T170000",
            "2024-03-03T23:00:00Z/2024-03-05T23:00:00Z"},
        Case{"DTSTART;VALUE=DATE:20240304\nDTEND:20240304T230000Z",
            "2024-03-03T23:00:00Z/2024-03-04T23:00:00Z"}));

INSTANTIATE_TEST_SUITE_P(ToleratesWhatIsWrittenInAnotherWay, EventTime,
    testing::Values( //
        Case{"DTSTART:20240304T100060Z", "2024-03-04T10:00:59Z/2024-03-04T10:00:59Z"},
        Case{"DTSTART:nonsense\nDTSTART:20240304T100000Z", "2024-03-04T10:00:00Z/2024-03-04T10:00:00Z"},
        Case{"DTSTART:20240304T100000Z\nDTSTART:20240305T100000Z",
            "2024-03-04T10:00:00Z/2024-03-04T10:00:00Z"},
        Case{"DTSTART;VALUE=DATE-TIME:20240304T100000Z", "2024-03-04T10:00:00Z/2024-03-04T10:00:00Z"},
        Case{"DTSTART;TZID=Europe/Berlin:20240304T100000Z", "2024-03-04T10:00:00Z/2024-03-04T10:00:00Z"},
        Case{"DTSTART;TZID=\"America/New_York:20240304T100000", "2024-03-04T15:00:00Z/2024-03-04T15:00:00Z"},
        Case{"DTSTART:20240304T100000Z\nDTEND;VALUE=DATE:20240305",
            "2024-03-04T10:00:00Z/2024-03-05T00:00:00Z"},
        Case{"DTSTART;TZID=America/New_York:20240304T100000\nDTEND;VALUE=DATE:20240305",
            "2024-03-04T15:00:00Z/2024-03-05T05:00:00Z"}));

TEST(Event, IsLeftOutWithANoticeWhenItsStartCannotBeRead)
{
    for (const auto* start : {"", "DTSTART:\n", "DTSTART:19970230\n", "DTSTART:19970714T250000Z\n",
             "DTSTART:19970714T240000Z\n", "DTSTART;TZID=Europe/Berlin\n", "X:1\n"}) {
        const auto calendar = Calendar::read(
            calendarWith("BEGIN:VEVENT\nUID:a\n" + std::string{start} + "SUMMARY:A\nEND:VEVENT\n"));
        EXPECT_EQ(calendar.eventCount(), 0U) << start;
        EXPECT_FALSE(calendar.notices().empty()) << start;
        EXPECT_TRUE(calendar.isWhole()) << start;
    }
}

TEST(Event, CountsWhenItOverlapsTheRange)
{
    const auto text = calendarWithEvent("DTSTART:20240304T100000Z\nDTEND:20240304T110000Z");
    const auto count = [&](std::string_view from, std::string_view to) {
        return occurrences(text, {.from = from, .to = to}).size();
    };
    EXPECT_EQ(count("2024-03-04T10:59:59Z", "2024-03-05T00:00:00Z"), 1U);
    EXPECT_EQ(count("2024-03-04T11:00:00Z", "2024-03-05T00:00:00Z"), 0U);
    EXPECT_EQ(count("2024-03-04T00:00:00Z", "2024-03-04T10:00:01Z"), 1U);
    EXPECT_EQ(count("2024-03-04T00:00:00Z", "2024-03-04T10:00:00Z"), 0U);
    EXPECT_EQ(count("2024-03-04T10:10:00Z", "2024-03-04T10:20:00Z"), 1U);
}

TEST(Event, WithoutLengthCountsWhenItStartsInTheRange)
{
    const auto text = calendarWithEvent("DTSTART:20240304T100000Z");
    const auto count = [&](std::string_view from, std::string_view to) {
        return occurrences(text, {.from = from, .to = to}).size();
    };
    EXPECT_EQ(count("2024-03-04T10:00:00Z", "2024-03-04T10:00:01Z"), 1U);
    EXPECT_EQ(count("2024-03-04T10:00:01Z", "2024-03-04T10:00:02Z"), 0U);
    EXPECT_EQ(count("2024-03-04T09:00:00Z", "2024-03-04T10:00:00Z"), 0U);
}

TEST(Event, IsFoundLongAfterItBegan)
{
    EXPECT_EQ(starts(calendarWithEvent("DTSTART:19700101T000000Z\nDTEND:99991231T235959Z")),
        Lines{"1970-01-01T00:00:00Z"});
    EXPECT_EQ(
        starts(calendarWithEvent("DTSTART;VALUE=DATE:20200101\nDURATION:P9999D\nRRULE:FREQ=YEARLY;COUNT=2"),
            {.from = "2040-01-01T00:00:00Z", .to = "2040-02-01T00:00:00Z"}),
        (Lines{"2020-01-01T00:00:00Z", "2021-01-01T00:00:00Z"}));
}

TEST(Event, IsSafeAtTheEndsOfTimeAndInAnyRange)
{
    for (const auto* start :
        {"00000101T000000Z", "00000101", "99991231T235959Z", "99991231", "00010101T000000"}) {
        for (const auto* more :
            {"", "DURATION:P9999999999W\n", "RRULE:FREQ=DAILY\n", "RDATE:99991231T235959Z\n"}) {
            const auto calendar =
                Calendar::read(calendarWithEvent("DTSTART:" + std::string{start} + "\n" + std::string{more}));
            std::size_t count = 0;
            calendar.forEachOccurrence({UtcSeconds::min(), UtcSeconds::max()}, findZone("Asia/Tokyo"),
                [&](const Occurrence& occurrence) {
                    ++count;
                    EXPECT_LE(occurrence.start, occurrence.end);
                });
            EXPECT_GE(count, 1U) << start << more;
        }
    }
    const auto calendar = Calendar::read(calendarWithEvent("RRULE:FREQ=DAILY\n"));
    EXPECT_TRUE(
        occurrences(calendar, {.from = "2024-05-01T00:00:00Z", .to = "2024-04-01T00:00:00Z"}).empty());
}

TEST(Event, EndsOnTheClockOfItsStartWhenTheEndHasNoZoneWhateverTheCalendarSays)
{
    EXPECT_EQ(occurrences(calendarWith("X-WR-TIMEZONE:Asia/Tokyo\nBEGIN:VEVENT\nUID:a\nSUMMARY:One\n"
                                       "DTSTART;TZID=Europe/Zurich:20240304T100000\n"
                                       "DTEND:20240304T110000\nEND:VEVENT\n")),
        Lines{"2024-03-04T09:00:00Z/2024-03-04T10:00:00Z One"});
}

TEST(Event, IsKeptWhateverItsStatus)
{
    for (const auto* status : {"CANCELLED", "TENTATIVE", "CONFIRMED"})
        EXPECT_EQ(titles(calendarWithEvent("STATUS:" + std::string{status} + "\n")), Lines{"One"});
}

TEST(Event, IsKeptThoughItsOwnerDeclinedIt)
{
    for (const auto* answer : {"DECLINED", "TENTATIVE", "NEEDS-ACTION"})
        EXPECT_EQ(titles(calendarWithEvent(
                      "ATTENDEE;PARTSTAT=" + std::string{answer} + ":mailto:me@example.com\n")),
            Lines{"One"});
}

}
