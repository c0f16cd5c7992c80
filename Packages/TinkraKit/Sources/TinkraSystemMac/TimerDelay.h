#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>

namespace Tinkra::System {

/// How long a timer waits for something that is `seconds` away: rounded up, so that it is not early, nothing
/// for what is due, and a day at most, after which its owner looks again. That keeps it within what a timer
/// can count.
inline std::chrono::nanoseconds timerDelay(double seconds)
{
    constexpr double longest = 86'400;
    const double clamped = std::clamp(seconds, 0.0, longest);
    return std::chrono::nanoseconds(static_cast<std::chrono::nanoseconds::rep>(std::ceil(clamped * 1e9)));
}

}
