#pragma once

#include "TinkraConcurrency/Clock.h"

#include <memory>

namespace Tinkra::System {

/// The live clock. Wall time is CLOCK_REALTIME, elapsed time CLOCK_MONOTONIC_RAW, which goes on while the
/// machine sleeps and which nobody sets. One wall-clock timer of libdispatch waits for the first sleeper of
/// each; the system moves such a timer when the clock is set, and fires it after a sleep that it fell into.
///
/// Usable from any thread; sleepers that are left when the clock goes are destroyed where they stand.
class ClockMac final : public Clock {
public:
    ClockMac();
    ~ClockMac() override;
    ClockMac(const ClockMac&) = delete;
    ClockMac& operator=(const ClockMac&) = delete;

    Instant now() const override;
    Task<> sleepUntil(Instant deadline, std::stop_token stop) override;
    Task<> sleepFor(Seconds duration, std::stop_token stop) override;

private:
    class Timers;

    std::unique_ptr<Timers> m_timers;
};

}
