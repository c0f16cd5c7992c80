// What every clock promises, held against the clock of the tests and the clock of this machine.

#include "TinkraConcurrency/Clock.h"

#include "TinkraConcurrency/TaskHandle.h"
#include "TinkraSystemLinux/ClockLinux.h"
#include "TinkraTestSupport/Builders.h"
#include "TinkraTestSupport/TestClock.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <functional>
#include <iterator>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace Tinkra::System {
namespace {

constexpr Seconds instantly{0.005};
constexpr Seconds year{365 * 86'400.0};
constexpr double infinity = std::numeric_limits<double>::infinity();

/// A clock, and how time passes on it.
class World {
public:
    virtual ~World() = default;
    virtual Clock& clock() = 0;

    /// Lets the task run to its end, however much time that takes.
    virtual void finish(Task<> task) = 0;

    TestLoop loop;
};

class TestClockWorld final : public World {
public:
    Clock& clock() override { return m_clock; }

    void finish(Task<> task) override
    {
        const auto started = loop.start(std::move(task));
        m_clock.advance(Seconds{10});
        started.result();
    }

private:
    TestClock m_clock{loop, noon};
};

class LinuxClockWorld final : public World {
public:
    Clock& clock() override { return m_clock; }
    void finish(Task<> task) override { loop.runInRealTime(std::move(task)); }

private:
    ClockLinux m_clock;
};

using MakeWorld = std::unique_ptr<World> (*)();

class ClockContract : public testing::TestWithParam<MakeWorld> {
protected:
    std::unique_ptr<World> world = GetParam()();
    Clock& clock = world->clock();
};

INSTANTIATE_TEST_SUITE_P(TestClock, ClockContract,
    testing::Values(+[]() -> std::unique_ptr<World> { return std::make_unique<TestClockWorld>(); }));
INSTANTIATE_TEST_SUITE_P(ClockLinux, ClockContract,
    testing::Values(+[]() -> std::unique_ptr<World> { return std::make_unique<LinuxClockWorld>(); }));

Task<> sleepUntilAndLook(Clock* clock, Instant deadline, bool* wasEarly)
{
    co_await clock->sleepUntil(deadline, {});
    *wasEarly = clock->now() < deadline;
}

Task<> sleepUntilAndNote(Clock* clock, Instant deadline, std::string name, std::vector<std::string>* woken)
{
    co_await clock->sleepUntil(deadline, {});
    woken->push_back(std::move(name));
}

Task<> sleepForSeveral(Clock* clock, int count)
{
    for (int i = 0; i < count; ++i)
        co_await clock->sleepFor(Seconds{0.001}, {});
}

Task<> stopWhileAsleep(Clock* clock, std::stop_source stop)
{
    co_await clock->sleepFor(instantly, {});
    stop.request_stop();
}

Task<> noteWhenStopped(Clock* clock, Instant deadline, std::stop_token stop, bool* wasStopped)
{
    co_await clock->sleepUntil(deadline, stop);
    *wasStopped = stop.stop_requested();
}

Task<> noteWhenStoppedFor(Clock* clock, Seconds duration, std::stop_token stop, bool* wasStopped)
{
    co_await clock->sleepFor(duration, stop);
    *wasStopped = stop.stop_requested();
}

TEST_P(ClockContract, NeverEndsASleepBeforeItsInstant)
{
    for (int round = 0; round < 20; ++round) {
        bool wasEarly = true;
        world->finish(sleepUntilAndLook(&clock, clock.now() + Seconds{0.0013}, &wasEarly));
        EXPECT_FALSE(wasEarly);
    }
}

TEST_P(ClockContract, LetsAtLeastTheDurationPass)
{
    const auto before = clock.now();

    world->finish(clock.sleepFor(instantly, {}));

    EXPECT_GE(clock.now() - before, instantly - Seconds{1e-6});
}

TEST_P(ClockContract, EndsASleepThatIsOverAlreadyAtOnce)
{
    world->loop.run(clock.sleepUntil(clock.now(), {}));
    world->loop.run(clock.sleepUntil(clock.now() - year, {}));
    world->loop.run(clock.sleepUntil(instantAt(0), {}));
    world->loop.run(clock.sleepUntil(instantAt(-1e9), {}));
    world->loop.run(clock.sleepFor(Seconds{0}, {}));
    world->loop.run(clock.sleepFor(Seconds{-1e300}, {}));
}

TEST_P(ClockContract, EndsASleepUntilNoNumberAtOnce)
{
    world->loop.run(clock.sleepUntil(instantAt(std::nan("")), {}));
    world->loop.run(clock.sleepUntil(instantAt(-infinity), {}));
    world->loop.run(clock.sleepFor(Seconds{std::nan("")}, {}));
    world->loop.run(clock.sleepFor(Seconds{-infinity}, {}));
}

TEST_P(ClockContract, SleepsOnForInstantsOutOfReach)
{
    std::stop_source stop;
    std::vector<bool> wasStopped(6);
    std::vector<StartedTask<void>> sleepers;
    for (const double seconds : {60.0, 200 * year.count(), 9.3e9, 1e19, 1e308, infinity}) {
        sleepers.push_back(
            world->loop.start(clock.sleepUntil(clock.now() + Seconds{seconds}, stop.get_token())));
        sleepers.push_back(world->loop.start(clock.sleepFor(Seconds{seconds}, stop.get_token())));
    }

    world->finish(clock.sleepFor(instantly, {}));
    for (const auto& sleeper : sleepers)
        EXPECT_FALSE(sleeper.isDone());

    stop.request_stop();
    world->loop.drain();
    for (const auto& sleeper : sleepers)
        EXPECT_TRUE(sleeper.isDone());
}

TEST_P(ClockContract, WakesInTheOrderOfTheDeadlines)
{
    std::vector<std::string> woken;
    const auto start = clock.now() + instantly;
    const auto late = world->loop.start(sleepUntilAndNote(&clock, start + Seconds{0.002}, "late", &woken));
    const auto early = world->loop.start(sleepUntilAndNote(&clock, start, "early", &woken));
    const auto together = world->loop.start(sleepUntilAndNote(&clock, start, "early too", &woken));

    world->finish(sleepUntilAndNote(&clock, start + Seconds{0.004}, "last", &woken));

    EXPECT_EQ(woken, (std::vector<std::string>{"early", "early too", "late", "last"}));
}

TEST_P(ClockContract, SleepsAgainAndAgain)
{
    world->finish(sleepForSeveral(&clock, 20));
}

TEST_P(ClockContract, WakesAnEarlierSleeperThatLiesDownLater)
{
    std::stop_source stop;
    const auto distant = world->loop.start(clock.sleepFor(year, stop.get_token()));

    world->finish(clock.sleepFor(instantly, {}));

    EXPECT_FALSE(distant.isDone());
    stop.request_stop();
    world->loop.drain();
}

TEST_P(ClockContract, EndsAStoppedSleepEarly)
{
    std::stop_source stop;
    bool wasStopped = false;
    const auto sleeper =
        world->loop.start(noteWhenStopped(&clock, clock.now() + year, stop.get_token(), &wasStopped));

    world->finish(stopWhileAsleep(&clock, stop));
    world->loop.drain();

    EXPECT_TRUE(sleeper.isDone());
    EXPECT_TRUE(wasStopped);
}

TEST_P(ClockContract, DoesNotSleepWithAStoppedToken)
{
    std::stop_source stop;
    stop.request_stop();

    world->loop.run(clock.sleepUntil(clock.now() + year, stop.get_token()));
    world->loop.run(clock.sleepFor(year, stop.get_token()));
}

TEST_P(ClockContract, EndsASleepThatAnotherThreadStops)
{
    for (int round = 0; round < 100; ++round) {
        std::stop_source stop;
        bool wasStopped = false;
        const auto sleeper =
            world->loop.start(noteWhenStoppedFor(&clock, year, stop.get_token(), &wasStopped));

        std::thread([&stop] { stop.request_stop(); }).join();
        world->loop.drain();

        EXPECT_TRUE(sleeper.isDone());
        EXPECT_TRUE(wasStopped);
    }
}

TEST_P(ClockContract, EndsEverySleepWhoseStopRacesWithItsDeadline)
{
    for (int round = 0; round < 100; ++round) {
        std::stop_source stop;
        std::thread stopping([&stop] { stop.request_stop(); });
        world->finish(clock.sleepFor(Seconds{0.00005}, stop.get_token()));
        stopping.join();
    }
}

// --- The live clock alone ---

std::size_t openDescriptors()
{
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(descriptors), end(descriptors)));
}

