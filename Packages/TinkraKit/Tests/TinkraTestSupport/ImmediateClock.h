#pragma once

#include "TinkraConcurrency/Clock.h"

#include <utility>

namespace Tinkra {

/// A clock on which every sleep is over at once: time is squashed to nothing, and `now()` moves to the end of
/// each sleep. For flows that wait a bounded number of times; a loop of sleeps would never end. One thread.
class ImmediateClock final : public Clock {
public:
    explicit ImmediateClock(Instant now)
        : m_now(now)
    {
    }

    Instant now() const override { return m_now; }

    Task<> sleepUntil(Instant deadline, std::stop_token stop) override
    {
        if (!stop.stop_requested() && deadline > m_now)
            m_now = deadline;
        co_return;
    }

    Task<> sleepFor(Seconds duration, std::stop_token stop) override
    {
        return sleepUntil(m_now + duration, std::move(stop));
    }

private:
    Instant m_now;
};

}
