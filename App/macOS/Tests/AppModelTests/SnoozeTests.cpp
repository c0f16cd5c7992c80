#include "AppWorld.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace Tinkra {
namespace {

using testing::IsEmpty;

/// A test alarm rings, whose identifier is "test#1700049600"; nothing else does.
class Snooze : public testing::Test, protected AppWorld {
protected:
    void ring(Seconds snoozeInterval)
    {
        auto configuration = monitoring();
        configuration.settings.snoozeInterval = snoozeInterval;
        launch(configuration);
        loop.run(model->fireTestAlarm());
    }
};

TEST_F(Snooze, RingsAgainAfterTheIntervalWithTheSameTitleAndStart)
{
    ring(minutes(4));
    pressSnooze();
    EXPECT_FALSE(isRinging());

    pass(minutes(4) - Seconds{0.1});
    EXPECT_EQ(rings(), 1U);
    pass(Seconds{0.1});

    EXPECT_EQ(rings(), 2U);
    EXPECT_EQ(lastRing(),
        (AlarmPayload{
            "test#1700049600#snooze1700049840", "Test meeting — Calendar Murkel is working", noon}));
}

TEST_F(Snooze, ASecondOneAppendsASecondPartToTheIdentifier)
{
    ring(minutes(1));
    pressSnooze();
    pass(minutes(1));
    pressSnooze();
    pass(minutes(1));

    EXPECT_EQ(lastRing().id, "test#1700049600#snooze1700049660#snooze1700049720");
}

TEST_F(Snooze, TheReRingTimeInTheIdentifierIsCutOff)
{
    ring(Seconds{60.9});

    pressSnooze();

    EXPECT_EQ(model->alarmTaskIDs(), std::vector<Text>{"test#1700049600#snooze1700049660"});
}

TEST_F(Snooze, TheStatusTellsWholeMinutes)
{
    ring(Seconds{300});
    pressSnooze();
    EXPECT_EQ(model->statusMessage(), "Snoozed 5 min");

    AppWorld other;
    auto configuration = monitoring();
    configuration.settings.snoozeInterval = Seconds{90};
    other.launch(configuration);
    other.loop.run(other.model->fireTestAlarm());
    other.pressSnooze();
    EXPECT_EQ(other.model->statusMessage(), "Snoozed 1 min");
}

TEST_F(Snooze, AnySyncCancelsIt)
{
    ring(minutes(4));
    pressSnooze();
    sync();

    EXPECT_THAT(model->alarmTaskIDs(), IsEmpty());
    pass(hours(1));
    EXPECT_EQ(rings(), 1U);
}

TEST_F(Snooze, TheTickOfTheSameInstantDoesNotCancelIt)
{
    ring(minutes(5));
    pressSnooze();

    pass(minutes(5));

    EXPECT_EQ(rings(), 2U);
}

TEST_F(Snooze, TheTickBeforeItDoes)
{
    ring(minutes(5));
    pass(minutes(1));
    pressSnooze();

    pass(minutes(10));

    EXPECT_EQ(rings(), 1U);
}

TEST_F(Snooze, ASyncThatFailsLeavesIt)
{
    ring(minutes(4));
    pressSnooze();
    provider->failWith(std::make_exception_ptr(std::runtime_error("out of order")));
    sync();

    pass(minutes(4));

    EXPECT_EQ(rings(), 2U);
}

TEST_F(Snooze, AClockThatIsSetBackCannotStallIt)
{
    ring(minutes(4));
    pressSnooze();
    clock->setWallClock(noon - hours(10));

    pass(minutes(4));

    EXPECT_EQ(rings(), 2U);
}

TEST_F(Snooze, ArmsNoSystemNotification)
{
    ring(minutes(4));

    pressSnooze();

    EXPECT_THAT(scheduler->armedIDs(), IsEmpty());
}

TEST_F(Snooze, OneThatTheMachineSleptOverByMoreThanFiveMinutesDoesNotRing)
{
    ring(minutes(4));
    pressSnooze();

    clock->suspendMachine(minutes(9) + seconds(1));
    clock->advance(Seconds{0});

    EXPECT_EQ(rings(), 1U);
}

class HostileSnooze : public testing::TestWithParam<std::pair<double, Seconds>>, protected AppWorld { };

TEST_P(HostileSnooze, IsClampedWhereItIsUsed)
{
    const auto [stored, used] = GetParam();
    auto configuration = monitoring();
    configuration.settings.snoozeInterval = Seconds{stored};
    launch(configuration);
    loop.run(model->fireTestAlarm());

    pressSnooze();

    const auto whole = static_cast<std::int64_t>(secondsSince1970(noon + used));
    EXPECT_EQ(
        model->alarmTaskIDs(), std::vector<Text>{Text{"test#1700049600#snooze" + std::to_string(whole)}});
    EXPECT_TRUE(store->saved().empty()) << "what is stored is left as it is";
}

INSTANTIATE_TEST_SUITE_P(EachValue, HostileSnooze,
    testing::Values(std::pair(-1.0, Seconds{0}), std::pair(0.0, Seconds{0}),
        std::pair(1e18, Seconds{std::chrono::days(3653)}),
        std::pair(std::numeric_limits<double>::infinity(), Seconds{std::chrono::days(3653)}),
        std::pair(std::numeric_limits<double>::quiet_NaN(), Seconds{300})));

}
}
