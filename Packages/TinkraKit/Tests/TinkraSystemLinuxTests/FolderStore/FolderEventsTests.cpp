// What is reported of the events in the files.

#include "FolderStore/FolderStoreWorld.h"

#include <gmock/gmock.h>

#include <limits>

namespace Tinkra::System {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FolderEventsTest : public FolderStoreWorld { };

TEST_F(FolderEventsTest, ReportsAnOccurrenceAsItIsInTheFile)
{
    write("Cloud/Work/a.ics", calendarWith("abc@example.com", "Stand-up", "20261201T090000Z"));

    EXPECT_THAT(events(),
        ElementsAre(StoredEvent{
            .details = EventDetails{.eventIdentifier = "Cloud/Work/abc@example.com",
                .calendarItemIdentifier = "Cloud/Work/abc@example.com",
                .calendarIdentifier = "Cloud/Work",
                .title = "Stand-up"},
            .start = instantAt(kDecember + 9 * 3600),
            .end = instantAt(kDecember + 9 * 3600 + 1800),
            .isAllDay = false,
        }));
}

TEST_F(FolderEventsTest, ReportsEventsWithoutTitleAndWithAnEmptyOne)
{
    write(
        "Cloud/Work/a.ics", vcalendar("BEGIN:VEVENT\r\nUID:a\r\nDTSTART:20261201T090000Z\r\nEND:VEVENT\r\n"));
    write("Cloud/Work/b.ics",
        vcalendar("BEGIN:VEVENT\r\nUID:b\r\nSUMMARY:\r\nDTSTART:20261201T090000Z\r\nEND:VEVENT\r\n"));

    EXPECT_THAT(titles(), ElementsAre("", "(none)"));
}

TEST_F(FolderEventsTest, ReportsAllDayEventsAsSuch)
{
    write("Cloud/Work/a.ics",
        vcalendar("BEGIN:VEVENT\r\nUID:a\r\nSUMMARY:A\r\nDTSTART;VALUE=DATE:20261203\r\nEND:VEVENT\r\n"));

    const auto found = events();

    ASSERT_EQ(found.size(), 1U);
    EXPECT_TRUE(found[0].isAllDay);
}

TEST_F(FolderEventsTest, ReportsEachOccurrenceOfASeriesUnderOneIdentifier)
{
    write("Cloud/Work.ics",
        vcalendar("BEGIN:VEVENT\r\nUID:a\r\nSUMMARY:A\r\nDTSTART:20261201T090000Z\r\n"
                  "RRULE:FREQ=WEEKLY;COUNT=2\r\nEND:VEVENT\r\n"));

    const auto found = events({"Cloud/Work"});

    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].details->eventIdentifier, found[1].details->eventIdentifier);
    EXPECT_NE(found[0].start, found[1].start);
}

TEST_F(FolderEventsTest, ReportsWhatOverlapsTheRangeAndNothingThatTouchesIt)
{
    write("Cloud/Work/a.ics", calendarWith("a", "A", "20261201T090000Z"));
    constexpr double kStart = kDecember + 9 * 3600;
    constexpr double kEnd = kStart + 1800;

    EXPECT_EQ(events(kStart, kStart + 1).size(), 1U);
    EXPECT_EQ(events(kEnd - 1, kEnd + 1).size(), 1U);
    EXPECT_EQ(events(kStart + 60, kStart + 61).size(), 1U);
    EXPECT_EQ(events(kStart - 60, kStart).size(), 0U);
    EXPECT_EQ(events(kEnd, kEnd + 60).size(), 0U);
    // Fractions of a second count.
    EXPECT_EQ(events(kStart - 60, kStart + 0.25).size(), 1U);
    EXPECT_EQ(events(kEnd - 0.25, kEnd + 60).size(), 1U);
}

TEST_F(FolderEventsTest, ReportsAnOccurrenceWithoutLengthWhenItStartsInTheRange)
{
    write("Cloud/Work/a.ics",
        vcalendar("BEGIN:VEVENT\r\nUID:a\r\nSUMMARY:A\r\nDTSTART:20261201T090000Z\r\nEND:VEVENT\r\n"));
    constexpr double kStart = kDecember + 9 * 3600;

    EXPECT_EQ(events(kStart, kStart + 1).size(), 1U);
    EXPECT_EQ(events(kStart - 1, kStart).size(), 0U);
    EXPECT_EQ(events(kStart + 0.5, kStart + 1).size(), 0U);
    EXPECT_EQ(events(kStart - 0.5, kStart + 0.5).size(), 1U);
}

