#include "AppWorld.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tinkra {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Property = AppModel::Property;

std::exception_ptr trouble(const char* text)
{
    return std::make_exception_ptr(std::runtime_error(text));
}

class Refresh : public testing::Test, protected AppWorld { };

TEST_F(Refresh, AsksForFourteenDaysWhereTheServiceAsksForThirty)
{
    launch();

    const auto queries = provider->queries();
    ASSERT_EQ(queries.size(), 2U);
    EXPECT_EQ(queries[0].to - queries[0].from, Seconds{2'592'000});
    EXPECT_EQ(queries[1].to - queries[1].from, Seconds{1'209'600});
    EXPECT_EQ(queries[1].from, noon);
    EXPECT_EQ(queries[1].in, CalendarIDs{"work"});
}

TEST_F(Refresh, OfThirtyAlarmsTheFirst25AreUpcoming)
{
    std::vector<Meeting> meetings;
    for (int i = 30; i > 0; --i)
        meetings.push_back(standup(noon + hours(i), std::to_string(i)));
    setMeetings(meetings);

    launch();

    ASSERT_EQ(model->upcoming().size(), 25U);
    EXPECT_EQ(model->upcoming().front().meetingID, "1");
    EXPECT_EQ(model->upcoming().back().meetingID, "25");
    EXPECT_EQ(scheduler->armedIDs().size(), 30U);
}

TEST_F(Refresh, MasterSwitchOffEmptiesUpcomingCancelsEveryTimerAndSnoozeAndResetsTheWakeFile)
{
    setMeetings({standup(noon + minutes(1)), standup(noon + hours(1), "later")});
    launch();
    pass(minutes(1));
    pressSnooze();
    ASSERT_EQ(model->alarmTaskIDs().size(), 3U);
    ASSERT_NE(wakeFile(), "0");

    model->setMasterEnabled(false);
    loop.drain();

    EXPECT_THAT(model->upcoming(), IsEmpty());
    EXPECT_THAT(model->alarmTaskIDs(), IsEmpty());
    EXPECT_EQ(wakeFile(), "0");
    EXPECT_EQ(clock->sleeperCount(), 2U) << "the two loops alone";
    pass(hours(2));
    EXPECT_EQ(rings(), 1U);
}

TEST_F(Refresh, NoCalendarSelectedTakesTheSameRoadAsTheMasterSwitchOff)
{
    setMeetings({standup(noon + hours(1))});
    launch();

    model->toggleCalendar("work");
    loop.drain();

    EXPECT_THAT(model->upcoming(), IsEmpty());
    EXPECT_THAT(model->alarmTaskIDs(), IsEmpty());
    EXPECT_EQ(wakeFile(), "0");
    EXPECT_EQ(model->statusMessage(), "No calendars selected");
}

TEST_F(Refresh, ASyncThatFailsKeepsUpcomingTimersStatusOfTheListAndLastSync)
{
    setMeetings({standup(noon + minutes(10))});
    launch();
    provider->failWith(trouble("out of order"));

    pass(minutes(5)); // the tick

    EXPECT_EQ(model->statusMessage(), "Sync failed: out of order");
    EXPECT_EQ(model->upcoming().size(), 1U);
    EXPECT_EQ(model->alarmTaskIDs().size(), 1U);
    EXPECT_EQ(model->lastSync(), noon);
    pass(minutes(5));
    EXPECT_EQ(rings(), 1U);
}

TEST_F(Refresh, AnErrorThatIsNoStandardExceptionIsToldToo)
{
    launch();
    provider->failWith(std::make_exception_ptr(42));

    sync();

    EXPECT_EQ(model->statusMessage(), "Sync failed: unknown error");
}

TEST_F(Refresh, AnAlarmThatCannotBeArmedIsNamedAndTriedAgainWithTheNextPass)
{
    launch();
    setMeetings({standup(noon + hours(1)), standup(noon + hours(2), "later")});
    scheduler->failOn(alarmFor(standup(noon + hours(1))).id, trouble("no room for \"Stand-up\""));
    for (int passes = 0; passes < 5; ++passes) {
        sync();
        EXPECT_EQ(model->statusMessage(), "Sync failed: no room for \"Stand-up\"");
    }

    scheduler->failNever();
    pass(minutes(5));

    EXPECT_EQ(scheduler->armedIDs().size(), 2U);
    EXPECT_EQ(model->statusMessage(), "Next: Stand-up");
}

