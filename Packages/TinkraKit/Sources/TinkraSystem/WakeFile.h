#pragma once

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Tinkra::System {

/// The wake file, through which the application tells the wake helper when the machine must be awake: the
/// decimal digits of whole seconds since 1970-01-01 00:00:00 UTC, or of 0 when no wake is wanted, and nothing
/// else. Its writer and its reader share this header alone.
inline constexpr std::string_view kWakeFileName = "wake";
inline constexpr std::string_view kNoWakeText = "0";

/// No wake lies further ahead.
inline constexpr std::int64_t kFurthestWakeSeconds = 366LL * 86'400;

/// The most digits that a reader looks at.
inline constexpr std::size_t kMaximumWakeDigits = 20;

/// What is written for a time in seconds since 1970: cut off towards zero, and 0 for one before 1970.
inline std::string wakeFileText(double seconds)
{
    constexpr double last = 9'007'199'254'740'992; // 2^53
    return std::to_string(static_cast<std::int64_t>(seconds > 0 ? std::min(seconds, last) : 0));
}

/// When a wake is wanted, in seconds since 1970, read at `now`; nothing for 0, for anything that is not the
/// form above, and for a time more than `kFurthestWakeSeconds` ahead. A time that is past is given as it is.
inline std::optional<std::int64_t> wakeSecondsFrom(std::string_view text, std::int64_t now)
{
    const bool isDigits = std::ranges::all_of(text, [](char each) { return each >= '0' && each <= '9'; });
    if (text.empty() || text.size() > kMaximumWakeDigits || !isDigits)
        return std::nullopt;
    std::int64_t seconds = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), seconds);
    const bool isTooLarge = read.ec != std::errc{};
    if (isTooLarge || seconds == 0 || seconds - kFurthestWakeSeconds > now)
        return std::nullopt;
    return seconds;
}

}
