#pragma once

#include "TinkraICalendar/DayClock.h"
#include "TinkraICalendar/InstanceFilter.h"
#include "TinkraICalendar/PeriodTimes.h"
#include "TinkraICalendar/RuleDays.h"
#include "TinkraICalendar/SetPositions.h"

#include <cstdint>

namespace Tinkra::ICalendar {

/// HOURLY, MINUTELY and SECONDLY rules: steps of elapsed time from DTSTART, whose local times are held
/// against the BY parts; steps that no part allows are jumped over.
class ElapsedExpansion {
public:
    ElapsedExpansion(const RecurrenceRule& rule, const SeriesStart& start, InstanceFilter& filter);

    void run();

    /// Whether the BY parts allow DTSTART.
    bool startFits() const;

private:
    bool takeStep(UtcSeconds utc, LocalSeconds local);
    bool takeWithin(UtcSeconds utc, LocalSeconds local);
    bool take(LocalSeconds local, UtcSeconds utc);
    bool findFirstStep();
    bool goToDayAfter(LocalDays day);
    void goTo(UtcSeconds moment);
    UtcSeconds firstChange(UtcSeconds from, UtcSeconds to) const;
    bool isBarrenForGood(UtcSeconds utc) const;

    const RecurrenceRule& m_rule;
    const SeriesStart& m_start;
    InstanceFilter& m_filter;
    const Zone& m_zone;
    std::int64_t m_step; // seconds
    UtcSeconds m_begin;
    UtcSeconds m_last; // the last instance taken
    UtcSeconds m_searchBegin; // nothing before it was looked at
    RuleDays m_days;
    DayClock m_clock;
    SetPositions m_positions;
    std::int64_t m_cycle; // seconds after which the same steps come on the same days at the same times
    std::int64_t m_index = 0; // of the next step
};

}
