#pragma once

#include "TinkraICalendar/RuleExpansion.h"

#include <chrono>

namespace Tinkra::ICalendar {

/// What one query of one text may cost.
struct ExpansionLimits {
    std::chrono::milliseconds time{2000}; ///< of processor time, for all events
    ExpansionBudget perEvent;

    friend bool operator==(const ExpansionLimits& a, const ExpansionLimits& b)
    {
        return a.time == b.time && a.perEvent.time == b.perEvent.time
            && a.perEvent.occurrences == b.perEvent.occurrences;
    }
};

}
