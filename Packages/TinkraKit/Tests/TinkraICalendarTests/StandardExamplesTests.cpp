// The events and zones that RFC 5545 gives as examples.

#include "CalendarTesting.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace Tinkra::ICalendar {

namespace {

struct Example {
    std::string_view section;
    std::string_view body;
    View view;
    Lines expected;
};

void PrintTo(const Example& example, std::ostream* out)
{
    *out << example.section;
}

class StandardExample : public testing::TestWithParam<Example> { };

constexpr View in1997{
    .from = "1997-01-01T00:00:00Z", .to = "1998-01-01T00:00:00Z", .zone = "America/New_York"};
constexpr View in1998{
    .from = "1998-01-01T00:00:00Z", .to = "1999-01-01T00:00:00Z", .zone = "America/New_York"};
constexpr View in2007{.from = "2007-01-01T00:00:00Z", .to = "2008-01-01T00:00:00Z", .zone = "Europe/Paris"};

}

TEST_P(StandardExample, GivesItsOccurrences)
{
    const auto& example = GetParam();
    const auto calendar = Calendar::read(calendarWith(example.body));
    EXPECT_EQ(occurrences(calendar, example.view), example.expected);
    EXPECT_EQ(calendar.notices(), Lines{});
}

INSTANTIATE_TEST_SUITE_P(Events, StandardExample,
    testing::Values(Example{"3.6.1, a meeting",
                        "BEGIN:VEVENT\nUID:19970901T130000Z-123401@example.com\nDTSTAMP:19970901T130000Z\n"
                        "DTSTART:19970903T163000Z\nDTEND:19970903T190000Z\nSUMMARY:Annual Employee "
                        "Review\nCLASS:PRIVATE\n"
                        "CATEGORIES:BUSINESS,HUMAN RESOURCES\nEND:VEVENT\n",
                        in1997, {"1997-09-03T16:30:00Z/1997-09-03T19:00:00Z Annual Employee Review"}},
        Example{"3.6.1, a reminder without an end",
            "BEGIN:VEVENT\nUID:19970901T130000Z-123402@example.com\nDTSTAMP:19970901T130000Z\n"
            "DTSTART:19970401T163000Z\nSUMMARY:Laurel is in sensitivity awareness "
            "class.\nTRANSP:TRANSPARENT\n"
            "END:VEVENT\n",
            in1997, {"1997-04-01T16:30:00Z/1997-04-01T16:30:00Z Laurel is in sensitivity awareness class."}},
        Example{"3.6.1, an anniversary",
            "BEGIN:VEVENT\nUID:19970901T130000Z-123403@example.com\nDTSTAMP:19970901T130000Z\n"
            "DTSTART;VALUE=DATE:19971102\nSUMMARY:Our Blissful "
            "Anniversary\nTRANSP:TRANSPARENT\nCLASS:CONFIDENTIAL\n"
            "CATEGORIES:ANNIVERSARY,PERSONAL,SPECIAL OCCASION\nRRULE:FREQ=YEARLY\nEND:VEVENT\n",
            in1998, {"1998-11-02T05:00:00Z/1998-11-03T05:00:00Z Our Blissful Anniversary (all day)"}},
        Example{"3.6.1, several days",
            "BEGIN:VEVENT\nUID:20070423T123432Z-541111@example.com\nDTSTAMP:20070423T123432Z\n"
            "DTSTART;VALUE=DATE:20070628\nDTEND;VALUE=DATE:20070709\nSUMMARY:Festival International de Jazz "
            "de Montreal\n"
            "TRANSP:TRANSPARENT\nEND:VEVENT\n",
            in2007,
            {"2007-06-27T22:00:00Z/2007-07-08T22:00:00Z Festival International de Jazz de Montreal (all "
             "day)"}},
        Example{"3.3.5, forms of one local time",
            "BEGIN:VEVENT\nUID:1\nDTSTART:19980118T230000\nSUMMARY:floating\nEND:VEVENT\n"
            "BEGIN:VEVENT\nUID:2\nDTSTART:19980119T070000Z\nSUMMARY:utc\nEND:VEVENT\n"
            "BEGIN:VEVENT\nUID:3\nDTSTART;TZID=America/New_York:19980119T020000\nSUMMARY:zone\nEND:VEVENT\n",
            in1998,
            {"1998-01-19T04:00:00Z/1998-01-19T04:00:00Z floating",
                "1998-01-19T07:00:00Z/1998-01-19T07:00:00Z utc",
                "1998-01-19T07:00:00Z/1998-01-19T07:00:00Z zone"}},
        Example{"3.3.5, a repeated and a skipped time",
            "BEGIN:VEVENT\nUID:1\nDTSTART;TZID=America/New_York:20071104T013000\nSUMMARY:twice\nEND:VEVENT\n"
            "BEGIN:VEVENT\nUID:2\nDTSTART;TZID=America/New_York:20070311T023000\nSUMMARY:never\nEND:VEVENT\n",
            in2007,
            {"2007-03-11T07:30:00Z/2007-03-11T07:30:00Z never",
                "2007-11-04T05:30:00Z/2007-11-04T05:30:00Z twice"}},
        Example{"3.8.2.5, durations",
            "BEGIN:VEVENT\nUID:1\nDTSTART:19970401T163000Z\nDURATION:PT1H0M0S\nSUMMARY:hour\nEND:VEVENT\n"
            "BEGIN:VEVENT\nUID:2\nDTSTART:19970402T163000Z\nDURATION:PT15M\nSUMMARY:quarter\nEND:VEVENT\n",
            in1997,
            {"1997-04-01T16:30:00Z/1997-04-01T17:30:00Z hour",
                "1997-04-02T16:30:00Z/1997-04-02T16:45:00Z quarter"}},
        Example{"3.8.5.1, excluded times",
            "BEGIN:VEVENT\nUID:1\nDTSTART:19960401T010000Z\nRRULE:FREQ=DAILY;COUNT=5\n"
            "EXDATE:19960402T010000Z,19960403T010000Z,19960404T010000Z\nSUMMARY:rest\nEND:VEVENT\n",
            {.from = "1996-01-01T00:00:00Z", .to = "1997-01-01T00:00:00Z"},
            {"1996-04-01T01:00:00Z/1996-04-01T01:00:00Z rest",
                "1996-04-05T01:00:00Z/1996-04-05T01:00:00Z rest"}},
        Example{"3.8.5.2, added times, periods and dates",
            "BEGIN:VEVENT\nUID:1\nDTSTART:19970714T123000Z\nRDATE;TZID=America/New_York:19970714T083000\n"
            "RDATE;VALUE=PERIOD:19960403T020000Z/19960403T040000Z,19960404T010000Z/"
            "PT3H\nSUMMARY:times\nEND:VEVENT\n"
            "BEGIN:VEVENT\nUID:2\nDTSTART;VALUE=DATE:19970101\nRDATE;VALUE=DATE:19970101,19970120,19971225\n"
            "SUMMARY:dates\nEND:VEVENT\n",
            {.from = "1996-01-01T00:00:00Z", .to = "1998-01-01T00:00:00Z"},
            {"1996-04-03T02:00:00Z/1996-04-03T04:00:00Z times",
                "1996-04-04T01:00:00Z/1996-04-04T04:00:00Z times",
                "1997-01-01T00:00:00Z/1997-01-02T00:00:00Z dates (all day)",
                "1997-01-20T00:00:00Z/1997-01-21T00:00:00Z dates (all day)",
                "1997-07-14T12:30:00Z/1997-07-14T12:30:00Z times",
                "1997-12-25T00:00:00Z/1997-12-26T00:00:00Z dates (all day)"}},
        Example{"3.8.4.4, the third of January and all later ones",
            "BEGIN:VEVENT\nUID:1\nDTSTART:19980101T100000Z\nRRULE:FREQ=DAILY;COUNT=4\nSUMMARY:before\nEND:"
            "VEVENT\n"
            "BEGIN:VEVENT\nUID:1\nRECURRENCE-ID;RANGE=THISANDFUTURE:19980103T100000Z\nDTSTART:"
            "19980103T130000Z\n"
            "SUMMARY:after\nEND:VEVENT\n",
            in1998,
            {"1998-01-01T10:00:00Z/1998-01-01T10:00:00Z before",
                "1998-01-02T10:00:00Z/1998-01-02T10:00:00Z before",
                "1998-01-03T13:00:00Z/1998-01-03T13:00:00Z after",
                "1998-01-04T13:00:00Z/1998-01-04T13:00:00Z after"}},
        Example{"4, a meeting with a zone of its own",
            "BEGIN:VTIMEZONE\nTZID:Own/"
            "New_York\nBEGIN:STANDARD\nDTSTART:19981025T020000\nTZOFFSETFROM:-0400\n"
            "TZOFFSETTO:-0500\nTZNAME:EST\nEND:STANDARD\nBEGIN:DAYLIGHT\nDTSTART:"
            "19990404T020000\nTZOFFSETFROM:-0500\n"
            "TZOFFSETTO:-0400\nTZNAME:EDT\nEND:DAYLIGHT\nEND:VTIMEZONE\n"
            "BEGIN:VEVENT\nDTSTAMP:19980309T231000Z\nUID:guid-1.example.com\nORGANIZER:mailto:mrbig@example."
            "com\n"
            "ATTENDEE;RSVP=TRUE;ROLE=REQ-PARTICIPANT;CUTYPE=GROUP:mailto:employee-A@example.com\n"
            "DESCRIPTION:Project XYZ Review "
            "Meeting\nCATEGORIES:MEETING\nCLASS:PUBLIC\nCREATED:19980309T130000Z\n"
            "SUMMARY:XYZ Project Review\nDTSTART;TZID=Own/New_York:19980312T083000\n"
            "DTEND;TZID=Own/New_York:19980312T093000\nLOCATION:1CP Conference Room 4350\nEND:VEVENT\n",
            in1998, {"1998-03-12T12:30:00Z/1998-03-12T13:30:00Z XYZ Project Review"}}));

