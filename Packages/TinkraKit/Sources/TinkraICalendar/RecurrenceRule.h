#pragma once

#include "TinkraICalendar/Time.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace Tinkra::ICalendar {

enum class Frequency : std::uint8_t { Secondly, Minutely, Hourly, Daily, Weekly, Monthly, Yearly };

/// One entry of BYDAY: every such weekday (number 0), or the number-th of the period, from its end if
/// negative.
struct WeekdayNumber {
    std::int8_t number = 0; ///< -53...53
    std::chrono::weekday weekday;

    friend bool operator==(const WeekdayNumber&, const WeekdayNumber&) = default;
};

/// The last time that a rule may give: a UTC time, or a local one (a floating time or a date).
using Until = std::variant<UtcSeconds, LocalSeconds>;

/// A recurrence rule (RFC 5545, section 3.3.10). BY lists are sorted and without duplicates.
struct RecurrenceRule {
    Frequency frequency = Frequency::Daily;
    std::uint32_t interval = 1; ///< at least 1
    std::optional<std::uint32_t> count;
    std::optional<Until> until;
    bool untilIsDate = false; ///< UNTIL is a DATE: the whole of that day counts
    std::chrono::weekday weekStart = std::chrono::Monday;
    std::vector<std::uint8_t> bySecond; ///< 0...59; 60 is read as 59
    std::vector<std::uint8_t> byMinute; ///< 0...59
    std::vector<std::uint8_t> byHour; ///< 0...23
    std::vector<WeekdayNumber> byDay;
    std::vector<std::int8_t> byMonthDay; ///< ±1...±31
    std::vector<std::int16_t> byYearDay; ///< ±1...±366
    std::vector<std::int8_t> byWeekNo; ///< ±1...±53
    std::vector<std::uint8_t> byMonth; ///< 1...12
    std::vector<std::int16_t> bySetPos; ///< ±1...±366

    friend bool operator==(const RecurrenceRule&, const RecurrenceRule&) = default;
};

/// The rule that `value` writes down, or nothing when it has no usable FREQ. What was not understood in it is
/// left out and named in `notices`, one sentence each.
std::optional<RecurrenceRule> parseRecurrenceRule(std::string_view value, std::vector<std::string>& notices);

}
