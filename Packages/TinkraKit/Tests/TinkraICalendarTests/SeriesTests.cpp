// What repeats, and which instances are left out, replaced or moved.

#include "CalendarTesting.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <string_view>

namespace Tinkra::ICalendar {

namespace {

/// Daily at 10:00 in Berlin from Friday, 1 March to 5 March 2024: 09:00 UTC.
std::string fiveDays(std::string_view lines, std::string_view others = "")
{
    return calendarWith("BEGIN:VEVENT\nUID:a\nSUMMARY:Daily\nDTSTART;TZID=Europe/Berlin:20240301T100000\n"
                        "DTEND;TZID=Europe/Berlin:20240301T103000\nRRULE:FREQ=DAILY;COUNT=5\n"
        + std::string{lines} + "END:VEVENT\n" + std::string{others});
}

std::string exception(std::string_view recurrenceId, std::string_view lines)
{
    return "BEGIN:VEVENT\nUID:a\nSUMMARY:Moved\nRECURRENCE-ID" + std::string{recurrenceId} + "\n"
        + std::string{lines} + "END:VEVENT\n";
}

std::string march(int day, std::string_view time = "09:00:00Z")
{
    return "2024-03-0" + std::to_string(day) + "T" + std::string{time};
}

}

TEST(Series, GivesEveryInstanceOfItsRuleWithTheLengthOfTheEvent)
{
    EXPECT_EQ(occurrences(fiveDays("")).back(), "2024-03-05T09:00:00Z/2024-03-05T09:30:00Z Daily");
    EXPECT_EQ(starts(fiveDays("")), (Lines{march(1), march(2), march(3), march(4), march(5)}));
}

TEST(Series, KeepsItsWallClockTimeOverAChangeOfTheClocks)
{
    EXPECT_EQ(
        occurrences(calendarWithEvent("DTSTART;TZID=Europe/Berlin:20240330T100000\n"
                                      "DTEND;TZID=Europe/Berlin:20240330T110000\nRRULE:FREQ=DAILY;COUNT=2")),
        (Lines{"2024-03-30T09:00:00Z/2024-03-30T10:00:00Z One",
            "2024-03-31T08:00:00Z/2024-03-31T09:00:00Z One"}));
}

TEST(Series, LastsExactlyAsLongAsItsFirstInstanceWithAnEndButByTheClockWithADuration)
{
    const std::string start = "DTSTART;TZID=Europe/Berlin:20240329T220000\nRRULE:FREQ=DAILY;COUNT=2\n";
    EXPECT_EQ(occurrences(calendarWithEvent(start + "DTEND;TZID=Europe/Berlin:20240330T220000")).back(),
        "2024-03-30T21:00:00Z/2024-03-31T21:00:00Z One");
    EXPECT_EQ(occurrences(calendarWithEvent(start + "DURATION:P1D")).back(),
        "2024-03-30T21:00:00Z/2024-03-31T20:00:00Z One");
    EXPECT_EQ(occurrences(calendarWithEvent(start + "DURATION:PT24H")).back(),
        "2024-03-30T21:00:00Z/2024-03-31T21:00:00Z One");
}

TEST(Series, LeavesOutExcludedInstancesInWhateverFormTheyAreNamed)
{
    const Lines without3{march(1), march(2), march(4), march(5)};
    for (const auto* lines : {
             "EXDATE;TZID=Europe/Berlin:20240303T100000\n",
             "EXDATE:20240303T100000\n",
             "EXDATE:20240303T090000Z\n",
             "EXDATE;TZID=America/New_York:20240303T040000\n",
             "EXDATE;VALUE=DATE:20240303\n",
             "EXDATE:20240303\n",
             "exdate;tzid=\"Europe/Berlin\":20240303T100000\n",
             "EXDATE;TZID=Europe/Berlin:20300101T100000,20240303T100000,nonsense,\n",
             "EXDATE:20300101T100000\nEXDATE:20240303T090000Z\nEXDATE:\n",
             "EXDATE;TZID=Nowhere:20240303T100000\n",
         })
        EXPECT_EQ(starts(fiveDays(lines)), without3) << lines;
}

TEST(Series, LeavesOutTheFirstInstanceWhenItIsExcluded)
{
    EXPECT_EQ(starts(fiveDays("EXDATE:20240301T100000\n")).front(), march(2));
}

TEST(Series, KeepsAnInstanceThatAnExcludedDateMissesByAnHour)
{
    EXPECT_EQ(starts(fiveDays("EXDATE:20240303T100000Z\n")).size(), 5U);
}

TEST(Series, LeavesOutExcludedDaysOfAllDayEventsInWhateverForm)
{
    const std::string event = "DTSTART;VALUE=DATE:20240301\nRRULE:FREQ=DAILY;COUNT=3\n";
    const Lines expected{"2024-03-01T00:00:00Z", "2024-03-03T00:00:00Z"};
    for (const auto* lines : {"EXDATE;VALUE=DATE:20240302\n", "EXDATE:20240302T000000\n",
             "EXDATE:20240302T000000Z\n", "EXDATE;TZID=Europe/Berlin:20240302T000000\n",
             "EXDATE:20240301T230000Z\n", "EXDATE:20240302T050000Z\n"})
        EXPECT_EQ(starts(calendarWithEvent(event + lines)), expected) << lines;
}

TEST(Series, ComparesFloatingInstancesWithUtcInTheViewersZone)
{
    const auto text =
        calendarWithEvent("DTSTART:20240301T100000\nRRULE:FREQ=DAILY;COUNT=2\nEXDATE:20240302T090000Z");
    EXPECT_EQ(starts(text, {.zone = "Europe/Berlin"}).size(), 1U);
    EXPECT_EQ(starts(text, {.zone = "UTC"}).size(), 2U);
}

TEST(Series, AddsSingleDatesOfEachType)
{
    EXPECT_EQ(starts(fiveDays("RDATE;TZID=Europe/Berlin:20240308T120000,20240309T120000\n")).back(),
        march(9, "11:00:00Z"));
    EXPECT_EQ(starts(fiveDays("RDATE:20240308T120000Z\n")).back(), march(8, "12:00:00Z"));
    EXPECT_EQ(starts(fiveDays("RDATE:20240308T120000\n")).back(), march(8, "11:00:00Z"));
    EXPECT_EQ(starts(fiveDays("RDATE;VALUE=DATE:20240308\n")).back(), march(8));
    EXPECT_EQ(starts(fiveDays("RDATE:20240228T120000Z\n")).front(), "2024-02-28T12:00:00Z");
}

TEST(Series, TakesStartAndLengthOfAPeriod)
{
    EXPECT_EQ(occurrences(fiveDays("RDATE;VALUE=PERIOD:20240308T120000Z/PT3H\n")).back(),
        "2024-03-08T12:00:00Z/2024-03-08T15:00:00Z Daily");
    EXPECT_EQ(occurrences(fiveDays("RDATE;VALUE=PERIOD;TZID=Europe/Berlin:20240308T120000/20240308T140000\n"))
                  .back(),
        "2024-03-08T11:00:00Z/2024-03-08T13:00:00Z Daily");
    EXPECT_EQ(occurrences(fiveDays("RDATE;VALUE=PERIOD:20240308T120000Z/nonsense\n")).back(),
        "2024-03-08T12:00:00Z/2024-03-08T12:30:00Z Daily");
}

TEST(Series, CountsADateThatTheRuleGivesTooOnce)
{
    EXPECT_EQ(starts(fiveDays("RDATE:20240303T090000Z\nRDATE:20240303T100000\n")).size(), 5U);
}

TEST(Series, CanConsistOfSingleDatesAlone)
{
    EXPECT_EQ(starts(calendarWithEvent("DTSTART:20240301T100000Z\nRDATE:20240303T100000Z")),
        (Lines{"2024-03-01T10:00:00Z", "2024-03-03T10:00:00Z"}));
    EXPECT_EQ(starts(calendarWithEvent(
                  "DTSTART;VALUE=DATE:20240301\nRDATE;VALUE=DATE:20240303\nRDATE:20240305T120000")),
        (Lines{"2024-03-01T00:00:00Z", "2024-03-03T00:00:00Z", "2024-03-05T00:00:00Z"}));
}

TEST(Series, FollowsAllItsRulesAndCountsWhatTheyShareOnce)
{
    EXPECT_EQ(starts(calendarWithEvent("DTSTART:20240301T100000Z\nRRULE:FREQ=DAILY;COUNT=3\n"
                                       "RRULE:FREQ=DAILY;INTERVAL=2;COUNT=3")),
        (Lines{
            "2024-03-01T10:00:00Z", "2024-03-02T10:00:00Z", "2024-03-03T10:00:00Z", "2024-03-05T10:00:00Z"}));
}

TEST(Series, LeavesOutWhatAnExclusionRuleGives)
{
    const std::string event = "DTSTART:20240301T100000Z\nRRULE:FREQ=DAILY;COUNT=7\n";
    EXPECT_EQ(starts(calendarWithEvent(event + "EXRULE:FREQ=WEEKLY;BYDAY=SA,SU")),
        (Lines{"2024-03-01T10:00:00Z", "2024-03-04T10:00:00Z", "2024-03-05T10:00:00Z", "2024-03-06T10:00:00Z",
            "2024-03-07T10:00:00Z"}));
    EXPECT_EQ(
        starts(calendarWithEvent(event + "EXRULE:FREQ=WEEKLY;BYDAY=FR")).front(), "2024-03-02T10:00:00Z");
}

TEST(Series, KeepsAStartThatAnExclusionRuleDoesNotGive)
{
    // A Friday, but neither the last of its month nor day 100 of its year, and not at noon.
    const std::string event = "DTSTART:20240301T100000Z\nRRULE:FREQ=DAILY;COUNT=2\n";
    for (const std::string rule :
        {"FREQ=MONTHLY;BYDAY=-1FR", "FREQ=YEARLY;BYYEARDAY=100", "FREQ=YEARLY;BYWEEKNO=20",
            "FREQ=MONTHLY;BYDAY=MO,FR;BYSETPOS=2", "FREQ=DAILY;BYHOUR=12", "FREQ=HOURLY;BYYEARDAY=100"})
        EXPECT_EQ(starts(calendarWithEvent(event + "EXRULE:" + rule)).front(), "2024-03-01T10:00:00Z")
            << rule;
    for (const std::string rule :
        {"FREQ=MONTHLY;BYDAY=1FR", "FREQ=YEARLY;BYYEARDAY=61", "FREQ=HOURLY;BYYEARDAY=61"})
        EXPECT_EQ(starts(calendarWithEvent(event + "EXRULE:" + rule)).front(), "2024-03-02T10:00:00Z")
            << rule;
}

TEST(Series, IgnoresARuleThatCannotBeReadAndSaysSo)
{
    const auto calendar = Calendar::read(calendarWithEvent("DTSTART:20240301T100000Z\nRRULE:nonsense"));
    EXPECT_EQ(occurrences(calendar).size(), 1U);
    EXPECT_FALSE(calendar.notices().empty());
}

TEST(Series, GivesInstancesThatASkippedHourBringsTogetherOnce)
{
    const auto twoADay = calendarWithEvent("DTSTART;TZID=Europe/Zurich:20240330T023000\nDURATION:PT5M\n"
                                           "RRULE:FREQ=DAILY;BYHOUR=2,3;COUNT=5\n");
    EXPECT_EQ(starts(twoADay),
        (Lines{
            "2024-03-30T01:30:00Z", "2024-03-30T02:30:00Z", "2024-03-31T01:30:00Z", "2024-04-01T00:30:00Z"}));

    // Samoa had no 30 December 2011.
    const auto aDayLost = calendarWithEvent(
        "DTSTART;TZID=Pacific/Apia:20111229T090000\nDURATION:PT5M\nRRULE:FREQ=DAILY;COUNT=3\n");
    EXPECT_EQ(starts(aDayLost, {.from = "2011-12-28T00:00:00Z", .to = "2012-01-08T00:00:00Z"}),
        (Lines{"2011-12-29T19:00:00Z", "2011-12-30T19:00:00Z"}));
}

TEST(Series, LeavesOutOnlyTheFirstOfARepeatedHourThatIsNamedByTheClock)
{
    const auto text = calendarWithEvent("DTSTART;TZID=Europe/Zurich:20241027T013000\nDURATION:PT5M\n"
                                        "RRULE:FREQ=HOURLY;COUNT=4\n"
                                        "EXDATE;TZID=Europe/Zurich:20241027T023000\n");
    EXPECT_EQ(starts(text), (Lines{"2024-10-26T23:30:00Z", "2024-10-27T01:30:00Z", "2024-10-27T02:30:00Z"}));
}

TEST(Series, LeavesOutASkippedTimeThatIsNamedByWhereItMovedTo)
{
    const auto text = calendarWithEvent("DTSTART;TZID=Europe/Zurich:20240330T023000\nDURATION:PT5M\n"
                                        "RRULE:FREQ=DAILY;COUNT=3\n"
                                        "EXDATE;TZID=Europe/Zurich:20240331T033000\n");
    EXPECT_EQ(starts(text), (Lines{"2024-03-30T01:30:00Z", "2024-04-01T00:30:00Z"}));
}

TEST(Series, GivesTheStartThatDoesNotFitTheRule)
{
    EXPECT_EQ(
        starts(calendarWithEvent("DTSTART:20240301T100000Z\nRRULE:FREQ=WEEKLY;BYDAY=MO;COUNT=2")).front(),
        "2024-03-01T10:00:00Z");
}

TEST(Series, ReplacesAnInstanceInWhateverFormItIsNamed)
{
    const Lines expected{"Daily", "Daily", "Daily", "Moved", "Daily"};
    for (const auto* id : {";TZID=Europe/Berlin:20240303T100000", ":20240303T100000", ":20240303T090000Z",
             ";TZID=America/New_York:20240303T040000", ";VALUE=DATE:20240303", ":20240303"}) {
        const auto text = fiveDays("", exception(id, "DTSTART:20240304T120000Z\nDTEND:20240304T130000Z\n"));
        EXPECT_EQ(titles(text), expected) << id;
        EXPECT_EQ(occurrences(text)[3], "2024-03-04T12:00:00Z/2024-03-04T13:00:00Z Moved") << id;
    }
}

TEST(Series, ReplacesADayOfAnAllDaySeries)
{
    for (const auto* id :
        {";VALUE=DATE:20240302", ":20240302T000000Z", ":20240301T230000Z", ":20240302T000000"}) {
        EXPECT_EQ(
            occurrences(calendarWith(
                "BEGIN:VEVENT\nUID:a\nDTSTART;VALUE=DATE:20240301\nRRULE:FREQ=DAILY;COUNT=2\nEND:VEVENT\n"
                + exception(id, "DTSTART:20240307T100000Z\n"))),
            (Lines{"2024-03-01T00:00:00Z/2024-03-02T00:00:00Z - (all day)",
                "2024-03-07T10:00:00Z/2024-03-07T10:00:00Z Moved"}))
            << id;
    }
}

TEST(Series, MayBeReplacedBeforeItIsRead)
{
    const auto moved = exception(":20240303T090000Z", "DTSTART:20240304T120000Z\n");
    auto text = fiveDays("");
    text.insert(text.find("BEGIN:VEVENT"), moved);
    EXPECT_EQ(titles(text), (Lines{"Daily", "Daily", "Daily", "Moved", "Daily"}));
}

TEST(Series, FindsAnInstanceThatWasMovedIntoTheRangeFromFarAway)
{
    EXPECT_EQ(titles(fiveDays("", exception(":20240303T090000Z", "DTSTART:20270304T120000Z\n")),
                  {.from = "2027-01-01T00:00:00Z", .to = "2028-01-01T00:00:00Z"}),
        Lines{"Moved"});
}

TEST(Series, ShowsAnExceptionThatMatchesNoInstance)
{
    EXPECT_EQ(starts(fiveDays("", exception(":20240303T111111Z", "DTSTART:20240309T120000Z\n"))).size(), 6U);
}

TEST(Series, ShowsAnExceptionWithoutItsSeries)
{
    EXPECT_EQ(occurrences(calendarWith(exception(":20240303T090000Z", "DTSTART:20240304T120000Z\n"))),
        Lines{"2024-03-04T12:00:00Z/2024-03-04T12:00:00Z Moved"});
}

TEST(Series, KeepsTheTimeOfAnExceptionThatHasNone)
{
    EXPECT_EQ(occurrences(fiveDays("", exception(":20240303T090000Z", "")))[2],
        "2024-03-03T09:00:00Z/2024-03-03T09:00:00Z Moved");
}

TEST(Series, KeepsADeletedInstanceDeletedWhenItWasMovedBefore)
{
    for (const auto* exdate : {"EXDATE:20240303T090000Z\n", "EXDATE;TZID=Europe/Berlin:20240303T100000\n",
             "EXDATE;VALUE=DATE:20240303\n"}) {
        for (const auto* id :
            {":20240303T090000Z", ";TZID=Europe/Berlin:20240303T100000", ":20240303T100000"}) {
            EXPECT_EQ(starts(fiveDays(exdate, exception(id, "DTSTART:20240309T120000Z\n"))),
                (Lines{march(1), march(2), march(4), march(5)}))
                << exdate << id;
        }
    }
}

TEST(Series, KeepsCancelledExceptions)
{
    EXPECT_EQ(titles(fiveDays(
                  "", exception(":20240303T090000Z", "DTSTART:20240303T090000Z\nSTATUS:CANCELLED\n")))[2],
        "Moved");
}

TEST(Series, MovesAndRenamesAllLaterInstances)
{
    const auto text = fiveDays("",
        exception(";RANGE=THISANDFUTURE;TZID=Europe/Berlin:20240303T100000",
            "DTSTART;TZID=Europe/Berlin:20240303T140000\nDURATION:PT1H\n"));
    EXPECT_EQ(occurrences(text),
        (Lines{"2024-03-01T09:00:00Z/2024-03-01T09:30:00Z Daily",
            "2024-03-02T09:00:00Z/2024-03-02T09:30:00Z Daily",
            "2024-03-03T13:00:00Z/2024-03-03T14:00:00Z Moved",
            "2024-03-04T13:00:00Z/2024-03-04T14:00:00Z Moved",
            "2024-03-05T13:00:00Z/2024-03-05T14:00:00Z Moved"}));
}

TEST(Series, MovesLaterInstancesByTheWallClock)
{
    const auto text = calendarWith("BEGIN:VEVENT\nUID:a\nDTSTART;TZID=Europe/Berlin:20240329T100000\n"
                                   "RRULE:FREQ=DAILY;COUNT=3\nEND:VEVENT\n"
        + exception(";RANGE=THISANDFUTURE:20240330T090000Z", "DTSTART;TZID=Europe/Berlin:20240331T110000\n"));
    EXPECT_EQ(starts(text), (Lines{"2024-03-29T09:00:00Z", "2024-03-31T09:00:00Z", "2024-04-01T09:00:00Z"}));
}

TEST(Series, LetsTheLatestMoveAndTheSingleExceptionWin)
{
    const auto text = fiveDays("EXDATE:20240305T090000Z\n",
        exception(";RANGE=THISANDFUTURE:20240302T090000Z", "DTSTART:20240302T100000Z\n")
            + exception(";RANGE=THISANDFUTURE:20240304T090000Z", "DTSTART:20240304T110000Z\nSUMMARY:Again\n")
            + exception(":20240303T090000Z", "DTSTART:20240303T200000Z\n"));
    EXPECT_EQ(
        starts(text), (Lines{march(1), march(2, "10:00:00Z"), march(3, "20:00:00Z"), march(4, "11:00:00Z")}));
}

TEST(Series, MovesASkippedTimeFromWhereTheRulePutIt)
{
    const auto text = calendarWith("BEGIN:VEVENT\nUID:a\nDTSTART;TZID=Europe/Zurich:20240330T023000\n"
                                   "RRULE:FREQ=DAILY;COUNT=2\nEND:VEVENT\n"
        + exception(";RANGE=THISANDFUTURE;TZID=Europe/Zurich:20240330T023000",
            "DTSTART;TZID=Europe/Zurich:20240330T033000\n"));
    EXPECT_EQ(starts(text), (Lines{"2024-03-30T02:30:00Z", "2024-03-31T01:30:00Z"}));
}

TEST(Series, MovesLaterInstancesEvenWhenTheFirstOfThemWasDeleted)
{
    const auto text = fiveDays("EXDATE:20240303T090000Z\n",
        exception(";RANGE=THISANDFUTURE:20240303T090000Z", "DTSTART:20240303T150000Z\n"));
    EXPECT_EQ(starts(text), (Lines{march(1), march(2), march(4, "15:00:00Z"), march(5, "15:00:00Z")}));
}

TEST(Series, FindsLaterInstancesThatWereMovedIntoTheRange)
{
    const auto text =
        fiveDays("", exception(";RANGE=THISANDFUTURE:20240302T090000Z", "DTSTART:20250302T100000Z\n"));
    EXPECT_EQ(starts(text, {.from = "2025-03-05T00:00:00Z", .to = "2025-03-06T00:00:00Z"}),
        Lines{"2025-03-05T10:00:00Z"});
    EXPECT_EQ(starts(text).size(), 1U);
}

TEST(Series, CanTurnIntoAllDayEventsFromAnInstanceOn)
{
    const auto text =
        fiveDays("", exception(";RANGE=THISANDFUTURE:20240304T090000Z", "DTSTART;VALUE=DATE:20240304\n"));
    EXPECT_EQ(occurrences(text).back(), "2024-03-05T00:00:00Z/2024-03-06T00:00:00Z Moved (all day)");
}

TEST(Versions, TheHighestSequenceOfAnExceptionWins)
{
    const auto version = [](int sequence, std::string_view title) {
        return "BEGIN:VEVENT\nUID:a\nRECURRENCE-ID:20240303T090000Z\nDTSTART:20240303T090000Z\nSEQUENCE:"
            + std::to_string(sequence) + "\nSUMMARY:" + std::string{title} + "\nEND:VEVENT\n";
    };
    EXPECT_EQ(titles(fiveDays("", version(2, "New") + version(1, "Old")))[2], "New");
    EXPECT_EQ(titles(fiveDays("", version(9, "Old") + version(10, "New")))[2], "New");
    EXPECT_EQ(titles(fiveDays("", version(1, "Old") + version(1, "New")))[2], "New");
    EXPECT_EQ(starts(fiveDays("", version(1, "Old") + version(1, "New"))).size(), 5U);
}

TEST(Versions, OfDuplicatesTheHighestSequenceThenTheLatestStampWins)
{
    const auto version = [](std::string_view lines, std::string_view title) {
        return "BEGIN:VEVENT\nUID:a\nDTSTART:20240303T090000Z\n" + std::string{lines}
        + "SUMMARY:" + std::string{title} + "\nEND:VEVENT\n";
    };
    EXPECT_EQ(titles(calendarWith(version("SEQUENCE:2\nDTSTAMP:20200101T000000Z\n", "New")
                  + version("SEQUENCE:1\nDTSTAMP:20240101T000000Z\n", "Old"))),
        Lines{"New"});
    EXPECT_EQ(titles(calendarWith(version("DTSTAMP:20240101T000000Z\n", "New")
                  + version("SEQUENCE:0\nDTSTAMP:20200101T000000Z\n", "Old"))),
        Lines{"New"});
    EXPECT_EQ(titles(calendarWith(version("LAST-MODIFIED:20240101T000000Z\n", "New")
                  + version("LAST-MODIFIED:20200101T000000Z\n", "Old"))),
        Lines{"New"});
    EXPECT_EQ(titles(calendarWith(version("", "Old") + version("", "New"))), Lines{"New"});
}

TEST(Versions, ANewerVersionReplacesAnOlderOneAtAnotherTime)
{
    EXPECT_EQ(
        starts(calendarWith("BEGIN:VEVENT\nUID:a\nDTSTART:20240303T090000Z\nRRULE:FREQ=DAILY\nEND:VEVENT\n"
                            "BEGIN:VEVENT\nUID:a\nDTSTART:20240304T090000Z\nSEQUENCE:1\nEND:VEVENT\n")),
        Lines{"2024-03-04T09:00:00Z"});
}

TEST(Versions, EventsThatShareAUidAndNothingElseAreAllShown)
{
    EXPECT_EQ(starts(calendarWith("BEGIN:VEVENT\nUID:a\nDTSTART:20240303T090000Z\nEND:VEVENT\n"
                                  "BEGIN:VEVENT\nUID:a\nDTSTART:20240304T090000Z\nEND:VEVENT\n"
                                  "BEGIN:VEVENT\nUID:a\nDTSTART:20240303T090000Z\nEND:VEVENT\n")),
        (Lines{"2024-03-03T09:00:00Z", "2024-03-04T09:00:00Z"}));
}

TEST(Versions, ASeriesWithARecurrenceIdOfItsOwnStandsInForAMissingMaster)
{
    const std::string series =
        "BEGIN:VEVENT\nUID:a\nRECURRENCE-ID:20240301T090000Z\nDTSTART:20240301T090000Z\n"
        "SUMMARY:Stray\nRRULE:FREQ=DAILY;COUNT=3\nEND:VEVENT\n";
    EXPECT_EQ(titles(calendarWith(series)).size(), 3U);
    EXPECT_EQ(titles(calendarWith(series + exception(":20240302T090000Z", "DTSTART:20240302T100000Z\n"))),
        (Lines{"Stray", "Moved", "Stray"}));
    EXPECT_EQ(titles(fiveDays("", series)), (Lines{"Stray", "Daily", "Daily", "Daily", "Daily"}));
}

TEST(Versions, ApplyAcrossTheCalendarsOfOneText)
{
    const auto moved = exception(":20240303T090000Z", "DTSTART:20240304T120000Z\n");
    EXPECT_EQ(starts(fiveDays("") + calendarWith(moved)).size(), 5U);
}

TEST(Identifiers, AreTheUidUnescaped)
{
    std::string uid;
    Calendar::read(calendarWith("BEGIN:VEVENT\nUID: a\\,b\xE9 \nDTSTART:20240304T100000Z\nEND:VEVENT\n"))
        .forEachOccurrence({instant("2024-01-01T00:00:00Z"), instant("2025-01-01T00:00:00Z")}, utcZone(),
            [&](const Occurrence& occurrence) { uid = occurrence.uid; });
    EXPECT_EQ(uid, "a,bé");
}

TEST(Identifiers, ComeFromTheContentOfAnEventWithoutOneAndAreStable)
{
    const auto identifiers = [](std::string_view stamp) {
        const auto event = [stamp](std::string_view lines) {
            return "BEGIN:VEVENT\nDTSTAMP:" + std::string{stamp} + "\nDTSTART:20240304T100000Z\n"
                + std::string{lines} + "END:VEVENT\n";
        };
        Lines found;
        Calendar::read(calendarWith(event("SUMMARY:A\n") + event("SUMMARY:B\nUID:\n")
                           + event("DTEND:20240304T110000Z\n") + event("RRULE:FREQ=DAILY;COUNT=2\n")))
            .forEachOccurrence({instant("2024-03-04T00:00:00Z"), instant("2024-03-05T00:00:00Z")}, utcZone(),
                [&](const Occurrence& occurrence) { found.emplace_back(occurrence.uid); });
        return found;
    };
    const auto first = identifiers("20240101T000000Z");
    EXPECT_EQ(first.size(), 4U);
    EXPECT_EQ(std::set<std::string>(first.begin(), first.end()).size(), 4U);
    EXPECT_EQ(first, identifiers("20250101T000000Z"));
    EXPECT_EQ(first.front(), "content-ab708c5bc56d51fa")
        << "the value must not change from one release to the next";
}

}