namespace {

/// One event at noon on each of these days, in a zone that is defined like that.
std::string atNoon(std::string_view definition)
{
    std::string body = "BEGIN:VTIMEZONE\nTZID:Own/Zone\n" + std::string{definition} + "END:VTIMEZONE\n";
    int uid = 0;
    for (const auto* day :
        {"19670101", "19680501", "19870405", "19990704", "20060401", "20070320", "20201101"}) {
        body += "BEGIN:VEVENT\nUID:" + std::to_string(uid++) + "\nDTSTART;TZID=Own/Zone:" + day
            + "T120000\nEND:VEVENT\n";
    }
    return calendarWith(body);
}

constexpr View allTime{.from = "1960-01-01T00:00:00Z", .to = "2030-01-01T00:00:00Z"};

}

TEST(StandardZones, NewYorkWithItsWholeHistory)
{
    EXPECT_EQ(
        starts(
            atNoon("LAST-MODIFIED:20050809T050000Z\n"
                   "BEGIN:DAYLIGHT\nDTSTART:19670430T020000\nRRULE:FREQ=YEARLY;BYMONTH=4;BYDAY=-1SU;"
                   "UNTIL=19730429T070000Z\nTZOFFSETFROM:-0500\nTZOFFSETTO:-0400\nTZNAME:EDT\nEND:DAYLIGHT\n"
                   "BEGIN:STANDARD\nDTSTART:19671029T020000\nRRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU;"
                   "UNTIL=20061029T060000Z\nTZOFFSETFROM:-0400\nTZOFFSETTO:-0500\nTZNAME:EST\nEND:STANDARD\n"
                   "BEGIN:DAYLIGHT\nDTSTART:19740106T020000\nRDATE:19750223T020000\nTZOFFSETFROM:-0500\n"
                   "TZOFFSETTO:-0400\nTZNAME:EDT\nEND:DAYLIGHT\n"
                   "BEGIN:DAYLIGHT\nDTSTART:19760425T020000\nRRULE:FREQ=YEARLY;BYMONTH=4;BYDAY=-1SU;"
                   "UNTIL=19860427T070000Z\nTZOFFSETFROM:-0500\nTZOFFSETTO:-0400\nTZNAME:EDT\nEND:DAYLIGHT\n"
                   "BEGIN:DAYLIGHT\nDTSTART:19870405T020000\nRRULE:FREQ=YEARLY;BYMONTH=4;BYDAY=1SU;"
                   "UNTIL=20060402T070000Z\nTZOFFSETFROM:-0500\nTZOFFSETTO:-0400\nTZNAME:EDT\nEND:DAYLIGHT\n"
                   "BEGIN:DAYLIGHT\nDTSTART:20070311T020000\nRRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=2SU\n"
                   "TZOFFSETFROM:-0500\nTZOFFSETTO:-0400\nTZNAME:EDT\nEND:DAYLIGHT\n"
                   "BEGIN:STANDARD\nDTSTART:20071104T020000\nRRULE:FREQ=YEARLY;BYMONTH=11;BYDAY=1SU\n"
                   "TZOFFSETFROM:-0400\nTZOFFSETTO:-0500\nTZNAME:EST\nEND:STANDARD\n"),
            allTime),
        (Lines{"1967-01-01T17:00:00Z", "1968-05-01T16:00:00Z", "1987-04-05T16:00:00Z", "1999-07-04T16:00:00Z",
            "2006-04-01T17:00:00Z", "2007-03-20T16:00:00Z", "2020-11-01T17:00:00Z"}));
}

