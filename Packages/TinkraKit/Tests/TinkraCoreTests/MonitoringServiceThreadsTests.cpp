#include "TinkraCore/MonitoringService.h"

#include "TinkraTestSupport/Builders.h"
#include "TinkraTestSupport/FakeAlarmScheduler.h"
#include "TinkraTestSupport/FakeCalendarProvider.h"
#include "TinkraTestSupport/Printing.h"
#include "TinkraTestSupport/TestLoop.h"

#include <asio/co_spawn.hpp>
#include <asio/detached.hpp>
#include <asio/thread_pool.hpp>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

namespace Tinkra {
namespace {

struct World {
    asio::thread_pool pool{4};
    std::shared_ptr<FakeCalendarProvider> provider = std::make_shared<FakeCalendarProvider>(
        std::vector{standup(noon + Seconds{600}, "a"), standup(noon + Seconds{1200}, "b")});
    std::shared_ptr<FakeAlarmScheduler> scheduler = std::make_shared<FakeAlarmScheduler>();
    MonitoringService service{provider, scheduler, monitoring(), Seconds{86'400}, pool.get_executor()};
};

Task<> useTheService(MonitoringService* service, int number, std::atomic<int>* passes)
{
    for (int round = 0; round < 100; ++round) {
        auto configuration = co_await service->configuration();
        configuration.settings.leadTime = Seconds{static_cast<double>(number * 10 + round % 10)};
        configuration.masterEnabled = (round + number) % 5 != 0;
        co_await service->updateConfiguration(configuration);
        const auto result = co_await service->sync(noon);
        EXPECT_LE(result.toAdd.size(), 2U);
        ++*passes;
    }
}

Task<> useAndCompareThreads(MonitoringService* service, std::thread::id own)
{
    EXPECT_EQ(std::this_thread::get_id(), own);
    const auto configuration = co_await service->configuration();
    EXPECT_EQ(std::this_thread::get_id(), own);
    co_await service->updateConfiguration(configuration);
    EXPECT_EQ(std::this_thread::get_id(), own);
    co_await service->sync(noon);
    EXPECT_EQ(std::this_thread::get_id(), own);
}

Task<> failAndCompareThreads(MonitoringService* service, std::thread::id own)
{
    bool hasFailed = false;
    try {
        co_await service->sync(noon);
    } catch (const std::runtime_error&) {
        hasFailed = true;
    }
    EXPECT_TRUE(hasFailed);
    EXPECT_EQ(std::this_thread::get_id(), own);
}

TEST(MonitoringServiceThreads, ServesManyCallersOnManyThreads)
{
    World world;
    std::atomic<int> passes = 0;
    for (int number = 0; number < 8; ++number)
        asio::co_spawn(asio::make_strand(world.pool.get_executor()),
            useTheService(&world.service, number, &passes), asio::detached);
    world.pool.join();
    EXPECT_EQ(passes, 800);

    asio::thread_pool quiet(2);
    MonitoringService service(
        world.provider, world.scheduler, monitoring(), Seconds{86'400}, quiet.get_executor());
    TestLoop loop;
    loop.runInRealTime(service.sync(noon));
    quiet.join();

    EXPECT_EQ(world.scheduler->armedIDs().size(), 2U);
}

TEST(MonitoringServiceThreads, BringsItsCallersBackToTheirOwnExecutor)
{
    World world;
    TestLoop loop;

    loop.runInRealTime(useAndCompareThreads(&world.service, std::this_thread::get_id()));
    world.pool.join(); // its threads let go of the loop before the loop goes
}

TEST(MonitoringServiceThreads, BringsItsCallersBackWithAnErrorToo)
{
    World world;
    world.provider->failWith(std::make_exception_ptr(std::runtime_error("trouble")));
    TestLoop loop;

    loop.runInRealTime(failAndCompareThreads(&world.service, std::this_thread::get_id()));
    world.pool.join(); // its threads let go of the loop before the loop goes
}

}
}
