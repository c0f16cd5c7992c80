#include "TinkraCore/Models/ScheduledAlarm.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace Tinkra {

namespace {

/// Rounded to the nearest second, halves away from zero. Checked in release builds too: an alarm under a
/// wrong identifier would be armed twice, or never cancelled.
std::int64_t wholeSeconds(Instant instant)
{
    const double rounded = std::round(secondsSince1970(instant));
    constexpr double limit = 9'223'372'036'854'775'808.0; // 2^63, the first value above the largest integer
    const bool fits = rounded >= -limit && rounded < limit; // false for NaN too
    if (!fits) {
        std::fputs("an alarm's fire time does not fit a whole number of seconds\n", stderr);
        std::abort();
    }
    return static_cast<std::int64_t>(rounded);
}

}

Text alarmID(const Text& meetingID, Instant fireDate)
{
    std::array<char, 21> digits{}; // "#" leads; a 64-bit number has at most 20 characters
    digits[0] = '#';
    const auto end =
        std::to_chars(digits.data() + 1, digits.data() + digits.size(), wholeSeconds(fireDate)).ptr;
    const auto length = static_cast<std::size_t>(end - digits.data());
    std::string id;
    id.reserve(meetingID.utf8().size() + length);
    id += meetingID.utf8();
    id.append(digits.data(), length);
    return Text{std::move(id)};
}

}
