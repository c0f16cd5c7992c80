#pragma once

#include "TinkraConcurrency/Clock.h"

#include <memory>

namespace Tinkra::System {

/// The live clock. Wall time is CLOCK_REALTIME, elapsed time CLOCK_BOOTTIME, which goes on during a suspend.
///
/// One thread of its own waits for both with timerfd_create(2), so that a due sleeper is handed to its
/// executor at once, however many sleep. Without sleepers nothing wakes the process. A deadline that is
/// not a number ends at once, one of positive infinity never. Usable from any thread; sleepers that are
/// left when the clock goes are destroyed where they stand.
class ClockLinux final : public Clock {
public:
    /// Throws `std::system_error` when the system refuses a timer.
    ClockLinux();
    ~ClockLinux() override;
    ClockLinux(const ClockLinux&) = delete;
    ClockLinux& operator=(const ClockLinux&) = delete;

    Instant now() const override;
    Task<> sleepUntil(Instant deadline, std::stop_token stop) override;
    Task<> sleepFor(Seconds duration, std::stop_token stop) override;

private:
    class Timers;

    std::unique_ptr<Timers> m_timers;
};

}
