#include "AppModel/CalendarsByAccount.h"
#include "AppModel/StatusText.h"

#include "TinkraTestSupport/Builders.h"
#include "TinkraTestSupport/Printing.h"

#include <gtest/gtest.h>

namespace Tinkra {
namespace {

const std::vector<ScheduledAlarm> standupNext{alarmFor(standup())};

TEST(StatusText, IsPausedWhateverElseHolds)
{
    auto paused = monitoring();
    paused.masterEnabled = false;
    EXPECT_EQ(statusText(paused, standupNext), "Paused");

    paused.monitoring.selectedCalendarIDs.clear();
    EXPECT_EQ(statusText(paused, {}), "Paused");
}

TEST(StatusText, SaysThatNoCalendarsAreSelected)
{
    EXPECT_EQ(statusText(TinkraConfiguration{}, {}), "No calendars selected");
}

TEST(StatusText, NamesTheFirstUpcomingMeeting)
{
    EXPECT_EQ(statusText(monitoring(), {alarmFor(standup(noon, "a", "First")), alarmFor(standup())}),
        "Next: First");
}

TEST(StatusText, CountsSelectedIdentifiersThoseOfVanishedCalendarsIncluded)
{
    EXPECT_EQ(statusText(monitoring({"work"}), {}), "Watching 1 calendar(s)");
    EXPECT_EQ(statusText(monitoring({"work", "home", "gone"}), {}), "Watching 3 calendar(s)");
}

TEST(StatusText, CutsTheMinutesOfASnoozeOff)
{
    EXPECT_EQ(snoozedText(Seconds{300}), "Snoozed 5 min");
    EXPECT_EQ(snoozedText(Seconds{90}), "Snoozed 1 min");
    EXPECT_EQ(snoozedText(Seconds{59.9}), "Snoozed 0 min");
}

CalendarRef calendar(Text id, Text title, Text account)
{
    return {
        .id = std::move(id), .title = std::move(title), .accountName = std::move(account), .colorHex = {}};
}

TEST(CalendarsByAccount, ListsUpperCaseAccountsBeforeLowerCase)
{
    const auto accounts = calendarsByAccount({calendar("1", "x", "b"), calendar("2", "y", "A")});

    EXPECT_EQ(accounts,
        (std::vector<AccountCalendars>{{"A", {calendar("2", "y", "A")}}, {"b", {calendar("1", "x", "b")}}}));
}

TEST(CalendarsByAccount, SortsCalendarsByTitleAndKeepsTheOrderOfEqualTitles)
{
    const auto accounts = calendarsByAccount(
        {calendar("1", "b", "A"), calendar("2", "a", "A"), calendar("3", "B", "A"), calendar("4", "a", "A")});

    ASSERT_EQ(accounts.size(), 1U);
    std::vector<Text> ids;
    for (const auto& each : accounts[0].calendars)
        ids.push_back(each.id);
    EXPECT_EQ(ids, (std::vector<Text>{"3", "2", "4", "1"}));
}

TEST(CalendarsByAccount, HasNoAccountWithoutCalendars)
{
    EXPECT_TRUE(calendarsByAccount({}).empty());
}

}
}
