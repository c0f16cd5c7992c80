// What any text may cost.

#include "CalendarTesting.h"
#include "TinkraICalendar/WorkTimer.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <string_view>

namespace Tinkra::ICalendar {

namespace {

using namespace std::chrono;

std::string event(std::string_view uid, std::string_view lines)
{
    return "BEGIN:VEVENT\nUID:" + std::string{uid} + "\nSUMMARY:" + std::string{uid} + "\n"
        + std::string{lines} + "END:VEVENT\n";
}

std::string stamp(int day)
{
    const year_month_day date{sys_days{year{2000} / 1 / 1} + days{day}};
    auto number = std::to_string(static_cast<int>(date.year()) * 10'000
        + static_cast<int>(unsigned(date.month())) * 100 + static_cast<int>(unsigned(date.day())));
    return number + "T100000Z";
}

}

TEST(Limits, CutAnEventThatHappensTooOftenNameItAndGoOn)
{
    const auto calendar =
        Calendar::read(calendarWith(event("busy", "DTSTART:20240101T000000Z\nRRULE:FREQ=SECONDLY\n")
            + event("calm", "DTSTART:20240601T000000Z\n")));
    const auto found = occurrences(calendar);
    EXPECT_EQ(found.size(), 10'001U);
    EXPECT_EQ(found.back(), "2024-06-01T00:00:00Z/2024-06-01T00:00:00Z calm");
    EXPECT_EQ(noticesOfQuery(calendar), Lines{"The event \"busy\" was cut short: it happens too often."});
}

TEST(Limits, CountAllThatMakesAnEventHappen)
{
    std::string dates = "DTSTART:20000101T100000Z\nRRULE:FREQ=DAILY;COUNT=8000\n";
    for (int day = 8'000; day < 12'000; ++day)
        dates += "RDATE:" + stamp(day) + "\n";
    const auto calendar = Calendar::read(calendarWith(event("often", dates)));
    constexpr View ever{.from = "1990-01-01T00:00:00Z", .to = "2090-01-01T00:00:00Z"};
    EXPECT_EQ(occurrences(calendar, ever).size(), 10'000U);
    EXPECT_EQ(noticesOfQuery(calendar, ever).size(), 1U);
}

TEST(Limits, OnTimeLeaveOutTheSeriesThatRemainAndNameThem)
{
    const auto text = calendarWith(event("first", "DTSTART:20240101T000000Z\nRRULE:FREQ=DAILY;COUNT=2\n")
        + event("second", "DTSTART:20240101T000000Z\nRRULE:FREQ=DAILY\n")
        + event("third", "DTSTART:20240601T000000Z\n"));
    const auto calendar = Calendar::read(text, {.expansionTime = milliseconds{0}});
    EXPECT_EQ(occurrences(calendar), Lines{"2024-06-01T00:00:00Z/2024-06-01T00:00:00Z third"});
    EXPECT_EQ(noticesOfQuery(calendar),
        (Lines{"The event \"first\" was left out: the calendar takes too long to work out.",
            "The event \"second\" was left out: the calendar takes too long to work out."}));
}

TEST(Limits, OnProcessorTimeAreAFifthOfASecondForAnEventAndTwoSecondsForATextUnlessOtherwiseSaid)
{
    const TimeRange far{instant("9998-01-01T00:00:00Z"), instant("9999-01-01T00:00:00Z")};
    // COUNT makes each of its steps count, and thousands of millions lie before the range.
    const auto textOf = [](std::size_t endless) {
        std::string body = event("calm", "DTSTART:99980601T000000Z\n");
        for (std::size_t i = 0; i < endless; ++i)
            body += event(std::to_string(i),
                "DTSTART:00010101T000000Z\nRRULE:FREQ=MINUTELY;BYSECOND=0,1,2;COUNT=4000000000\n");
        return calendarWith(body);
    };
    const auto secondsFor = [&](std::size_t endless) {
        const auto calendar = Calendar::read(textOf(endless));
        Lines found;
        WorkTimer timer;
        timer.elapsed();
        const auto notices = calendar.forEachOccurrence(far, utcZone(),
            [&](const Occurrence& occurrence) { found.emplace_back(occurrence.title.value_or("")); });
        EXPECT_EQ(found, Lines{"calm"});
        EXPECT_EQ(notices.size(), endless);
        return duration<double>(timer.elapsed()).count();
    };

    const double forOne = secondsFor(1);
    EXPECT_GE(forOne, 0.2);
    EXPECT_LT(forOne, 0.4);
    const double forMany = secondsFor(15);
    EXPECT_GE(forMany, 2.0);
    EXPECT_LT(forMany, 3.0);
}

TEST(Limits, OnOccurrencesOfAllSeriesLeaveOutTheSeriesThatRemainButNoSingleEvent)
{
    const auto calendar =
        Calendar::read(calendarWith(event("first", "DTSTART:20240101T000000Z\nRRULE:FREQ=DAILY;COUNT=20\n")
            + event("second", "DTSTART:20240101T000000Z\nRRULE:FREQ=DAILY;COUNT=20\n")
            + event("third", "DTSTART:20240601T000000Z\n")));
    const TimeRange ever{instant("2024-01-01T00:00:00Z"), instant("2025-01-01T00:00:00Z")};
    std::size_t given = 0;
    const auto notices = calendar.forEachOccurrence(
        ever, utcZone(), [&given](const Occurrence&) { ++given; }, {.occurrences = 10});
    EXPECT_EQ(given, 21U);
    EXPECT_EQ(notices, Lines{"The event \"second\" was left out: too much happens in the calendar."});
}

TEST(Limits, OnBytesKeepWhatComesBeforeThem)
{
    const auto first = calendarWith(event("a", "DTSTART:20240101T000000Z\n"));
    const auto text = first + calendarWith(event("b", "DTSTART:20240102T000000Z\n"));
    const auto calendar = Calendar::read(text, {.bytes = first.size()});
    EXPECT_EQ(calendar.eventCount(), 1U);
    EXPECT_EQ(calendar.notices(),
        Lines{"The text has " + std::to_string(text.size()) + " bytes; only the first "
            + std::to_string(first.size()) + " were read."});
}

TEST(Limits, OnLinesPassOverTheLineAlone)
{
    const auto calendar = Calendar::read(calendarWith(
        "X-LONG:" + std::string(2'000'000, 'x') + "\n" + event("a", "DTSTART:20240101T000000Z\n")));
    EXPECT_EQ(occurrences(calendar).size(), 1U);
    EXPECT_EQ(calendar.notices(), Lines{"Line 4: the line is too long and was passed over."});
}

TEST(Limits, DoNotConcernATitleThatIsFolded)
{
    std::string title;
    for (int i = 0; i < 20'000; ++i)
        title += "\n " + std::string(70, 'x');
    EXPECT_EQ(titles(calendarWithEvent("SUMMARY:" + title)).front().size(), 1'400'000U);
}

TEST(Limits, AreFarFromFiftyThousandExcludedDatesOrExceptions)
{
    std::string excluded;
    std::string exceptions;
    for (int day = 0; day < 50'000; ++day) {
        excluded += (day == 0 ? "EXDATE:" : ",") + stamp(day);
        exceptions +=
            "BEGIN:VEVENT\nUID:b\nRECURRENCE-ID:" + stamp(day) + "\nDTSTART:" + stamp(day) + "\nEND:VEVENT\n";
    }
    const auto calendar = Calendar::read(
        calendarWith(event("a", "DTSTART:20000101T100000Z\nRRULE:FREQ=DAILY;COUNT=50001\n" + excluded + "\n")
            + event("b", "DTSTART:20000101T100000Z\nRRULE:FREQ=DAILY\n") + exceptions));
    EXPECT_TRUE(calendar.notices().empty());
    EXPECT_EQ(occurrences(calendar, {.from = "2136-11-01T00:00:00Z", .to = "2136-12-01T00:00:00Z"}).size(),
        60U - 29U);
    EXPECT_EQ(
        occurrences(calendar, {.from = "2024-11-01T00:00:00Z", .to = "2024-12-01T00:00:00Z"}).size(), 30U);
}

TEST(Limits, AreFarFromManyEventsOfOneUid)
{
    std::string body;
    for (int day = 0; day < 30'000; ++day)
        body += event("a", "DTSTART:" + stamp(day) + "\nSEQUENCE:" + std::to_string(day % 7) + "\n");
    EXPECT_GT(Calendar::read(calendarWith(body)).eventCount(), 4'000U);
}

TEST(Limits, BoundTheDatesOfOneText)
{
    std::string dates = "RDATE:20240101";
    for (int i = 0; i < 600'000; ++i)
        dates += ",20240101";
    const auto calendar = Calendar::read(
        calendarWith(event("a", "DTSTART;VALUE=DATE:20240101\n" + dates + "\n")), {.line = 1U << 30U});
    EXPECT_EQ(occurrences(calendar).size(), 1U);
    EXPECT_EQ(calendar.notices(), Lines{"There are too many dates in this text; some are left out."});
}

TEST(Memory, OfACalendarOfOneEventIsSmall)
{
    const std::string uid = "0123456789abcdef00000001@bench.example";
    const std::string title = "Weekly sync";
    const auto calendar = Calendar::read(calendarWith("BEGIN:VEVENT\nUID:" + uid + "\nSUMMARY:" + title
        + "\nDTSTART;TZID=Europe/Berlin:20240304T100000\nDTEND;TZID=Europe/"
          "Berlin:20240304T110000\nEND:VEVENT\n"));
    EXPECT_LT(calendar.memoryUse() + sizeof(Calendar), 200U + title.size());
}

TEST(Memory, CanBeMovedWithACalendar)
{
    auto first = Calendar::read(calendarWithEvent(""));
    auto second = Calendar::read("");
    second = std::move(first);
    EXPECT_EQ(occurrences(second).size(), 1U);
}

}
