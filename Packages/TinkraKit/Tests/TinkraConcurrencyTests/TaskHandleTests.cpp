#include "TinkraConcurrency/TaskHandle.h"

#include "TinkraTestSupport/Builders.h"
#include "TinkraTestSupport/TestClock.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <thread>

namespace Tinkra {
namespace {

struct World {
    TestLoop loop;
    TestClock clock{loop, noon};
};

Task<> countAfterSleep(Clock* clock, int* count, std::stop_token stop)
{
    co_await clock->sleepFor(Seconds{10}, stop);
    if (!stop.stop_requested())
        ++*count;
}

Task<> countEachTenSeconds(Clock* clock, int* count, std::stop_token stop)
{
    while (!stop.stop_requested()) {
        co_await clock->sleepFor(Seconds{10}, stop);
        if (stop.stop_requested())
            co_return;
        ++*count;
    }
}

Task<> dropOwnHandle(
    Clock* clock, std::unique_ptr<TaskHandle>* handle, bool* wasStopped, std::stop_token stop)
{
    co_await clock->sleepFor(Seconds{10}, stop);
    handle->reset();
    *wasStopped = stop.stop_requested();
}

Task<> holdWhileAsleep(Clock* clock, std::shared_ptr<int> held, std::stop_token stop)
{
    co_await clock->sleepFor(Seconds{10}, stop);
    ++*held;
}

TEST(TaskHandle, LetsItsTaskRunWhileItIsKept)
{
    World world;
    int count = 0;
    const auto handle = spawn(world.loop.executor(), std::bind_front(countAfterSleep, &world.clock, &count));

    world.clock.advance(Seconds{10});

    EXPECT_EQ(count, 1);
    EXPECT_TRUE(handle);
}

TEST(TaskHandle, CancelsItsTaskWhenItIsDropped)
{
    World world;
    int count = 0;
    {
        const auto handle =
            spawn(world.loop.executor(), std::bind_front(countAfterSleep, &world.clock, &count));
        world.loop.drain();
        EXPECT_EQ(world.clock.sleeperCount(), 1U);
    }

    EXPECT_EQ(world.clock.sleeperCount(), 0U);
    world.clock.advance(Seconds{10});
    EXPECT_EQ(count, 0);
}

TEST(TaskHandle, CancelsTheOldTaskWhenItIsReplaced)
{
    World world;
    int first = 0;
    int second = 0;
    auto handle = spawn(world.loop.executor(), std::bind_front(countAfterSleep, &world.clock, &first));
    world.loop.drain();

    handle = spawn(world.loop.executor(), std::bind_front(countAfterSleep, &world.clock, &second));
    world.clock.advance(Seconds{10});

    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
}

TEST(TaskHandle, PassesTheTaskOnWhenItIsMoved)
{
    World world;
    int count = 0;
    TaskHandle outer;
    {
        auto inner = spawn(world.loop.executor(), std::bind_front(countAfterSleep, &world.clock, &count));
        outer = std::move(inner);
    }

    world.clock.advance(Seconds{10});

    EXPECT_EQ(count, 1);
}

TEST(TaskHandle, IsEmptyAfterCancelling)
{
    World world;
    int count = 0;
    auto handle = spawn(world.loop.executor(), std::bind_front(countAfterSleep, &world.clock, &count));

    handle.cancel();

    EXPECT_FALSE(handle);
    world.clock.advance(Seconds{10});
    EXPECT_EQ(count, 0);
}

TEST(TaskHandle, EndsALoopAtItsNextQuestion)
{
    World world;
    int count = 0;
    auto handle = spawn(world.loop.executor(), std::bind_front(countEachTenSeconds, &world.clock, &count));
    world.clock.advance(Seconds{35});
    EXPECT_EQ(count, 3);

    handle.cancel();
    world.clock.advance(Seconds{100});

    EXPECT_EQ(count, 3);
}

TEST(TaskHandle, MayBeDroppedInsideItsOwnTask)
{
    World world;
    bool wasStopped = false;
    auto handle = std::make_unique<TaskHandle>();
    *handle =
        spawn(world.loop.executor(), std::bind_front(dropOwnHandle, &world.clock, &handle, &wasStopped));

    world.clock.advance(Seconds{10});

    EXPECT_TRUE(wasStopped);
    EXPECT_EQ(handle, nullptr);
}

TEST(TaskHandle, MayBeDroppedOnAnotherThread)
{
    World world;
    int count = 0;
    auto handle = spawn(world.loop.executor(), std::bind_front(countAfterSleep, &world.clock, &count));
    world.loop.drain();

    std::thread([dropped = std::move(handle)] {}).join();
    EXPECT_EQ(world.clock.sleeperCount(), 0U);
    world.clock.advance(Seconds{10});

    EXPECT_EQ(count, 0);
}

TEST(TaskHandle, FreesWhatACancelledTaskHeld)
{
    World world;
    const auto held = std::make_shared<int>(0);
    auto handle = spawn(world.loop.executor(), std::bind_front(holdWhileAsleep, &world.clock, held));
    world.loop.drain();
    EXPECT_GT(held.use_count(), 1);

    handle.cancel();
    world.loop.drain();

    EXPECT_EQ(held.use_count(), 1);
}

TEST(TaskHandle, DoesNotStartATaskThatWasCancelledBeforeItsTurnAnyFurtherThanItsFirstSleep)
{
    World world;
    int count = 0;
    auto handle = spawn(world.loop.executor(), std::bind_front(countAfterSleep, &world.clock, &count));
    handle.cancel();

    world.loop.drain();

    EXPECT_EQ(world.clock.sleeperCount(), 0U);
    EXPECT_EQ(count, 0);
}

Task<> throwAtOnce(std::stop_token)
{
    throw std::runtime_error("escaped");
    co_return;
}

TEST(TaskHandleDeathTest, EndsTheProgramWhenAnExceptionLeavesTheTask)
{
    EXPECT_DEATH(
        {
            TestLoop loop;
            const auto handle = spawn(loop.executor(), throwAtOnce);
            loop.drain();
        },
        "");
}

}
}
