#include "AppWorld.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tinkra {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TinkraConfiguration withStyle(AlarmStyle style)
{
    auto configuration = monitoring();
    configuration.settings.style = style;
    return configuration;
}

class AlarmTimers : public testing::Test, protected AppWorld { };

TEST_F(AlarmTimers, AnAlarmInTenSecondsRingsTheBannerAfterTenSeconds)
{
    setMeetings({standup(noon + seconds(10))});
    launch();

    pass(Seconds{9.9});
    EXPECT_EQ(rings(), 0U);
    pass(Seconds{0.1});

    EXPECT_EQ(rings(), 1U);
    EXPECT_EQ(
        lastRing(), (AlarmPayload{alarmFor(standup(noon + seconds(10))).id, "Stand-up", noon + seconds(10)}));
}

TEST_F(AlarmTimers, WithTheStyleOfNotificationsAloneNothingRingsInTheApplication)
{
    setMeetings({standup(noon + seconds(10))});
    launch(withStyle(AlarmStyle::notificationOnly));

    pass(minutes(1));

    EXPECT_EQ(rings(), 0U);
    EXPECT_EQ(scheduler->armedIDs().size(), 1U);
}

TEST_F(AlarmTimers, AnAlarmExactlyADayAheadGetsItsTimerOnlyWhenItHasComeIntoTheWindow)
{
    setMeetings({standup(noon + hours(24))});
    launch();
    EXPECT_THAT(model->alarmTaskIDs(), IsEmpty());

    pass(minutes(5)); // the tick

    EXPECT_EQ(model->alarmTaskIDs().size(), 1U);
    pass(hours(24) - minutes(5));
    EXPECT_EQ(rings(), 1U);
}

TEST_F(AlarmTimers, AnAlarmJustWithinADayGetsItsTimerAtOnce)
{
    setMeetings({standup(noon + hours(24) - Seconds{0.001})});

    launch();

    EXPECT_EQ(model->alarmTaskIDs().size(), 1U);
}

TEST_F(AlarmTimers, AnAlarmWhoseTimeIsExactlyNowGetsNone)
{
    setMeetings({standup(noon)});

    launch();

    EXPECT_THAT(model->alarmTaskIDs(), IsEmpty());
    pass(minutes(1));
    EXPECT_EQ(rings(), 0U);
}

TEST_F(AlarmTimers, OneThatHasGoneOffStaysInTheListUntilTheNextRebuild)
{
    setMeetings({standup(noon + seconds(10)), standup(noon + hours(1), "later")});
    launch();

    pass(minutes(1));
    EXPECT_EQ(model->alarmTaskIDs().size(), 2U);
    sync();

    EXPECT_THAT(model->alarmTaskIDs(), ElementsAre(alarmFor(standup(noon + hours(1), "later")).id));
}

TEST_F(AlarmTimers, AnAlarmMovedInTimeLeavesNoSecondTimer)
{
    setMeetings({standup(noon + minutes(2))});
    launch();
    setMeetings({standup(noon + minutes(4))});
    calendarsChange();

    pass(minutes(3));
    EXPECT_EQ(rings(), 0U);
    pass(minutes(1));
    EXPECT_EQ(rings(), 1U);
}

TEST_F(AlarmTimers, ARefreshAMomentBeforeAtAndAMomentAfterTheFireTimeStillRingsOnce)
{
    for (const double offset : {-0.001, 0.0, 0.001}) {
        AppWorld world;
        world.setMeetings({standup(noon + minutes(1))});
        world.launch();

        world.pass(minutes(1) + Seconds{offset});
        world.sync();
        world.pass(minutes(1));

        EXPECT_EQ(world.rings(), 1U) << offset;
    }
}

TEST_F(AlarmTimers, AnAlarmThatFellDueWhileTheLoopWasBlockedRingsBeforeTheRefreshThatWaitsBesideIt)
{
    setMeetings({standup(noon + minutes(1))});
    launch();
    pass(minutes(1) - Seconds{0.001});
    calls->hold();
    const auto syncing = loop.start(model->syncNow());
    while (model->lastSync() == noon) {
        calls->letGo();
        loop.drain();
    }
    ASSERT_THAT(calls->waiting(), ElementsAre("meetings"));

    clock->suspendMachine(seconds(2)); // nobody runs
    calls->letAllGo();
    loop.drain(); // the refresh resumes first

    EXPECT_TRUE(syncing.isDone());
    EXPECT_EQ(rings(), 1U);
    pass(Seconds{0});
    EXPECT_EQ(rings(), 1U) << "its timer is gone";
}

TEST_F(AlarmTimers, ARefreshAtTheFireTimeRingsNothingWhenPausedOrForNotificationsAlone)
{
    for (const bool pauses : {true, false}) {
        AppWorld world;
        world.setMeetings({standup(noon + minutes(1))});
        world.launch();
        world.pass(minutes(1) - Seconds{0.001});
        world.clock->suspendMachine(seconds(2));

        if (pauses)
            world.model->setMasterEnabled(false);
        else
            world.model->setStyle(AlarmStyle::notificationOnly);
        world.loop.drain();
        world.pass(minutes(1));

        EXPECT_EQ(world.rings(), 0U) << (pauses ? "paused" : "notifications alone");
    }
}

