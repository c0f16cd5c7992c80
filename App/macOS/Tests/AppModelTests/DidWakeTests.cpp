#include "AppWorld.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tinkra {
namespace {

/// An alarm in ten minutes, and a machine that falls asleep before it.
class DidWake : public testing::Test, protected AppWorld {
protected:
    void launchAndSleep(Seconds past, TinkraConfiguration configuration = monitoring())
    {
        setMeetings({standup(noon + minutes(4))});
        launch(std::move(configuration));
        clock->suspendMachine(minutes(4) + past);
    }

    /// Whoever fell due during the sleep has its turn now.
    void runWhoSlept() const { clock->advance(Seconds{0}); }
};

TEST_F(DidWake, TwoMinutesAfterTheFireTimeRingsIt)
{
    launchAndSleep(minutes(2));

    wakeMachine();

    EXPECT_EQ(rings(), 1U);
    EXPECT_EQ(lastRing().title, "Stand-up");
    runWhoSlept();
    EXPECT_EQ(rings(), 1U) << "its timer is over";
}

TEST_F(DidWake, SixMinutesAfterTheFireTimeDoesNot)
{
    launchAndSleep(minutes(6));

    wakeMachine();
    runWhoSlept();

    EXPECT_EQ(rings(), 0U);
}

TEST_F(DidWake, At299SecondsRingsAndAt300And301DoesNot)
{
    for (const auto& [past, expected] : {std::pair(299, 1U), std::pair(300, 0U), std::pair(301, 0U)}) {
        AppWorld world;
        world.setMeetings({standup(noon + minutes(4))});
        world.launch();
        world.clock->suspendMachine(minutes(4) + seconds(past));

        world.wakeMachine();
        world.clock->advance(Seconds{0});

        EXPECT_EQ(world.rings(), expected) << past;
    }
}

TEST_F(DidWake, ExactlyAtTheFireTimeRings)
{
    launchAndSleep(Seconds{0});

    wakeMachine();
    runWhoSlept();

    EXPECT_EQ(rings(), 1U);
}

TEST_F(DidWake, BeforeTheFireTimeRingsNothingAndLeavesTheTimer)
{
    launchAndSleep(-seconds(1));

    wakeMachine();
    EXPECT_EQ(rings(), 0U);
    pass(seconds(1));

    EXPECT_EQ(rings(), 1U);
}

TEST_F(DidWake, IgnoresTheMasterSwitch)
{
    launchAndSleep(minutes(1));
    calls->hold(); // the sync of the setter has not come to the list
    model->setMasterEnabled(false);

    wakeMachine();

    EXPECT_EQ(rings(), 1U);
    calls->letAllGo();
    loop.drain();
    runWhoSlept();
    EXPECT_EQ(rings(), 1U);
}

TEST_F(DidWake, IgnoresTheStyle)
{
    auto configuration = monitoring();
    configuration.settings.style = AlarmStyle::notificationOnly;
    launchAndSleep(minutes(1), configuration);

    wakeMachine();

    EXPECT_EQ(rings(), 1U);
}

TEST_F(DidWake, RingsEveryMissedAlarmInTheOrderOfTheList)
{
    setMeetings({standup(noon + minutes(2), "b", "Second"), standup(noon + minutes(1), "a", "First"),
        standup(noon + hours(1), "c", "Later")});
    launch();
    clock->suspendMachine(minutes(3));

    wakeMachine();
    runWhoSlept();

    ASSERT_EQ(rings(), 2U);
    EXPECT_EQ(desktop.banners.at(0).payload.title, "First");
    EXPECT_EQ(desktop.banners.at(1).payload.title, "Second");
}

TEST_F(DidWake, ANoticeThatComesAfterTheTimersRingsNothingASecondTime)
{
    launchAndSleep(minutes(2));

    runWhoSlept();
    EXPECT_EQ(rings(), 1U);
    wakeMachine();

    EXPECT_EQ(rings(), 1U);
}

TEST_F(DidWake, AnAlarmThatRangInTimeBeforeTheSleepRingsAgain)
{
    setMeetings({standup(noon + minutes(1))});
    launch();
    pass(minutes(1));
    ASSERT_EQ(rings(), 1U);
    clock->suspendMachine(minutes(2));

    wakeMachine();

    EXPECT_EQ(rings(), 2U);
    runWhoSlept();
}

TEST_F(DidWake, ReevaluatesKeepAwake)
{
    setMeetings({standup(noon + hours(1))});
    launch();
    clock->suspendMachine(minutes(55));

    wakeMachine();

    EXPECT_TRUE(isKeptAwake());
    runWhoSlept();
}

TEST_F(DidWake, StartsNoSync)
{
    launchAndSleep(minutes(0));
    calls->clear();

    wakeMachine();

    EXPECT_THAT(calls->calls(), testing::IsEmpty());
    runWhoSlept();
}

TEST_F(DidWake, ANoticeAfterTheModelHasGoneDoesNothing)
{
    launchAndSleep(minutes(1));
    workspace->wake(); // on its way
    model.reset();
    loop.drain();

    EXPECT_EQ(rings(), 0U);
}

}
}
