#pragma once

#include "TinkraICalendar/RuleExpansion.h"

#include <chrono>
#include <cstddef>

namespace Tinkra::ICalendar {

/// What one query of one text may cost.
struct ExpansionLimits {
    std::chrono::milliseconds time{2000}; ///< of processor time, for all events
    std::size_t occurrences = 1'000'000; ///< of all series; one that has begun is carried on
    ExpansionBudget perEvent;

    friend bool operator==(const ExpansionLimits& a, const ExpansionLimits& b)
    {
        return a.time == b.time && a.occurrences == b.occurrences && a.perEvent.time == b.perEvent.time
            && a.perEvent.occurrences == b.perEvent.occurrences;
    }
};

}