TEST_F(AlarmTimers, AfterACancellationNothingRingsThoughTheTimeHasCome)
{
    setMeetings({standup(noon + minutes(1))});
    launch();
    setMeetings({});
    calendarsChange();

    pass(minutes(2));

    EXPECT_EQ(rings(), 0U);
}

TEST_F(AlarmTimers, AtEqualInstantsTheAlarmGoesBeforeTheTick)
{
    // The tick lies down before the alarm that is found between two ticks, and both are due at once.
    launch();
    pass(minutes(1));
    setMeetings({standup(noon + minutes(5))});
    calendarsChange();
    ASSERT_EQ(model->alarmTaskIDs().size(), 1U);
    calls->clear();
    std::vector<std::string> order;
    const auto watching = model->observe([&](AppModel::Property property) {
        if (property == AppModel::Property::lastSync)
            order.push_back(rings() == 1 ? "rung before the sync" : "synced first");
    });

    pass(minutes(4));

    EXPECT_THAT(order, ElementsAre("rung before the sync"));
    EXPECT_EQ(rings(), 1U);
}

TEST_F(AlarmTimers, AlarmsOfEqualTimeRingInTheOrderOfTheList)
{
    setMeetings({standup(noon + minutes(1), "a", "First"), standup(noon + minutes(1), "b", "Second")});
    launch();

    pass(minutes(1));

    ASSERT_EQ(rings(), 2U);
    EXPECT_EQ(desktop.banners.at(0).payload.title, "First");
    EXPECT_EQ(desktop.banners.at(1).payload.title, "Second");
    EXPECT_EQ(desktop.sounds->playing, 1) << "one rings at a time";
}

TEST_F(AlarmTimers, AClockThatJumpsForwardOverTheFireTimeRingsAtOnce)
{
    setMeetings({standup(noon + hours(1))});
    launch();

    clock->setWallClock(noon + hours(1) + seconds(10));

    EXPECT_EQ(rings(), 1U);
}

TEST_F(AlarmTimers, AClockThatJumpsBackRingsWhenTheWallClockReachesTheFireTime)
{
    setMeetings({standup(noon + minutes(2))});
    launch();
    clock->setWallClock(noon - minutes(1));

    pass(minutes(2));
    EXPECT_EQ(rings(), 0U) << "not at the old moment";
    pass(minutes(1));

    EXPECT_EQ(rings(), 1U);
}

TEST_F(AlarmTimers, OneThatIsMoreThanFiveMinutesLateNeverRings)
{
    setMeetings({standup(noon + minutes(1))});
    launch();

    clock->suspendMachine(minutes(6) + Seconds{0.1});
    pass(minutes(1));

    EXPECT_EQ(rings(), 0U);
}

TEST_F(AlarmTimers, OneThatIsLessThanFiveMinutesLateRingsThoughNobodyTellsOfTheWake)
{
    setMeetings({standup(noon + minutes(1))});
    launch();

    clock->suspendMachine(minutes(5));
    pass(Seconds{0});

    EXPECT_EQ(rings(), 1U);
}

TEST_F(AlarmTimers, AProcessThatStoodStillCatchesUpInOrderWithoutDuplicates)
{
    setMeetings({standup(noon + seconds(20), "a", "First"), standup(noon + seconds(40), "b", "Second")});
    launch();

    clock->suspendMachine(minutes(1));
    sync();
    pass(minutes(1));

    ASSERT_EQ(rings(), 2U);
    EXPECT_EQ(desktop.banners.at(0).payload.title, "First");
    EXPECT_EQ(desktop.banners.at(1).payload.title, "Second");
}

class FarAlarm : public testing::TestWithParam<int>, protected AppWorld { };

TEST_P(FarAlarm, RingsAtItsTime)
{
    const auto start = noon + std::chrono::days(GetParam());
    setMeetings({standup(start)});
    launch();

    pass(std::chrono::days(GetParam()) - seconds(1));
    EXPECT_EQ(rings(), 0U);
    pass(seconds(1));

    EXPECT_EQ(rings(), 1U);
}

INSTANTIATE_TEST_SUITE_P(DaysAhead, FarAlarm, testing::Values(1, 24, 25, 30));

TEST_F(AlarmTimers, DoNothingOnceTheModelIsGone)
{
    setMeetings({standup(noon + minutes(1))});
    launch();

    quit();
    pass(minutes(2));

    EXPECT_EQ(rings(), 0U);
}

TEST_F(AlarmTimers, DismissingClosesTheBannerAndNothingRingsAgain)
{
    setMeetings({standup(noon + minutes(1))});
    launch();
    pass(minutes(1));
    ASSERT_TRUE(isRinging());

    pressDismiss();
    EXPECT_FALSE(isRinging());
    pass(hours(1));

    EXPECT_EQ(rings(), 1U);
}

TEST_F(AlarmTimers, AnApplicationThatStartsAfterTheFireTimeDoesNotRing)
{
    setMeetings({standup(noon - seconds(10))});

    launch();
    pass(minutes(1));

    EXPECT_EQ(rings(), 0U);
}

}
}
