#pragma once

#include "TinkraICalendar/ZoneTable.h"

#include <chrono>
#include <optional>
#include <string_view>
#include <vector>

namespace Tinkra::ICalendar {

/// A day of each year, and a time on it that may lie outside of that day.
struct YearlyMoment {
    enum class Kind : std::uint8_t { WeekdayOfMonth, DayWithoutLeapDay, DayWithLeapDay };

    Kind kind = Kind::WeekdayOfMonth;
    int month = 1;
    int week = 1; ///< 5 is the last
    int day = 0; ///< a weekday from Sunday = 0, or a day of the year
    std::chrono::seconds time{7200};

    LocalSeconds in(std::chrono::year year) const;
};

/// What a POSIX TZ text says (IEEE 1003.1, section 8.3, with the extensions of RFC 8536, section 3.3.1).
struct PosixZoneRule {
    struct Daylight {
        std::chrono::seconds offset{0};
        YearlyMoment begin; ///< on the clock of the standard time
        YearlyMoment end; ///< on the clock of the daylight time
    };

    std::chrono::seconds offset{0}; ///< of the standard time, east of UTC
    std::optional<Daylight> daylight;

    /// Both changes of that year; none without daylight time.
    std::vector<ZoneChange> changesIn(std::chrono::year year) const;
};

/// Nothing when `text` is not such a text, or names daylight time without saying when it begins.
std::optional<PosixZoneRule> parsePosixZoneRule(std::string_view text);

}
