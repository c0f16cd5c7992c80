#pragma once

#include "TinkraICalendar/Time.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace Tinkra::ICalendar {

/// How a date or time is written (RFC 5545, sections 3.3.4 and 3.3.5).
enum class TimeForm : std::uint8_t {
    Date,
    Local, ///< without Z: in the zone of TZID, or floating
    Utc,
};

/// A DATE or DATE-TIME as written; a date stands for its midnight.
struct TimeValue {
    LocalSeconds time; ///< on the clock that the form names
    TimeForm form = TimeForm::Date;

    friend bool operator==(const TimeValue&, const TimeValue&) = default;
};

/// Reads a DATE or DATE-TIME; years 0 to 9999. Second 60 is read as 59. Also taken: "-" and ":" between the
/// parts, missing seconds, a fraction, which is dropped, and an offset such as +0100, which makes it UTC.
/// Nothing for anything else, days that do not exist included.
std::optional<TimeValue> parseTime(std::string_view value);

/// A DURATION (RFC 5545, section 3.3.6).
struct Duration {
    std::chrono::days nominal{0}; ///< weeks and days: on the wall clock
    std::chrono::seconds exact{0}; ///< hours, minutes and seconds: elapsed

    friend bool operator==(const Duration&, const Duration&) = default;
};

/// Values beyond ten thousand years are cut to that.
std::optional<Duration> parseDuration(std::string_view value);

/// A UTC-OFFSET (RFC 5545, section 3.3.14), less than a day.
std::optional<std::chrono::seconds> parseUtcOffset(std::string_view value);

}
