#include "TinkraConcurrency/Continuation.h"

#include "TinkraTestSupport/TestLoop.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <thread>

namespace Tinkra {
namespace {

Task<std::string> waitForText(std::optional<Continuation<std::string>>* slot)
{
    co_return co_await suspend<std::string>(
        [slot](Continuation<std::string> continuation) { *slot = std::move(continuation); });
}

Task<> waitFor(std::optional<Continuation<>>* slot)
{
    co_await suspend([slot](Continuation<> continuation) { *slot = std::move(continuation); });
}

Task<std::thread::id> threadAfterWaiting(std::optional<Continuation<>>* slot)
{
    co_await suspend([slot](Continuation<> continuation) { *slot = std::move(continuation); });
    co_return std::this_thread::get_id();
}

Task<> holdWhileWaiting(std::shared_ptr<int> held, std::optional<Continuation<>>* slot)
{
    co_await suspend([slot](Continuation<> continuation) { *slot = std::move(continuation); });
    ++*held;
}

TEST(Continuation, GivesItsValueToTheCoroutine)
{
    TestLoop loop;
    std::optional<Continuation<std::string>> slot;
    const auto task = loop.start(waitForText(&slot));
    ASSERT_FALSE(task.isDone());

    slot->resume(std::string("answer"));
    loop.drain();

    EXPECT_EQ(task.result(), "answer");
}

TEST(Continuation, ThrowsItsErrorInTheCoroutine)
{
    TestLoop loop;
    std::optional<Continuation<std::string>> slot;
    const auto task = loop.start(waitForText(&slot));

    slot->fail(std::make_exception_ptr(std::runtime_error("trouble")));
    loop.drain();

    EXPECT_THROW(task.result(), std::runtime_error);
}

TEST(Continuation, CountsTheFirstAnswerAlone)
{
    TestLoop loop;
    std::optional<Continuation<std::string>> slot;
    const auto task = loop.start(waitForText(&slot));

    slot->resume(std::string("first"));
    slot->resume(std::string("second"));
    slot->fail(std::make_exception_ptr(std::runtime_error("late")));
    loop.drain();

    EXPECT_EQ(task.result(), "first");
}

TEST(Continuation, ResumesOnTheCoroutinesOwnExecutorWhoeverCalls)
{
    TestLoop loop;
    std::optional<Continuation<>> slot;
    const auto task = loop.start(threadAfterWaiting(&slot));

    std::thread([&slot] { slot->resume(); }).join();
    EXPECT_FALSE(task.isDone());
    loop.drain();

    EXPECT_EQ(task.result(), std::this_thread::get_id());
}

TEST(Continuation, AnsweredBeforeItsStartReturnsStillResumesLater)
{
    TestLoop loop;
    bool hasStartReturned = false;

    loop.run(suspend([&hasStartReturned](const Continuation<>& continuation) {
        continuation.resume();
        hasStartReturned = true;
    }));

    EXPECT_TRUE(hasStartReturned);
}

TEST(Continuation, DroppedWithoutAnAnswerDestroysTheCoroutine)
{
    TestLoop loop;
    const auto held = std::make_shared<int>(0);
    std::optional<Continuation<>> slot;
    const auto task = loop.start(holdWhileWaiting(held, &slot));
    EXPECT_EQ(held.use_count(), 2);

    slot.reset();
    loop.drain();

    EXPECT_FALSE(task.isDone());
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_EQ(*held, 0);
}

TEST(Continuation, LetsOneOfManyThreadsWin)
{
    for (int round = 0; round < 200; ++round) {
        TestLoop loop;
        std::optional<Continuation<>> slot;
        const auto task = loop.start(waitFor(&slot));

        std::thread left([continuation = *slot] { continuation.resume(); });
        std::thread right([continuation = *slot] { continuation.resume(); });
        left.join();
        right.join();
        loop.drain();

        EXPECT_TRUE(task.isDone());
    }
}

}
}
