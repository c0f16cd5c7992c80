#include "TinkraTestSupport/TestLoop.h"

#include "TinkraConcurrency/Continuation.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

namespace Tinkra {
namespace {

Task<int> seven()
{
    co_return 7;
}

Task<int> fail()
{
    throw std::invalid_argument("trouble");
    co_return 0;
}

Task<> forever(std::optional<Continuation<>>* slot)
{
    co_await suspend([slot](Continuation<> continuation) { *slot = std::move(continuation); });
}

TEST(TestLoop, RunsATaskToItsResult)
{
    EXPECT_EQ(run(seven()), 7);
}

TEST(TestLoop, PassesTheTasksExceptionOn)
{
    EXPECT_THROW(run(fail()), std::invalid_argument);
}

TEST(TestLoop, ReportsATaskThatGetsStuck)
{
    TestLoop loop;
    std::optional<Continuation<>> slot; // goes before the loop on which its coroutine would be destroyed

    EXPECT_THROW(loop.run(forever(&slot)), std::logic_error);
}

TEST(TestLoop, RunsAStartedTaskAsFarAsItGets)
{
    TestLoop loop;
    std::optional<Continuation<>> slot; // goes before the loop on which its coroutine would be destroyed

    const auto task = loop.start(forever(&slot));
    EXPECT_FALSE(task.isDone());

    slot->resume();
    EXPECT_FALSE(task.isDone());
    loop.drain();
    EXPECT_TRUE(task.isDone());
}

TEST(TestLoop, WaitsInRealTimeForAnotherThread)
{
    std::optional<Continuation<>> slot;
    std::thread other;
    TestLoop loop;

    loop.runInRealTime(suspend([&other](Continuation<> continuation) {
        other = std::thread([continuation] { continuation.resume(); });
    }));

    other.join();
}

}
}
