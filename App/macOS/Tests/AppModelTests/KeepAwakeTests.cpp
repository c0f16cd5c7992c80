#include "AppWorld.h"

#include <gtest/gtest.h>

namespace Tinkra {
namespace {

using System::FakePowerAssertions;

class KeepAwake : public testing::Test, protected AppWorld { };

TEST_F(KeepAwake, AnAlarmInSevenMinutesKeepsTheMachineAwakeAndOneInNineDoesNot)
{
    setMeetings({standup(noon + minutes(7))});
    launch();
    EXPECT_TRUE(isKeptAwake());

    AppWorld other;
    other.setMeetings({standup(noon + minutes(9))});
    other.launch();
    EXPECT_FALSE(other.isKeptAwake());
}

TEST_F(KeepAwake, AnAlarmExactly480SecondsAheadCountsWhateverTheLead)
{
    setMeetings({standup(noon + seconds(480))});
    launch();
    EXPECT_TRUE(isKeptAwake());
    EXPECT_EQ(AppModel::keepAwakeLead, Seconds{300}) << "declared, and not consulted";

    AppWorld other;
    other.setMeetings({standup(noon + Seconds{480.001})});
    other.launch();
    EXPECT_FALSE(other.isKeptAwake());
}

TEST_F(KeepAwake, TheAssertionIsTheProductsOwn)
{
    setMeetings({standup(noon + minutes(7))});

    launch();

    EXPECT_EQ(power->held.begin()->second,
        (FakePowerAssertions::Assertion{"PreventUserIdleSystemSleep", 255, "Tinkra alarm is imminent"}));
}

TEST_F(KeepAwake, ItBeginsAndEndsWithinThirtySecondsOfTheWindow)
{
    setMeetings({standup(noon + minutes(9))});
    launch();
    ASSERT_FALSE(isKeptAwake());

    pass(minutes(1));
    EXPECT_TRUE(isKeptAwake());
    pass(minutes(8) - seconds(1));
    EXPECT_TRUE(isKeptAwake());
    pass(seconds(31));

    EXPECT_FALSE(isKeptAwake());
}

TEST_F(KeepAwake, SwitchedOffWhileHeldIsReleasedByTheSyncOfTheSetter)
{
    setMeetings({standup(noon + minutes(7))});
    launch();

    model->setKeepAwake(false);
    loop.drain();

    EXPECT_FALSE(isKeptAwake());
}

TEST_F(KeepAwake, PausedWhileHeldIsReleasedByTheNextEvaluationAndNotByTheSync)
{
    setMeetings({standup(noon + minutes(7))});
    launch();

    model->setMasterEnabled(false);
    loop.drain();
    EXPECT_TRUE(isKeptAwake()) << "the paused road does not evaluate";
    pass(seconds(30));

    EXPECT_FALSE(isKeptAwake());
}

TEST_F(KeepAwake, TheLastCalendarDeselectedWhileHeldIsReleasedByTheNextEvaluation)
{
    setMeetings({standup(noon + minutes(7))});
    launch();

    model->toggleCalendar("work");
    loop.drain();
    EXPECT_TRUE(isKeptAwake());
    pass(seconds(30));

    EXPECT_FALSE(isKeptAwake());
}

TEST_F(KeepAwake, ARefusalIsTriedAgainWithTheNextEvaluation)
{
    power->refuses = true;
    setMeetings({standup(noon + minutes(7))});
    launch();
    EXPECT_EQ(power->attempts, 1);
    EXPECT_EQ(model->statusMessage(), "Next: Stand-up") << "a refusal is silent";
    power->refuses = false;

    pass(seconds(30));

    EXPECT_TRUE(isKeptAwake());
}

TEST_F(KeepAwake, TheStyleOfNotificationsAloneKeepsAwakeToo)
{
    auto configuration = monitoring();
    configuration.settings.style = AlarmStyle::notificationOnly;
    setMeetings({standup(noon + minutes(7))});

    launch(configuration);

    EXPECT_TRUE(isKeptAwake());
}

TEST(SleepGuard, HoldsOneAssertionHoweverOftenItIsActivated)
{
    const auto power = std::make_shared<FakePowerAssertions>();
    SleepGuard guard(power);

    guard.setActive(true, "first");
    guard.setActive(true, "second");

    ASSERT_EQ(power->held.size(), 1U);
    EXPECT_EQ(power->attempts, 1);
    EXPECT_EQ(power->held.begin()->second.name, "first");
}

TEST(SleepGuard, DeactivatedWithNoneHeldDoesNothing)
{
    const auto power = std::make_shared<FakePowerAssertions>();
    SleepGuard guard(power);

    guard.setActive(false);

    EXPECT_EQ(power->attempts, 0);
    EXPECT_FALSE(guard.isActive());
}

TEST(SleepGuard, MayHoldAgainAfterAReleaseAndAfterARefusal)
{
    const auto power = std::make_shared<FakePowerAssertions>();
    SleepGuard guard(power);
    guard.setActive(true, "a");
    guard.setActive(false);
    EXPECT_TRUE(power->held.empty());

    power->refuses = true;
    guard.setActive(true, "b");
    EXPECT_FALSE(guard.isActive());
    power->refuses = false;
    guard.setActive(true, "c");

    EXPECT_TRUE(guard.isActive());
    EXPECT_EQ(power->held.begin()->second.name, "c");
}

TEST(SleepGuard, LeavesWhatItHoldsToTheProcessWhenItGoes)
{
    const auto power = std::make_shared<FakePowerAssertions>();
    SleepGuard(power).setActive(true, "a");

    EXPECT_EQ(power->held.size(), 1U);
}

}
}
