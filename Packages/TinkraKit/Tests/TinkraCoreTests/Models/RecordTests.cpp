#include "TinkraCore/Models/CalendarRef.h"
#include "TinkraCore/Models/ReconcileResult.h"
#include "TinkraTestSupport/Builders.h"
#include "TinkraTestSupport/Printing.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <unordered_set>

namespace Tinkra {
namespace {

static_assert(std::is_nothrow_move_constructible_v<ScheduledAlarm>);
static_assert(std::is_nothrow_move_assignable_v<ScheduledAlarm>);

template <typename Record> std::size_t hashOf(const Record& record)
{
    return std::hash<Record>{}(record);
}

TEST(Meeting, DiffersInEqualityAndHashWhenOnlyTheAllDayFlagDiffers)
{
    const auto meeting = standup();
    auto allDay = meeting;
    allDay.isAllDay = true;

    EXPECT_NE(meeting, allDay);
    EXPECT_NE(hashOf(meeting), hashOf(allDay));
}

TEST(Meeting, DiffersInEqualityAndHashWithEachOfItsFields)
{
    const auto meeting = standup();
    std::vector<Meeting> others(6, meeting);
    others[0].id = "other";
    others[1].calendarID = "other";
    others[2].title = "other";
    others[3].start += Seconds{0.001};
    others[4].end += Seconds{0.001};
    others[5].isAllDay = true;

    for (const auto& other : others) {
        EXPECT_NE(meeting, other);
        EXPECT_NE(hashOf(meeting), hashOf(other));
    }
    EXPECT_EQ(hashOf(meeting), hashOf(standup()));
}

TEST(ScheduledAlarm, DiffersWithTheTitleThoughTheIdentifierIsTheSame)
{
    const auto alarm = alarmFor(standup());
    auto renamed = alarm;
    renamed.title = "Renamed";

    EXPECT_EQ(alarm.id, renamed.id);
    EXPECT_NE(alarm, renamed);
}

TEST(ScheduledAlarm, DiffersInEqualityAndHashWithEachOfItsFields)
{
    const auto alarm = alarmFor(standup());
    std::vector<ScheduledAlarm> others(6, alarm);
    others[0].id = "other";
    others[1].meetingID = "other";
    others[2].title = "other";
    others[3].fireDate += Seconds{0.001};
    others[4].meetingStart += Seconds{0.001};
    others[5].calendarID = "other";

    for (const auto& other : others) {
        EXPECT_NE(alarm, other);
        EXPECT_NE(hashOf(alarm), hashOf(other));
    }
}

TEST(CalendarRef, DiffersInEqualityAndHashWithEachOfItsFields)
{
    const CalendarRef calendar{"work", "Work", "Cloud", "#FF8000"};
    std::vector<CalendarRef> others(4, calendar);
    others[0].id = "other";
    others[1].title = "other";
    others[2].accountName = "other";
    others[3].colorHex.reset();

    for (const auto& other : others) {
        EXPECT_NE(calendar, other);
        EXPECT_NE(hashOf(calendar), hashOf(other));
    }
}

TEST(CalendarRef, IsOneRecordInComposedAndDecomposedForm)
{
    const CalendarRef composed{"caf\u00e9", "Caf\u00e9", "Cloud", std::nullopt};
    const CalendarRef decomposed{"cafe\u0301", "Cafe\u0301", "Cloud", std::nullopt};

    EXPECT_EQ(composed, decomposed);
    EXPECT_EQ((std::unordered_set<CalendarRef>{composed, decomposed}.size()), 1U);
}

TEST(AlarmSettings, RingAtTheStartOfTheMeetingByDefault)
{
    const AlarmSettings settings;

    EXPECT_EQ(settings.leadTime, Seconds{0});
    EXPECT_EQ(settings.style, AlarmStyle::notificationAndWindow);
    EXPECT_TRUE(settings.ignoreAllDay);
    EXPECT_EQ(settings.soundName, Text("default"));
    EXPECT_EQ(settings.snoozeInterval, Seconds{300});
    EXPECT_TRUE(settings.raiseVolume);
    EXPECT_TRUE(settings.keepAwake);
}

TEST(TinkraConfiguration, IsOnAndMonitorsNothingByDefault)
{
    const TinkraConfiguration configuration;

    EXPECT_TRUE(configuration.masterEnabled);
    EXPECT_EQ(configuration.settings, AlarmSettings{});
    EXPECT_TRUE(configuration.monitoring.selectedCalendarIDs.empty());
}

TEST(ReconcileResult, IsANoOpExactlyWhenBothListsAreEmpty)
{
    EXPECT_TRUE(ReconcileResult{}.isNoOp());
    EXPECT_FALSE((ReconcileResult{.toAdd = {alarmFor(standup())}, .toRemove = {}}.isNoOp()));
    EXPECT_FALSE((ReconcileResult{.toAdd = {}, .toRemove = {"old#1"}}.isNoOp()));
}

TEST(ReconcileResult, ComparesItsListsInOrder)
{
    EXPECT_NE((ReconcileResult{.toAdd = {}, .toRemove = {"a", "b"}}),
        (ReconcileResult{.toAdd = {}, .toRemove = {"b", "a"}}));
}

}
}