TEST(ClockLinux, NeedsNoDescriptorForASleeper)
{
    TestLoop loop;
    ClockLinux clock;
    std::stop_source stop;
    const auto before = openDescriptors();

    std::vector<StartedTask<void>> sleepers;
    for (int i = 0; i < 10'000; ++i)
        sleepers.push_back(loop.start(clock.sleepFor(Seconds{3600.0 + i}, stop.get_token())));
    EXPECT_EQ(openDescriptors(), before);

    stop.request_stop();
    loop.drain();
    for (const auto& sleeper : sleepers)
        EXPECT_TRUE(sleeper.isDone());
}

TEST(ClockLinux, LeavesNoDescriptorBehind)
{
    const auto before = openDescriptors();
    for (int i = 0; i < 50; ++i)
        const ClockLinux clock;

    EXPECT_EQ(openDescriptors(), before);
}

TEST(ClockLinux, MayGoWhileSomebodySleeps)
{
    TestLoop loop;
    std::stop_source stop;
    auto clock = std::make_unique<ClockLinux>();
    const auto sleeper = loop.start(clock->sleepFor(year, stop.get_token()));

    clock.reset();
    loop.drain();
    stop.request_stop();
    loop.drain();

    EXPECT_FALSE(sleeper.isDone());
}

TEST(ClockLinux, ShowsTheTimeOfTheSystem)
{
    const auto system =
        std::chrono::duration_cast<Seconds>(std::chrono::system_clock::now().time_since_epoch());

    EXPECT_NEAR(secondsSince1970(ClockLinux().now()), system.count(), 60);
}

}
}
