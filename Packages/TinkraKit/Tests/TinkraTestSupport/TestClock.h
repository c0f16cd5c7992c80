#pragma once

#include "TinkraConcurrency/Clock.h"
#include "TinkraConcurrency/SleepQueue.h"
#include "TinkraTestSupport/TestLoop.h"

#include <functional>

namespace Tinkra {

/// A clock that a test turns by hand.
///
///     TestLoop loop;
///     const auto clock = std::make_shared<TestClock>(loop, noon);
///     ...
///     clock->advance(5min);     // everything due has run when this returns
///
/// Whoever is due wakes in the order of the deadlines, those of equal deadline in the order in which they
/// went to sleep, each running as far as it gets before the next one wakes. Fails the test when somebody
/// is still asleep at its own end. Turned on one thread; sleepers may be on others.
class TestClock final : public Clock {
public:
    /// `drain` runs everything that can run, for example the main loop of the user interface.
    TestClock(std::function<void()> drain, Instant now);
    TestClock(TestLoop& loop, Instant now);
    ~TestClock() override;

    Instant now() const override;
    Task<> sleepUntil(Instant deadline, std::stop_token stop) override;
    Task<> sleepFor(Seconds duration, std::stop_token stop) override;

    /// Time passes. Who falls due runs at its own instant; `now()` then shows that instant.
    void advance(Seconds duration);

    /// The machine sleeps: time passes and nobody runs. Who fell due meanwhile runs with the next `advance`,
    /// that of no time included, so that a test says what comes first after the resume.
    void suspendMachine(Seconds duration);

    /// Somebody sets the wall clock, forward or back; no time passes.
    void setWallClock(Instant now);

    /// How many tasks sleep now.
    std::size_t sleeperCount() const;

    /// Fails the test when somebody is asleep.
    void expectNobodyAsleep() const;

private:
    struct Time {
        double wall = 0; // seconds since 1970
        double elapsed = 0; // seconds since the clock was made
    };

    Time time() const;
    void setTime(Time time);
    bool wakeNext(Time limit);

    std::function<void()> m_drain;
    SleepQueue m_byWallClock;
    SleepQueue m_byElapsedTime;
    mutable std::mutex m_mutex; // guards m_time
    Time m_time;
};

}
