// The text around the events: components, encodings, titles.

#include "CalendarTesting.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace Tinkra::ICalendar {

namespace {

using namespace std::string_literals;

std::string utf16(std::string_view ascii, bool isBigEndian, bool hasMark)
{
    std::string out;
    if (hasMark)
        out = isBigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : ascii) {
        out += isBigEndian ? '\0' : c;
        out += isBigEndian ? c : '\0';
    }
    return out;
}

const Lines standup{"2024-03-04T10:00:00Z/2024-03-04T11:00:00Z Stand-up"};

}

TEST(CalendarText, GivesTheSameForEveryKindOfLineEndAndEncoding)
{
    const auto text = calendarWithEvent("SUMMARY:Stand-up\n");
    auto lineFeeds = text;
    std::erase(lineFeeds, '\r');
    auto carriageReturns = text;
    std::erase(carriageReturns, '\n');
    EXPECT_EQ(occurrences(text), standup);
    EXPECT_EQ(occurrences(lineFeeds), standup);
    EXPECT_EQ(occurrences(carriageReturns), standup);
    EXPECT_EQ(occurrences("\xEF\xBB\xBF" + text), standup);
    for (const bool isBigEndian : {false, true}) {
        for (const bool hasMark : {false, true})
            EXPECT_EQ(occurrences(utf16(text, isBigEndian, hasMark)), standup);
    }
    EXPECT_TRUE(Calendar::read("\xEF\xBB\xBF" + text).isWhole());
}

TEST(CalendarText, UnderstandsAnEventFoldedAtEveryByte)
{
    std::string folded;
    for (const char c : calendarWithEvent("SUMMARY:Zoë\n"))
        folded += c == '\r' || c == '\n' ? std::string{c} : std::string{c} + "\r\n ";
    EXPECT_EQ(titles(folded), Lines{"Zoë"});
}

TEST(CalendarText, ShowsTitlesInLatin1)
{
    EXPECT_EQ(titles(calendarWithEvent("SUMMARY:Caf\xE9 M\xFCller\n")), Lines{"Café Müller"});
}

TEST(CalendarText, KeepsTheTitlesOfATextThatIsDamagedElsewhere)
{
    EXPECT_EQ(titles(calendarWithEvent("DESCRIPTION:\xFF\xE9\nSUMMARY:Zoë\n")), Lines{"Zoë"});
}

