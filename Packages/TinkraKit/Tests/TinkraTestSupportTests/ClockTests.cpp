#include "TinkraTestSupport/Builders.h"
#include "TinkraTestSupport/ImmediateClock.h"
#include "TinkraTestSupport/TestClock.h"
#include "TinkraTestSupport/UnimplementedClock.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace Tinkra {
namespace {

struct World {
    TestLoop loop;
    TestClock clock{loop, noon};
    std::vector<std::string> woken;
    std::stop_source stop;
};

Task<> noteAt(World* world, Instant deadline, std::string name)
{
    co_await world->clock.sleepUntil(deadline, world->stop.get_token());
    if (!world->stop.stop_requested())
        world->woken.push_back(std::move(name));
}

Task<> noteAfter(World* world, Seconds duration, std::string name)
{
    co_await world->clock.sleepFor(duration, world->stop.get_token());
    if (!world->stop.stop_requested())
        world->woken.push_back(std::move(name));
}

Task<> noteTimesOfTicks(TestClock* clock, std::vector<double>* ticks, std::stop_token stop)
{
    while (true) {
        co_await clock->sleepFor(Seconds{10}, stop);
        if (stop.stop_requested())
            co_return;
        ticks->push_back((clock->now() - noon).count());
    }
}

Task<> refreshWhenDue(World* world, std::stop_source other)
{
    co_await world->clock.sleepUntil(noon + Seconds{10}, {});
    other.request_stop();
    world->woken.emplace_back("refresh");
}

Task<> ringUnlessStopped(World* world, std::stop_token stop)
{
    co_await world->clock.sleepUntil(noon + Seconds{10}, stop);
    if (!stop.stop_requested())
        world->woken.emplace_back("ring");
}

using Names = std::vector<std::string>;

TEST(TestClock, StandsStillUntilItIsTurned)
{
    World world;
    world.loop.start(noteAfter(&world, Seconds{0.001}, "sleeper"));

    world.loop.drain();
    EXPECT_EQ(world.clock.now(), noon);
    EXPECT_TRUE(world.woken.empty());

    world.clock.advance(Seconds{0.001});
    EXPECT_EQ(world.woken, Names{"sleeper"});
}

TEST(TestClock, WakesInTheOrderOfTheDeadlinesOfBothKinds)
{
    World world;
    world.loop.start(noteAt(&world, noon + Seconds{30}, "until 30"));
    world.loop.start(noteAfter(&world, Seconds{20}, "for 20"));
    world.loop.start(noteAt(&world, noon + Seconds{10}, "until 10"));

    world.clock.advance(Seconds{60});

    EXPECT_EQ(world.woken, (Names{"until 10", "for 20", "until 30"}));
}

TEST(TestClock, WakesThoseOfOneDeadlineInTheOrderInWhichTheyLayDown)
{
    World world;
    world.loop.start(noteAfter(&world, Seconds{10}, "first"));
    world.loop.start(noteAt(&world, noon + Seconds{10}, "second"));
    world.loop.start(noteAfter(&world, Seconds{10}, "third"));

    world.clock.advance(Seconds{10});

    EXPECT_EQ(world.woken, (Names{"first", "second", "third"}));
}

TEST(TestClock, RunsALoopAtEachOfItsInstantsWithinOneTurn)
{
    World world;
    std::vector<double> ticks;
    world.loop.start(noteTimesOfTicks(&world.clock, &ticks, world.stop.get_token()));

    world.clock.advance(Seconds{35});

    EXPECT_EQ(ticks, (std::vector<double>{10, 20, 30}));
    EXPECT_EQ(world.clock.now(), noon + Seconds{35});
    world.stop.request_stop();
}

TEST(TestClock, RunsWhatIsReadyBeforeTimePasses)
{
    World world;
    asio::co_spawn(world.loop.executor(), noteAfter(&world, Seconds{10}, "sleeper"),
        [](const std::exception_ptr&) {}); // not yet asleep: the loop was not turned

    world.clock.advance(Seconds{10});

    EXPECT_EQ(world.woken, Names{"sleeper"});
}

TEST(TestClock, FollowsTheWallClockWhenItIsSetForward)
{
    World world;
    world.loop.start(noteAt(&world, noon + Seconds{3600}, "until"));
    world.loop.start(noteAfter(&world, Seconds{3600}, "for"));

    world.clock.setWallClock(noon + Seconds{3600});

    EXPECT_EQ(world.woken, Names{"until"});
    world.clock.advance(Seconds{3600});
    EXPECT_EQ(world.woken, (Names{"until", "for"}));
}

TEST(TestClock, FollowsTheWallClockWhenItIsSetBack)
{
    World world;
    world.loop.start(noteAt(&world, noon + Seconds{60}, "until"));
    world.loop.start(noteAfter(&world, Seconds{60}, "for"));

    world.clock.setWallClock(noon - Seconds{3600});
    world.clock.advance(Seconds{60});
    EXPECT_EQ(world.woken, Names{"for"});

    world.clock.advance(Seconds{3600});
    EXPECT_EQ(world.woken, (Names{"for", "until"}));
}

TEST(TestClock, RunsWhatFellDueDuringASuspendOnlyWhenTimeGoesOn)
{
    World world;
    world.loop.start(noteAt(&world, noon + Seconds{20}, "until"));
    world.loop.start(noteAfter(&world, Seconds{10}, "for"));

    world.clock.suspendMachine(Seconds{3600});
    world.loop.drain();
    EXPECT_TRUE(world.woken.empty());
    EXPECT_EQ(world.clock.now(), noon + Seconds{3600});

    world.clock.advance(Seconds{0});
    EXPECT_EQ(world.woken, (Names{"for", "until"}));
    EXPECT_EQ(world.clock.now(), noon + Seconds{3600});
}

TEST(TestClock, EndsASleepThatIsOverAlreadyAtOnce)
{
    World world;

    world.loop.run(noteAt(&world, noon, "now"));
    world.loop.run(noteAt(&world, noon - Seconds{1}, "past"));
    world.loop.run(noteAfter(&world, Seconds{0}, "nothing"));
    world.loop.run(noteAfter(&world, Seconds{-1}, "negative"));
    world.loop.run(noteAt(&world, instantAt(std::numeric_limits<double>::quiet_NaN()), "no number"));

    EXPECT_EQ(world.woken.size(), 5U);
}

TEST(TestClock, ADueSleeperRunsItsCheckBeforeARefreshThatLayDownLaterCancelsIt)
{
    World world;
    std::stop_source stopRinging;
    world.loop.start(ringUnlessStopped(&world, stopRinging.get_token()));
    world.loop.start(refreshWhenDue(&world, stopRinging));

    world.clock.advance(Seconds{10});

    EXPECT_EQ(world.woken, (Names{"ring", "refresh"}));
}

TEST(TestClock, ACancellationBeforeTheDeadlineIsFinal)
{
    World world;
    std::stop_source stopRinging;
    world.loop.start(ringUnlessStopped(&world, stopRinging.get_token()));

    world.clock.advance(Seconds{9.999});
    stopRinging.request_stop();
    world.clock.advance(Seconds{10});

    EXPECT_TRUE(world.woken.empty());
}

TEST(TestClock, ACancellationBetweenTheResumeOfTheMachineAndTheWakingIsFinal)
{
    World world;
    std::stop_source stopRinging;
    world.loop.start(ringUnlessStopped(&world, stopRinging.get_token()));

    world.clock.suspendMachine(Seconds{600});
    stopRinging.request_stop();
    world.clock.advance(Seconds{0});

    EXPECT_TRUE(world.woken.empty());
}

TEST(TestClock, FailsTheTestWhenSomebodyIsLeftAsleep)
{
    TestLoop loop;
    EXPECT_NONFATAL_FAILURE(
        {
            TestClock clock(loop, noon);
            loop.start(clock.sleepFor(Seconds{10}, {}));
        },
        "1 task is still asleep");
    loop.drain();
}

TEST(TestClock, IsContentWhenAStoppedSleeperHasLeft)
{
    TestLoop loop;
    std::stop_source stop;
    const TestClock clock(loop, noon);
    loop.start(const_cast<TestClock&>(clock).sleepFor(Seconds{10}, stop.get_token()));

    stop.request_stop();

    clock.expectNobodyAsleep();
}

TEST(ImmediateClock, SquashesEverySleepToNothing)
{
    ImmediateClock clock(noon);

    run(clock.sleepFor(Seconds{300}, {}));
    EXPECT_EQ(clock.now(), noon + Seconds{300});
    run(clock.sleepUntil(noon + Seconds{1000}, {}));
    EXPECT_EQ(clock.now(), noon + Seconds{1000});
}

TEST(ImmediateClock, NeverGoesBack)
{
    ImmediateClock clock(noon);

    run(clock.sleepUntil(noon - Seconds{10}, {}));
    run(clock.sleepFor(Seconds{-10}, {}));

    EXPECT_EQ(clock.now(), noon);
}

TEST(UnimplementedClock, FailsTheTestOfWhoeverUsesIt)
{
    EXPECT_NONFATAL_FAILURE(UnimplementedClock().now(), "now() was asked");
    EXPECT_NONFATAL_FAILURE(
        {
            UnimplementedClock clock;
            run(clock.sleepUntil(noon, {}));
        },
        "sleepUntil() was called");
    EXPECT_NONFATAL_FAILURE(
        {
            UnimplementedClock clock;
            run(clock.sleepFor(Seconds{1}, {}));
        },
        "sleepFor() was called");
}

}
}
