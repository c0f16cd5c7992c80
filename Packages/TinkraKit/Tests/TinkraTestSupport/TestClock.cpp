#include "TinkraTestSupport/TestClock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace Tinkra {

TestClock::TestClock(std::function<void()> drain, Instant now)
    : m_drain(std::move(drain))
    , m_time{.wall = secondsSince1970(now)}
{
}

TestClock::TestClock(TestLoop& loop, Instant now)
    : TestClock([&loop] { loop.drain(); }, now)
{
}

TestClock::~TestClock()
{
    expectNobodyAsleep();
}

Instant TestClock::now() const
{
    return instantAt(time().wall);
}

Task<> TestClock::sleepUntil(Instant deadline, std::stop_token stop)
{
    if (deadline > now())
        co_await m_byWallClock.sleep(secondsSince1970(deadline), std::move(stop));
}

Task<> TestClock::sleepFor(Seconds duration, std::stop_token stop)
{
    if (duration > Seconds{0})
        co_await m_byElapsedTime.sleep(time().elapsed + duration.count(), std::move(stop));
}

void TestClock::advance(Seconds duration)
{
    m_drain();
    const auto start = time();
    const Time target{start.wall + duration.count(), start.elapsed + duration.count()};
    while (wakeNext(target))
        m_drain();
    setTime(target);
}

void TestClock::suspendMachine(Seconds duration)
{
    const auto start = time();
    setTime({start.wall + duration.count(), start.elapsed + duration.count()});
}

void TestClock::setWallClock(Instant now)
{
    setTime({secondsSince1970(now), time().elapsed});
    advance(Seconds{0});
}

std::size_t TestClock::sleeperCount() const
{
    return m_byWallClock.count() + m_byElapsedTime.count();
}

void TestClock::expectNobodyAsleep() const
{
    if (const auto count = sleeperCount(); count > 0)
        ADD_FAILURE() << count << (count == 1 ? " task is" : " tasks are")
                      << " still asleep on the test clock";
}

/// Moves time to the next deadline within the limit and wakes its sleeper; false when there is none.
bool TestClock::wakeNext(Time limit)
{
    const auto current = time();
    const auto wall = m_byWallClock.earliest();
    const auto elapsed = m_byElapsedTime.earliest();
    const bool isWallDue = wall && wall->deadline <= limit.wall;
    const bool isElapsedDue = elapsed && elapsed->deadline <= limit.elapsed;
    if (!isWallDue && !isElapsedDue)
        return false;

    // What is left until each deadline; negative for those that fell due while nobody ran.
    const auto left = [](auto place, double now) {
        return SleepQueue::Place{place->deadline - now, place->order};
    };
    if (isWallDue && (!isElapsedDue || left(wall, current.wall) < left(elapsed, current.elapsed))) {
        const auto step = std::max(0.0, wall->deadline - current.wall);
        setTime({std::max(current.wall, wall->deadline), std::min(current.elapsed + step, limit.elapsed)});
        return m_byWallClock.wakeFirstDue(time().wall);
    }
    const auto step = std::max(0.0, elapsed->deadline - current.elapsed);
    setTime({std::min(current.wall + step, limit.wall), std::max(current.elapsed, elapsed->deadline)});
    return m_byElapsedTime.wakeFirstDue(time().elapsed);
}

TestClock::Time TestClock::time() const
{
    const std::lock_guard lock(m_mutex);
    return m_time;
}

void TestClock::setTime(Time time)
{
    const std::lock_guard lock(m_mutex);
    m_time = time;
}

}
