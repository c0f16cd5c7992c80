#pragma once

#include "TinkraConcurrency/Instant.h"
#include "TinkraConcurrency/Task.h"

#include <stop_token>

namespace Tinkra {

/// The time, for those who wait. What only computes is handed an `Instant` instead.
class Clock {
public:
    virtual ~Clock() = default;

    virtual Instant now() const = 0;

    /// Ends when the wall clock shows `deadline` or later: never before it, and neither a suspend nor a
    /// clock step makes it late. A deadline that is already past ends at once. Serves alarms.
    ///
    /// Stopping `stop` ends the sleep early, without an error: ask the token right afterwards.
    virtual Task<> sleepUntil(Instant deadline, std::stop_token stop) = 0;

    /// Ends after `duration` of elapsed time, suspended time included; setting the clock does not change
    /// it. A duration of zero or less ends at once. Serves ticks and snoozes. Stopped as `sleepUntil` is.
    virtual Task<> sleepFor(Seconds duration, std::stop_token stop) = 0;
};

}
