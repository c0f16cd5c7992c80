#pragma once

#include <chrono>

namespace Tinkra {

/// A length of time in seconds, with fraction.
using Seconds = std::chrono::duration<double>;

/// An absolute point in time: seconds since 1970-01-01 00:00:00 UTC, with fraction, no leap seconds.
using Instant = std::chrono::time_point<std::chrono::system_clock, Seconds>;

/// Seconds since 1970 of an instant, with fraction.
constexpr double secondsSince1970(Instant instant)
{
    return instant.time_since_epoch().count();
}

/// The instant that lies `seconds` after the start of 1970; negative values lie before it.
constexpr Instant instantAt(double seconds)
{
    return Instant{Seconds{seconds}};
}

}
