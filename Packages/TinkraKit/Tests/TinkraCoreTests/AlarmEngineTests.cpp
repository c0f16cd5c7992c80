#include "TinkraCore/AlarmEngine.h"

#include "TinkraTestSupport/Builders.h"
#include "TinkraTestSupport/Printing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

namespace Tinkra {
namespace {

std::vector<ScheduledAlarm> alarmsFor(const std::vector<Meeting>& meetings,
    const AlarmSettings& settings = {}, const CalendarIDs& monitored = {"work"})
{
    return AlarmEngine{}.desiredAlarms(meetings, settings, monitored, noon);
}

AlarmSettings leading(Seconds leadTime)
{
    AlarmSettings settings;
    settings.leadTime = leadTime;
    return settings;
}

std::vector<Text> titlesOf(const std::vector<ScheduledAlarm>& alarms)
{
    std::vector<Text> titles;
    for (const auto& alarm : alarms)
        titles.push_back(alarm.title);
    return titles;
}

TEST(AlarmEngine, WantsNothingWhenNoCalendarIsMonitored)
{
    EXPECT_TRUE(alarmsFor({standup(noon + Seconds{60})}, {}, {}).empty());
}

TEST(AlarmEngine, SkipsAMeetingInACalendarThatIsNotMonitored)
{
    EXPECT_TRUE(alarmsFor({standup(noon + Seconds{60})}, {}, {"private"}).empty());
}

TEST(AlarmEngine, KnowsACalendarInComposedAndDecomposedForm)
{
    auto meeting = standup(noon + Seconds{60});
    meeting.calendarID = "cafe\u0301";

    EXPECT_EQ(alarmsFor({meeting}, {}, {"caf\u00e9"}).size(), 1U);
}

TEST(AlarmEngine, SkipsAllDayMeetingsWhenTheyAreIgnored)
{
    AlarmSettings settings;
    settings.ignoreAllDay = true;

    EXPECT_TRUE(alarmsFor({holiday(noon + Seconds{60})}, settings).empty());
}

TEST(AlarmEngine, RingsForAllDayMeetingsWhenTheyAreNotIgnored)
{
    auto settings = leading(Seconds{30});
    settings.ignoreAllDay = false;

    const auto alarms = alarmsFor({holiday(noon + Seconds{60})}, settings);

    ASSERT_EQ(alarms.size(), 1U);
    EXPECT_EQ(alarms[0].fireDate, noon + Seconds{30});
}

TEST(AlarmEngine, SkipsAMeetingThatStartsNow)
{
    EXPECT_TRUE(alarmsFor({standup(noon)}).empty());
}

TEST(AlarmEngine, RingsAtTheStartOfAMeetingThatStartsASecondFromNow)
{
    const auto alarms = alarmsFor({standup(noon + Seconds{1})});

    ASSERT_EQ(alarms.size(), 1U);
    EXPECT_EQ(alarms[0].fireDate, noon + Seconds{1});
    EXPECT_EQ(alarms[0].meetingStart, noon + Seconds{1});
}

TEST(AlarmEngine, SkipsAMeetingWhoseLeadWindowHasAlreadyBegun)
{
    EXPECT_TRUE(alarmsFor({standup(noon + Seconds{300})}, leading(Seconds{600})).empty());
    EXPECT_TRUE(alarmsFor({standup(noon + Seconds{600})}, leading(Seconds{600})).empty());
}

TEST(AlarmEngine, TakesANegativeLeadTimeAsItIs)
{
    const auto alarms = alarmsFor({standup(noon - Seconds{60})}, leading(Seconds{-120}));

    ASSERT_EQ(alarms.size(), 1U);
    EXPECT_EQ(alarms[0].fireDate, noon + Seconds{60});
}

TEST(AlarmEngine, RingsThoughTheMeetingEndsBeforeItStarts)
{
    auto meeting = standup(noon + Seconds{60});
    meeting.end = noon - Seconds{60};

    EXPECT_EQ(alarmsFor({meeting}).size(), 1U);
}

TEST(AlarmEngine, KeepsTheFirstOfTwoMeetingsWithOneIdentifierAndStart)
{
    const auto alarms = alarmsFor(
        {standup(noon + Seconds{60}, "same", "First"), standup(noon + Seconds{60}, "same", "Second")});

    EXPECT_EQ(titlesOf(alarms), std::vector<Text>{"First"});
}

TEST(AlarmEngine, KeepsTheFirstOfTwoAlarmsInTheSameSecondOfOneMeeting)
{
    // Both identifiers round to the same second; the first in the input stays, though it rings later.
    const auto alarms = alarmsFor(
        {standup(noon + Seconds{60.2}, "same", "First"), standup(noon + Seconds{59.8}, "same", "Second")});

    EXPECT_EQ(titlesOf(alarms), std::vector<Text>{"First"});
}

TEST(AlarmEngine, TakesComposedAndDecomposedIdentifiersForOne)
{
    const auto alarms = alarmsFor({standup(noon + Seconds{60}, "caf\u00e9", "First"),
        standup(noon + Seconds{60}, "cafe\u0301", "Second")});

    EXPECT_EQ(titlesOf(alarms), std::vector<Text>{"First"});
}

TEST(AlarmEngine, LeavesASkippedTwinOutOfTheSearchForDuplicates)
{
    auto elsewhere = standup(noon + Seconds{60}, "same", "Elsewhere");
    elsewhere.calendarID = "private";

    EXPECT_EQ(titlesOf(alarmsFor({elsewhere, standup(noon + Seconds{60}, "same", "Here")})),
        std::vector<Text>{"Here"});
}

TEST(AlarmEngine, KeepsTheOrderOfMeetingsThatRingTogether)
{
    const auto alarms = alarmsFor({standup(noon + Seconds{60}, "b", "B"),
        standup(noon + Seconds{60}, "c", "C"), standup(noon + Seconds{60}, "a", "A")});

    EXPECT_EQ(titlesOf(alarms), (std::vector<Text>{"B", "C", "A"}));
}

TEST(AlarmEngine, SortsByFireTime)
{
    const auto alarms = alarmsFor({standup(noon + Seconds{180}, "c", "C"),
        standup(noon + Seconds{60}, "a", "A"), standup(noon + Seconds{120}, "b", "B")});

    EXPECT_EQ(titlesOf(alarms), (std::vector<Text>{"A", "B", "C"}));
}

TEST(AlarmEngine, FormsTheWholeAlarm)
{
    const Meeting meeting{"abc", "work", "Title", instantAt(1300), instantAt(2000), false};

    const auto alarms = AlarmEngine{}.desiredAlarms({meeting}, leading(Seconds{300}), {"work"}, instantAt(0));

    EXPECT_EQ(alarms,
        (std::vector<ScheduledAlarm>{
            {"abc#1000", "abc", "Title", instantAt(1000), instantAt(1300), "work"}}));
}

TEST(AlarmEngine, HasNoLimitOnTheNumberOfAlarms)
{
    std::vector<Meeting> meetings;
    for (int i = 0; i < 1000; ++i)
        meetings.push_back(standup(noon + Seconds{60}, std::to_string(i)));

    EXPECT_EQ(alarmsFor(meetings).size(), 1000U);
}

TEST(AlarmEngine, SkipsAMeetingWhoseStartIsNotANumber)
{
    EXPECT_TRUE(alarmsFor({standup(instantAt(std::numeric_limits<double>::quiet_NaN()))}).empty());
}

TEST(AlarmEngine, SkipsEverythingWithALeadTimeOutOfReach)
{
    EXPECT_TRUE(alarmsFor({standup(noon + Seconds{60})}, leading(Seconds{1e308})).empty());
    EXPECT_TRUE(
        alarmsFor({standup(noon + Seconds{60})}, leading(Seconds{std::numeric_limits<double>::infinity()}))
            .empty());
}

TEST(AlarmEngineDeathTest, EndsTheProgramWhenAFireTimeCannotBeCounted)
{
    EXPECT_DEATH(alarmsFor({standup(noon + Seconds{60})}, leading(Seconds{-1e308})), "does not fit");
}

TEST(AlarmEngine, AgreesWithThePlainestReadingOfItsRulesForRandomMeetings)
{
    std::mt19937 random(6);
    for (int round = 0; round < 500; ++round) {
        std::vector<Meeting> meetings;
        for (auto count = random() % 30; count > 0; --count) {
            auto meeting = standup(noon + Seconds{static_cast<double>(random() % 40) / 4 - 3},
                std::string(1, static_cast<char>('a' + random() % 4)), std::to_string(count));
            meeting.isAllDay = random() % 5 == 0;
            meeting.calendarID = random() % 4 == 0 ? "private" : "work";
            meetings.push_back(meeting);
        }
        auto settings = leading(Seconds{static_cast<double>(random() % 5)});
        settings.ignoreAllDay = random() % 2 == 0;

        std::vector<ScheduledAlarm> expected;
        for (const auto& meeting : meetings) {
            const auto alarm = alarmFor(meeting, settings.leadTime);
            if (meeting.calendarID == Text("private") || (settings.ignoreAllDay && meeting.isAllDay)
                || alarm.fireDate <= noon)
                continue;
            if (std::ranges::find(expected, alarm.id, &ScheduledAlarm::id) == expected.end())
                expected.push_back(alarm);
        }
        std::ranges::stable_sort(expected, {}, &ScheduledAlarm::fireDate);

        EXPECT_EQ(alarmsFor(meetings, settings), expected);
    }
}

}
}