TEST(CalendarText, GivesValidTitlesAndIdentifiersFromZeroBytes)
{
    EXPECT_EQ(titles(calendarWithEvent("SUMMARY:a\0b\n"s)), Lines{"a\uFFFDb"});
    EXPECT_EQ(titles(calendarWithEvent("SUMMARY:a\n") + std::string(4'096, '\0')), Lines{"a"});
}

TEST(CalendarText, TakesTheFirstTitleAndIgnoresItsParameters)
{
    EXPECT_EQ(titles(calendarWithEvent(
                  "SUMMARY;LANGUAGE=de;ALTREP=\"http://x:1/;,\":A\\, B\\; C\\nD\nSUMMARY:E\n")),
        Lines{"A, B; C\nD"});
}

TEST(CalendarText, TellsAnEmptyTitleFromNone)
{
    const auto titleOf = [](std::string_view lines) {
        std::optional<std::string> title;
        Calendar::read(
            calendarWith("BEGIN:VEVENT\nDTSTART:20240304T100000Z\n" + std::string{lines} + "END:VEVENT\n"))
            .forEachOccurrence({instant("2024-01-01T00:00:00Z"), instant("2025-01-01T00:00:00Z")}, utcZone(),
                [&](const Occurrence& occurrence) { title = occurrence.title; });
        return title;
    };
    EXPECT_EQ(titleOf("SUMMARY:\n"), "");
    EXPECT_EQ(titleOf(""), std::nullopt);
}

TEST(CalendarText, ReadsNamesAndKeywordsInAnyCase)
{
    EXPECT_EQ(
        occurrences("begin:vcalendar\nBegin:vEvent\ndtstart;value=date:20240304\nSummary:X\nend:Vevent\n"
                    "end:vcalendar\n"),
        Lines{"2024-03-04T00:00:00Z/2024-03-05T00:00:00Z X (all day)"});
}

TEST(CalendarText, ToleratesBlanksAroundNamesAndValues)
{
    EXPECT_EQ(starts("BEGIN:VCALENDAR  \nBEGIN : VEVENT\nDTSTART : 20240304T100000Z \nEND: "
                     "VEVENT\t\nEND:VCALENDAR \n"),
        Lines{"2024-03-04T10:00:00Z"});
}

TEST(CalendarText, KeepsWhatAnAlarmSaysOutOfTheEvent)
{
    EXPECT_EQ(
        occurrences(calendarWith("BEGIN:VEVENT\nUID:a\n"
                                 "BEGIN:VALARM\nDTSTART:20300101T000000Z\nSUMMARY:Reminder\nDURATION:PT9H\n"
                                 "TRIGGER:-PT15M\nRRULE:FREQ=DAILY\nUID:x\nEND:VALARM\n"
                                 "DTSTART:20240304T100000Z\nSUMMARY:Real\nEND:VEVENT\n")),
        Lines{"2024-03-04T10:00:00Z/2024-03-04T10:00:00Z Real"});
}

TEST(CalendarText, PassesOverUnknownComponentsHoweverDeeplyNested)
{
    std::string nested;
    for (int i = 0; i < 100; ++i)
        nested += "BEGIN:X-" + std::to_string(i) + "\nSUMMARY:no\n";
    for (int i = 99; i >= 0; --i)
        nested += "SUMMARY:no\nEND:X-" + std::to_string(i) + "\n";
    EXPECT_EQ(titles(calendarWithEvent(nested + "SUMMARY:yes\n")), Lines{"yes"});
}

TEST(CalendarText, IgnoresTasksJournalsAndFreeBusyTimes)
{
    std::string body;
    for (const auto* name : {"VTODO", "VJOURNAL", "VFREEBUSY", "VAVAILABILITY", "X-THING"}) {
        body += "BEGIN:"s + name
            + "\nUID:a\nDTSTART:20240304T100000Z\nSUMMARY:no\nRRULE:FREQ=DAILY\nEND:" + name + "\n";
    }
    const auto calendar = Calendar::read(calendarWith(body));
    EXPECT_EQ(calendar.eventCount(), 0U);
    EXPECT_TRUE(calendar.isWhole());
    EXPECT_TRUE(calendar.notices().empty());
}

TEST(CalendarText, ReadsSeveralCalendarsInOneTextAndNothingBetweenThem)
{
    const auto one = calendarWithEvent("SUMMARY:A\n");
    auto other = calendarWithEvent("SUMMARY:B\n");
    other.replace(other.find("UID:one"), 7, "UID:two");
    const auto text = "Dear all,\nSUMMARY:no\nDTSTART:20240304T100000Z\n" + one + "\nand\n" + other + "bye\n";
    EXPECT_EQ(titles(text), (Lines{"A", "B"}));
    EXPECT_TRUE(Calendar::read(text).isWhole());
}

TEST(CalendarText, KeepsEventsWhoseEndIsMissing)
{
    const auto text = "BEGIN:VCALENDAR\nBEGIN:VEVENT\nUID:a\nDTSTART:20240304T100000Z\nSUMMARY:A\n"
                      "BEGIN:VALARM\nSUMMARY:no\n"
                      "BEGIN:VEVENT\nUID:b\nDTSTART:20240305T100000Z\nSUMMARY:B\n"s;
    const auto calendar = Calendar::read(text);
    EXPECT_EQ(titles(text), (Lines{"A", "B"}));
    EXPECT_FALSE(calendar.isWhole());
    EXPECT_EQ(calendar.notices().size(), 2U);
    EXPECT_TRUE(Calendar::read(text + "END:VCALENDAR\n").isWhole());
}

TEST(CalendarText, IgnoresEndsOfWhatIsNotOpen)
{
    EXPECT_EQ(titles("END:VEVENT\nEND:VCALENDAR\n"
                  + calendarWithEvent(
                      "END:VALARM\nEND:VTIMEZONE\nEND:X\nBEGIN:VALARM\nEND:X\nSUMMARY:no\nEND:VALARM\n"
                      "SUMMARY:A\n")),
        Lines{"A"});
}

TEST(CalendarText, IsWholeOnlyBetweenItsBeginAndItsEnd)
{
    const auto text = calendarWithEvent("");
    EXPECT_TRUE(Calendar::read(text).isWhole());
    EXPECT_TRUE(Calendar::read(text.substr(0, text.size() - 2)).isWhole());
    EXPECT_FALSE(Calendar::read(text.substr(0, text.size() - 3)).isWhole());
    EXPECT_FALSE(Calendar::read(text.substr(text.find('\n') + 1)).isWhole());
    EXPECT_FALSE(Calendar::read("").isWhole());
    EXPECT_FALSE(Calendar::read({}).isWhole());
    EXPECT_FALSE(Calendar::read("<!DOCTYPE html><html></html>").isWhole());
    EXPECT_FALSE(Calendar::read("BEGIN:VCALENDAR\nEND:VCALENDAR\nBEGIN:VCALENDAR\n").isWhole());
}

TEST(CalendarText, KeepsEventsWithoutACalendarAroundThem)
{
    EXPECT_EQ(titles("BEGIN:VEVENT\nDTSTART:20240304T100000Z\nSUMMARY:A\nEND:VEVENT\n"), Lines{"A"});
}

TEST(CalendarText, NamesTheLineOfWhatWasNotUnderstood)
{
    const auto calendar =
        Calendar::read("BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nDTSTART:19970230T\x01 \r\n 000000\r\n"
                       "END:VEVENT\r\nEND:VCALENDAR\r\n");
    EXPECT_EQ(calendar.notices(),
        (Lines{"Line 3: \"19970230T  000000\" is no date or time.",
            "Line 2: the event has no start that can be read; it was left out."}));
}

TEST(CalendarText, BoundsTheNumberOfItsNotices)
{
    std::string body;
    for (int i = 0; i < 1'000; ++i)
        body += "BEGIN:VEVENT\nEND:VEVENT\n";
    const auto calendar = Calendar::read(calendarWith(body));
    ASSERT_EQ(calendar.notices().size(), 101U);
    EXPECT_EQ(calendar.notices().back(), "900 more of the kind were left out.");
}

}
