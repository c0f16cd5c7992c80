#pragma once

#include "TinkraICalendar/RecurrenceRule.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>

namespace Tinkra::ICalendar {

/// BYHOUR, BYMINUTE and BYSECOND as limits on the time of day, as far as they limit a rule of that frequency.
class DayClock {
public:
    DayClock(const RecurrenceRule& rule, std::int64_t step);

    /// Allows nothing but midnight, where each `step` is of so many seconds.
    static DayClock midnightOnly(std::int64_t step) { return DayClock(step); }

    /// The first allowed time of day, in seconds, that is not before `time`; a whole day when there is none.
    std::int64_t nextAllowed(std::int64_t time) const;

    /// True when steps of `step` seconds that pass through `time` never meet an allowed one, on a clock that
    /// does not change.
    bool isNeverMetFrom(std::int64_t time);

private:
    explicit DayClock(std::int64_t step);

    std::uint64_t m_hours = 1; // bit n: hour n is allowed
    std::uint64_t m_minutes = 1;
    std::uint64_t m_seconds = 1;
    std::int64_t m_common; // greatest common divisor of the step and a day

    struct Verdict {
        std::int64_t remainder = -1;
        bool isNeverMet = false;
    };
    std::array<Verdict, 8> m_verdicts{}; // a zone has few offsets, so few remainders
    std::size_t m_nextVerdict = 0;
};

}
