#pragma once

#include <chrono>

namespace Tinkra::ICalendar {

/// Seconds since 1970-01-01 00:00:00 UTC.
using UtcSeconds = std::chrono::sys_seconds;

/// A wall-clock time without a zone: seconds since 1970-01-01 00:00:00 on that clock.
using LocalSeconds = std::chrono::local_seconds;

/// The half-open range [from, to).
struct TimeRange {
    UtcSeconds from;
    UtcSeconds to;

    friend bool operator==(const TimeRange&, const TimeRange&) = default;
};

}
