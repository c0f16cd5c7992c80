// In which zone a time is meant.

#include "CalendarTesting.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace Tinkra::ICalendar {

namespace {

/// Three hours and a half behind UTC, half an hour less in summer: no zone of the world.
std::string customZone(std::string_view tzid)
{
    return "BEGIN:VTIMEZONE\nTZID:" + std::string{tzid}
    + "\nBEGIN:STANDARD\nDTSTART:16011104T020000\nRRULE:FREQ=YEARLY;BYDAY=1SU;BYMONTH=11\n"
      "TZOFFSETFROM:-0300\nTZOFFSETTO:-0330\nEND:STANDARD\n"
      "BEGIN:DAYLIGHT\nDTSTART:16010311T020000\nRRULE:FREQ=YEARLY;BYDAY=2SU;BYMONTH=3\n"
      "TZOFFSETFROM:-0330\nTZOFFSETTO:-0300\nEND:DAYLIGHT\nEND:VTIMEZONE\n";
}

std::string eventIn(std::string_view parameters)
{
    return "BEGIN:VEVENT\nUID:a\nDTSTART" + std::string{parameters} + ":20240104T100000\nEND:VEVENT\n";
}

Lines startsIn(std::string_view body, std::string_view viewer = "Europe/Berlin")
{
    return starts(calendarWith(body), {.zone = viewer});
}

}

TEST(CalendarZones, KnowsIanaNamesAndWindowsNames)
{
    EXPECT_EQ(startsIn(eventIn(";TZID=America/New_York")), Lines{"2024-01-04T15:00:00Z"});
    EXPECT_EQ(startsIn(eventIn(";TZID=\"America/New_York\"")), Lines{"2024-01-04T15:00:00Z"});
    EXPECT_EQ(startsIn(eventIn(";TZID=/freeassociation.sourceforge.net/America/New_York")),
        Lines{"2024-01-04T15:00:00Z"});
    EXPECT_EQ(startsIn(eventIn(";TZID=Pacific Standard Time")), Lines{"2024-01-04T18:00:00Z"});
    EXPECT_EQ(startsIn(eventIn(";TZID=UTC")), Lines{"2024-01-04T10:00:00Z"});
}

TEST(CalendarZones, ReadsFloatingTimesInTheViewersZone)
{
    EXPECT_EQ(startsIn(eventIn(""), "Europe/Berlin"), Lines{"2024-01-04T09:00:00Z"});
    EXPECT_EQ(startsIn(eventIn(""), "Asia/Tokyo"), Lines{"2024-01-04T01:00:00Z"});
}

TEST(CalendarZones, TakesTheDefinitionOfAZoneThatNobodyElseKnows)
{
    EXPECT_EQ(startsIn(customZone("Customized Time Zone") + eventIn(";TZID=Customized Time Zone")),
        Lines{"2024-01-04T13:30:00Z"});
}

TEST(CalendarZones, TakesADefinitionThatFollowsTheEvents)
{
    EXPECT_EQ(startsIn(eventIn(";TZID=Own") + customZone("Own")), Lines{"2024-01-04T13:30:00Z"});
}

TEST(CalendarZones, PrefersTheKnownZoneToTheDefinition)
{
    EXPECT_EQ(startsIn(customZone("Europe/Berlin") + eventIn(";TZID=Europe/Berlin")),
        Lines{"2024-01-04T09:00:00Z"});
    EXPECT_EQ(startsIn(customZone("Pacific Standard Time") + eventIn(";TZID=Pacific Standard Time")),
        Lines{"2024-01-04T18:00:00Z"});
}

TEST(CalendarZones, FindsTheDefinitionOfANameWithCommasAndColonsHoweverEscaped)
{
    EXPECT_EQ(startsIn(customZone("Here\\, there") + eventIn(";TZID=\"Here, there\"")),
        Lines{"2024-01-04T13:30:00Z"});
    EXPECT_EQ(
        startsIn(customZone("Mars: Base 1") + eventIn(";TZID=Mars: Base 1")), Lines{"2024-01-04T13:30:00Z"});
    EXPECT_EQ(startsIn(customZone("Mars: Base 1") + eventIn(";TZID=\"Mars: Base 1\"")),
        Lines{"2024-01-04T13:30:00Z"});
}

TEST(CalendarZones, TakesTheDefinitionOfItsOwnCalendarFirst)
{
    const std::string berlin = "BEGIN:VTIMEZONE\nTZID:Own\nBEGIN:STANDARD\nDTSTART:19700101T000000\n"
                               "TZOFFSETFROM:+0100\nTZOFFSETTO:+0100\nEND:STANDARD\nEND:VTIMEZONE\n";
    auto other = eventIn(";TZID=Own");
    other.replace(other.find("UID:a"), 5, "UID:b");
    EXPECT_EQ(starts(calendarWith(customZone("Own") + eventIn(";TZID=Own")) + calendarWith(berlin + other)),
        (Lines{"2024-01-04T09:00:00Z", "2024-01-04T13:30:00Z"}));
    EXPECT_EQ(starts(calendarWith(customZone("Own")) + calendarWith(other)), Lines{"2024-01-04T13:30:00Z"});
}

