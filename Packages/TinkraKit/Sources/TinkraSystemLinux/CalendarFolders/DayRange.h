#pragma once

#include "TinkraICalendar/Time.h"

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace Tinkra::System {

/// Whole days since 1970, at least one, that cover a range of time: eight bytes that tell whether a file is
/// worth a look.
struct DayRange {
    std::int32_t first = 0;
    std::int32_t end = 0; ///< not included

    static DayRange covering(ICalendar::TimeRange range)
    {
        const auto first = number(std::chrono::floor<std::chrono::days>(range.from));
        return {first, std::max(number(std::chrono::ceil<std::chrono::days>(range.to)), first + 1)};
    }

    bool overlaps(DayRange other) const { return first < other.end && other.first < end; }

private:
    static std::int32_t number(std::chrono::sys_days day)
    {
        return static_cast<std::int32_t>(day.time_since_epoch().count());
    }
};

}