TEST(StandardZones, NewYorkFrom2007OnAlone)
{
    EXPECT_EQ(starts(atNoon("BEGIN:STANDARD\nDTSTART:20071104T020000\nTZOFFSETFROM:-0400\nTZOFFSETTO:-0500\n"
                            "RRULE:FREQ=YEARLY;BYMONTH=11;BYDAY=1SU\nEND:STANDARD\n"
                            "BEGIN:DAYLIGHT\nDTSTART:20070311T020000\nTZOFFSETFROM:-0500\nTZOFFSETTO:-0400\n"
                            "RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=2SU\nEND:DAYLIGHT\n"),
                  {.from = "2007-01-01T00:00:00Z", .to = "2030-01-01T00:00:00Z"}),
        (Lines{"2007-03-20T16:00:00Z", "2020-11-01T17:00:00Z"}));
}

TEST(StandardZones, FictitiousOneWhoseDaylightTimeEnds)
{
    EXPECT_EQ(
        starts(
            atNoon("BEGIN:STANDARD\nDTSTART:19871025T020000\nRRULE:FREQ=YEARLY;BYDAY=-1SU;BYMONTH=10\n"
                   "TZOFFSETFROM:-0400\nTZOFFSETTO:-0500\nTZNAME:EST\nEND:STANDARD\n"
                   "BEGIN:DAYLIGHT\nDTSTART:19870405T020000\nRRULE:FREQ=YEARLY;BYDAY=1SU;BYMONTH=4;"
                   "UNTIL=19980404T070000Z\nTZOFFSETFROM:-0500\nTZOFFSETTO:-0400\nTZNAME:EDT\nEND:DAYLIGHT\n"
                   "BEGIN:DAYLIGHT\nDTSTART:19990424T020000\nRRULE:FREQ=YEARLY;BYDAY=-1SU;BYMONTH=4\n"
                   "TZOFFSETFROM:-0500\nTZOFFSETTO:-0400\nTZNAME:EDT\nEND:DAYLIGHT\n"),
            {.from = "1987-01-01T00:00:00Z", .to = "2030-01-01T00:00:00Z"}),
        (Lines{"1987-04-05T16:00:00Z", "1999-07-04T16:00:00Z", "2006-04-01T17:00:00Z", "2007-03-20T17:00:00Z",
            "2020-11-01T17:00:00Z"}));
}

}