TEST(CalendarZones, UsesTheLocationOfADefinitionWithoutObservances)
{
    EXPECT_EQ(startsIn("BEGIN:VTIMEZONE\nTZID:Own\nX-LIC-LOCATION:America/New_York\nEND:VTIMEZONE\n"
                  + eventIn(";TZID=Own")),
        Lines{"2024-01-04T15:00:00Z"});
}

TEST(CalendarZones, GuessesFromANameForPeopleOnlyWhatTheFileDoesNotDefine)
{
    EXPECT_EQ(
        startsIn(eventIn(";TZID=\"(UTC-05:00) Eastern Time (US & Canada)\"")), Lines{"2024-01-04T15:00:00Z"});
    EXPECT_EQ(startsIn(customZone("GMT-0500") + eventIn(";TZID=GMT-0500")), Lines{"2024-01-04T13:30:00Z"});
}

TEST(CalendarZones, ReadsAnUnknownZoneInTheViewersZoneWithANoticeAndNeverInUtc)
{
    const auto calendar =
        Calendar::read(calendarWith(eventIn(";TZID=Nowhere/Land") + eventIn(";TZID=Nowhere/Land")));
    EXPECT_EQ(
        occurrences(calendar, {.zone = "Asia/Tokyo"}), Lines{"2024-01-04T01:00:00Z/2024-01-04T01:00:00Z -"});
    EXPECT_EQ(calendar.notices(),
        Lines{"Line 6: the time zone \"Nowhere/Land\" is unknown; its times are read in the zone of this "
              "computer."});
}

TEST(CalendarZones, ReadsFloatingAndUnknownTimesInTheZoneThatTheCalendarNames)
{
    EXPECT_EQ(startsIn("X-WR-TIMEZONE:America/New_York\n" + eventIn("")), Lines{"2024-01-04T15:00:00Z"});
    EXPECT_EQ(startsIn(eventIn("") + "X-WR-TIMEZONE:America/New_York\n"), Lines{"2024-01-04T15:00:00Z"});
    EXPECT_EQ(
        startsIn("X-WR-TIMEZONE:Own\n" + eventIn("") + customZone("Own")), Lines{"2024-01-04T13:30:00Z"});
    EXPECT_EQ(startsIn("X-WR-TIMEZONE:America/New_York\n" + eventIn(";TZID=Nowhere")),
        Lines{"2024-01-04T15:00:00Z"});
    EXPECT_EQ(
        startsIn("X-WR-TIMEZONE:America/New_York\n" + eventIn(";VALUE=DATE")), Lines{"2024-01-03T23:00:00Z"});
    EXPECT_EQ(startsIn("X-WR-TIMEZONE:America/New_York\n" + eventIn(";TZID=Asia/Tokyo")),
        Lines{"2024-01-04T01:00:00Z"});
}

TEST(CalendarZones, AppliesTheZoneOfACalendarToThatCalendarAlone)
{
    auto other = eventIn("");
    other.replace(other.find("UID:a"), 5, "UID:b");
    EXPECT_EQ(starts(calendarWith("X-WR-TIMEZONE:America/New_York\n" + eventIn("")) + calendarWith(other)),
        (Lines{"2024-01-04T10:00:00Z", "2024-01-04T15:00:00Z"}));
}

TEST(CalendarZones, MovesASkippedTimeForwardAndTakesTheFirstOfARepeatedOne)
{
    const auto at = [](std::string_view time) {
        return starts(calendarWithEvent("DTSTART;TZID=Europe/Zurich:" + std::string{time}),
            {.from = "2023-01-01T00:00:00Z"});
    };
    EXPECT_EQ(at("20231029T023000"), Lines{"2023-10-29T00:30:00Z"});
    EXPECT_EQ(at("20230326T021500"), Lines{"2023-03-26T01:15:00Z"});
}

TEST(CalendarZones, SurvivesAThousandNamesAndBrokenDefinitions)
{
    std::string body = "BEGIN:VTIMEZONE\nTZID:Zone7\nBEGIN:STANDARD\nEND:STANDARD\nBEGIN:DAYLIGHT\n";
    for (int i = 0; i < 3'000; ++i)
        body += "BEGIN:VEVENT\nUID:" + std::to_string(i) + "\nDTSTART;TZID=Zone" + std::to_string(i)
            + ":20240104T100000\nEND:VEVENT\n";
    const auto calendar = Calendar::read(calendarWith(body));
    EXPECT_EQ(occurrences(calendar).size(), 3'000U);
    EXPECT_EQ(calendar.notices().size(), 101U);
}

}