TEST_F(Refresh, ASecondQueryThatFailsEmptiesUpcomingAndStillMovesLastSync)
{
    setMeetings({standup(noon + minutes(10))});
    launch();
    pass(minutes(1));
    calls->hold();
    const auto syncing = loop.start(model->syncNow());
    while (calls->waiting() != std::vector<std::string>{"meetings"} || model->lastSync() == noon) {
        ASSERT_FALSE(calls->waiting().empty());
        calls->letGo();
        loop.drain();
    }

    provider->failWith(trouble("gone in between"));
    calls->letAllGo();
    loop.drain();

    EXPECT_TRUE(syncing.isDone());
    EXPECT_EQ(model->lastSync(), noon + minutes(1));
    EXPECT_THAT(model->upcoming(), IsEmpty());
    EXPECT_THAT(model->alarmTaskIDs(), IsEmpty());
    EXPECT_EQ(model->statusMessage(), "Watching 1 calendar(s)");
    EXPECT_EQ(wakeFile(), "0");
}

TEST_F(Refresh, TheFirstPeriodicSyncComesFiveMinutesAfterTheStartAndThenEveryFive)
{
    launch();
    calls->clear();

    pass(Seconds{299.9});
    EXPECT_EQ(calls->count("scheduledAlarmIDs"), 0U);
    pass(Seconds{0.1});
    EXPECT_EQ(calls->count("scheduledAlarmIDs"), 1U);
    EXPECT_EQ(model->lastSync(), noon + minutes(5));
    pass(minutes(5));
    EXPECT_EQ(calls->count("scheduledAlarmIDs"), 2U);
}

TEST_F(Refresh, TheTickGoesOnAfterASyncThatFailed)
{
    launch();
    provider->failWith(trouble("out of order"));
    pass(minutes(5));
    provider->failWith(nullptr);

    pass(minutes(5));

    EXPECT_EQ(model->statusMessage(), "Watching 1 calendar(s)");
}

TEST_F(Refresh, AClockThatIsSetBackDoesNotStallTheTick)
{
    launch();
    calls->clear();
    clock->setWallClock(noon - hours(48));

    pass(minutes(5));

    EXPECT_EQ(calls->count("scheduledAlarmIDs"), 1U);
}

TEST_F(Refresh, OfOverlappingSyncsTheLastRefreshToEndWins)
{
    launch();
    calls->hold();
    const auto first = loop.start(model->syncNow());
    const auto second = loop.start(model->syncNow());
    // Let everything go but the two queries of the upcoming lists.
    for (int i = 0; i < 6; ++i) {
        calls->letGo();
        loop.drain();
    }
    ASSERT_THAT(calls->waiting(), ElementsAre("meetings", "meetings"));

    setMeetings({standup(noon + hours(1), "a", "Second's")});
    calls->letGo(1);
    loop.drain();
    EXPECT_EQ(model->statusMessage(), "Next: Second's");
    setMeetings({standup(noon + hours(1), "a", "First's")});
    calls->letGo();
    loop.drain();

    EXPECT_TRUE(first.isDone() && second.isDone());
    EXPECT_EQ(model->upcoming().at(0).title, "First's");
    EXPECT_EQ(model->alarmTaskIDs().size(), 1U);
    calls->letAllGo();
}

TEST_F(Refresh, ASettingChangedWhileMeetingsAreFetchedAlreadyCounts)
{
    setMeetings({standup(noon + hours(1))});
    makeModel();
    calls->hold();
    const auto syncing = loop.start(model->syncNow());
    while (provider->queries().size() < 2) {
        calls->letGo();
        loop.drain();
    }

    model->setLeadTime(600);
    calls->letGo();
    loop.drain();

    EXPECT_EQ(model->upcoming().at(0).fireDate, noon + minutes(50));
    calls->letAllGo();
    loop.drain();
}

}
}
