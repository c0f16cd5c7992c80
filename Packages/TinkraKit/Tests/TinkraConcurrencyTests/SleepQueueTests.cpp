#include "TinkraConcurrency/SleepQueue.h"

#include "TinkraTestSupport/TestLoop.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace Tinkra {
namespace {

Task<> sleepAndNote(SleepQueue* queue, double deadline, std::string name, std::vector<std::string>* woken)
{
    co_await queue->sleep(deadline, {});
    woken->push_back(std::move(name));
}

TEST(SleepQueue, WakesByDeadlineAndThenInTheOrderOfGoingToSleep)
{
    TestLoop loop;
    SleepQueue queue;
    std::vector<std::string> woken;
    loop.start(sleepAndNote(&queue, 2, "late", &woken));
    loop.start(sleepAndNote(&queue, 1, "early", &woken));
    loop.start(sleepAndNote(&queue, 1, "early too", &woken));

    while (queue.wakeFirstDue(2)) { }
    loop.drain();

    EXPECT_EQ(woken, (std::vector<std::string>{"early", "early too", "late"}));
    EXPECT_EQ(queue.count(), 0U);
}

TEST(SleepQueue, WakesNobodyBeforeTheDeadline)
{
    TestLoop loop;
    SleepQueue queue;
    std::vector<std::string> woken;
    loop.start(sleepAndNote(&queue, 2, "sleeper", &woken));

    EXPECT_FALSE(queue.wakeFirstDue(1.999));
    loop.drain();
    EXPECT_TRUE(woken.empty());

    EXPECT_TRUE(queue.wakeFirstDue(2));
    loop.drain();
    EXPECT_EQ(woken.size(), 1U);
}

TEST(SleepQueue, TellsWhenSomebodyLiesDownBeforeAllOthers)
{
    TestLoop loop;
    int changes = 0;
    SleepQueue queue([&changes] { ++changes; });
    std::vector<std::string> woken;

    loop.start(sleepAndNote(&queue, 5, "first", &woken));
    EXPECT_EQ(changes, 1);
    loop.start(sleepAndNote(&queue, 7, "behind", &woken));
    EXPECT_EQ(changes, 1);
    loop.start(sleepAndNote(&queue, 3, "before", &woken));
    EXPECT_EQ(changes, 2);

    EXPECT_EQ(queue.earliest()->deadline, 3);
}

TEST(SleepQueue, LetsAStoppedSleeperLeaveAtOnce)
{
    TestLoop loop;
    SleepQueue queue;
    std::stop_source stop;
    const auto task = loop.start(queue.sleep(5, stop.get_token()));
    ASSERT_EQ(queue.count(), 1U);

    stop.request_stop();

    EXPECT_EQ(queue.count(), 0U);
    loop.drain();
    EXPECT_TRUE(task.isDone());
}

TEST(SleepQueue, DoesNotLieDownWithAStoppedToken)
{
    TestLoop loop;
    SleepQueue queue;
    std::stop_source stop;
    stop.request_stop();

    loop.run(queue.sleep(5, stop.get_token()));

    EXPECT_EQ(queue.count(), 0U);
}

TEST(SleepQueue, SurvivesStopsThatRaceWithWaking)
{
    for (int round = 0; round < 500; ++round) {
        TestLoop loop;
        SleepQueue queue;
        std::stop_source stop;
        const auto task = loop.start(queue.sleep(1, stop.get_token()));

        std::thread stopping([&stop] { stop.request_stop(); });
        queue.wakeFirstDue(1);
        stopping.join();
        loop.drain();

        EXPECT_TRUE(task.isDone());
        EXPECT_EQ(queue.count(), 0U);
    }
}

Task<> holdWhileAsleep(SleepQueue* queue, std::shared_ptr<int> held, std::stop_token stop)
{
    co_await queue->sleep(1, stop);
    ++*held;
}

TEST(SleepQueue, DestroysThoseWhoStillSleepWhenItGoes)
{
    TestLoop loop;
    const auto held = std::make_shared<int>(0);
    std::stop_source stop;
    {
        SleepQueue queue;
        loop.start(holdWhileAsleep(&queue, held, stop.get_token()));
        EXPECT_EQ(held.use_count(), 2);
    }
    loop.drain();
    EXPECT_EQ(held.use_count(), 1);

    stop.request_stop(); // touches nothing that is gone
    loop.drain();
    EXPECT_EQ(*held, 0);
}

}
}
