#pragma once

#include "TinkraICalendar/RecurrenceRule.h"
#include "TinkraICalendar/Zone.h"

#include <chrono>
#include <cstddef>
#include <functional>

namespace Tinkra::ICalendar {

/// What a rule repeats: the DTSTART of its event.
struct SeriesStart {
    LocalSeconds local;
    ZonePtr zone; ///< the viewer's for floating times and dates
    bool isDate = false;
};

/// How much one expansion may cost before it is given up.
struct ExpansionBudget {
    std::size_t occurrences = 10'000;
    std::chrono::milliseconds time{200}; ///< of processor time
};

enum class ExpansionEnd {
    Complete,
    TooManyOccurrences,
    TooMuchTime,
};

/// One instance of a rule.
struct RuleInstance {
    UtcSeconds utc;
    LocalSeconds local; ///< before a skipped local time was moved; what RECURRENCE-ID and EXDATE name
};

/// Calls `sink` for each instance of `rule` that starts in `range`, in order of local time, DTSTART included
/// whether or not it fits the rule (COUNT and UNTIL count it). Far ranges are reached by arithmetic, not by
/// walking, where the rule allows it. HOURLY and finer rules step in elapsed time; all others step on the
/// wall clock. A rule that yields nothing ends.
ExpansionEnd expandRule(const RecurrenceRule& rule, const SeriesStart& start, TimeRange range,
    const ExpansionBudget& budget, const std::function<void(const RuleInstance&)>& sink);

/// Whether DTSTART fits the rule: whether it would be an instance if it were not the start of the series.
bool fitsRule(const RecurrenceRule& rule, const SeriesStart& start);

}