TEST_F(FolderEventsTest, TakesAnyRange)
{
    write("Cloud/Work/a.ics", calendarWith("a", "A"));
    constexpr auto kInfinity = std::numeric_limits<double>::infinity();
    constexpr auto kNone = std::numeric_limits<double>::quiet_NaN();

    EXPECT_EQ(events(-kInfinity, kInfinity).size(), 1U);
    EXPECT_EQ(events(-1e300, 1e300).size(), 1U);
    EXPECT_EQ(events(kDecember + kDay, kDecember).size(), 0U);
    EXPECT_EQ(events(kNone, kNone).size(), 0U);
}

TEST_F(FolderEventsTest, ReportsOnlyTheCalendarsThatAreAskedFor)
{
    write("Cloud/Work/a.ics", calendarWith("a", "Work"));
    write("Cloud/Home/a.ics", calendarWith("a", "Home"));
    write("Cloud/Team.ics", calendarWith("a", "Team"));

    EXPECT_THAT(titles({"Cloud/Home", "Cloud/Team"}), ElementsAre("Home", "Team"));
    EXPECT_THAT(titles({}), IsEmpty());
}

TEST_F(FolderEventsTest, IgnoresIdentifiersThatMatchNoCalendar)
{
    write("Cloud/Work/a.ics", calendarWith("a", "Work"));

    EXPECT_THAT(titles({"Cloud/Gone", "../../etc", "", "Cloud/Work"}), ElementsAre("Work"));
}

TEST_F(FolderEventsTest, KeepsOneUidInTwoCalendarsApart)
{
    write("Cloud/Work/a.ics", calendarWith("same", "A"));
    write("Cloud/Home/a.ics", calendarWith("same", "A"));

    const auto found = events({"Cloud/Work", "Cloud/Home"});

    ASSERT_EQ(found.size(), 2U);
    EXPECT_NE(found[0].details->eventIdentifier, found[1].details->eventIdentifier);
}

TEST_F(FolderEventsTest, ReportsBothEventsWhenTwoFilesOfACalendarShareAUid)
{
    write("Cloud/Work/a.ics", calendarWith("same", "A", "20261201T090000Z"));
    write("Cloud/Work/b.ics", calendarWith("same", "B", "20261202T090000Z"));

    EXPECT_THAT(titles(), ElementsAre("A", "B"));
}

TEST_F(FolderEventsTest, GivesEventsWithoutUidTheSameIdentifierInEveryRun)
{
    const auto text = vcalendar("BEGIN:VEVENT\r\nSUMMARY:A\r\nDTSTART:20261201T090000Z\r\nEND:VEVENT\r\n"
                                "BEGIN:VEVENT\r\nSUMMARY:B\r\nDTSTART:20261201T090000Z\r\nEND:VEVENT\r\n");
    write("Cloud/Work/a.ics", text);
    write("Cloud/Home/a.ics", text);
    const auto first = events({"Cloud/Work", "Cloud/Home"});
    restart();
    const auto second = events({"Cloud/Work", "Cloud/Home"});

    EXPECT_EQ(first, second);
    std::set<std::string> identifiers;
    for (const auto& event : first)
        identifiers.insert(*event.details->eventIdentifier);
    EXPECT_EQ(identifiers.size(), 4U);
}

TEST_F(FolderEventsTest, ReadsOnTwoThreadsWhatItReadsOnOne)
{
    std::set<std::string> expected;
    for (int i = 0; i < 1200; ++i) {
        const auto name = "event " + std::to_string(i);
        write("Cloud/Work/" + std::to_string(i) + ".ics", calendarWith(std::to_string(i), name));
        expected.insert(name);
    }

    const auto found = titles();

    EXPECT_EQ(std::set<std::string>(found.begin(), found.end()), expected);
    EXPECT_EQ(found.size(), expected.size());
}

}
}
