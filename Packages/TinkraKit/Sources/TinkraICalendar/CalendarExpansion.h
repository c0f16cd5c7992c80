#pragma once

#include "TinkraICalendar/InstanceFilter.h"
#include "TinkraICalendar/PeriodTimes.h"
#include "TinkraICalendar/RuleDays.h"
#include "TinkraICalendar/SetPositions.h"

#include <cstdint>
#include <optional>

namespace Tinkra::ICalendar {

/// DAILY, WEEKLY, MONTHLY and YEARLY rules: period after period on the wall clock, each a list of days, each
/// day a list of times.
class CalendarExpansion {
public:
    CalendarExpansion(const RecurrenceRule& rule, const SeriesStart& start, InstanceFilter& filter);

    void run();

    /// Whether DTSTART is among the times of its period.
    bool startFits();

private:
    enum class PeriodEnd { HadInstances, WasEmpty, Stop };

    std::int64_t unitOf(LocalDays day) const;
    std::int64_t periodOf(LocalDays day) const;
    LocalDays beginOf(std::int64_t period) const;
    void fill(std::int64_t period);
    std::optional<std::int64_t> firstPeriod();
    std::uint64_t instancesAfterStart();
    PeriodEnd takePeriod();

    template <typename Take> PeriodEnd forEachLocal(Take take);

    const RecurrenceRule& m_rule;
    const SeriesStart& m_start;
    InstanceFilter& m_filter;
    LocalDays m_startDay;
    LocalDays m_startWeek; // first day of the week of DTSTART
    RuleDays m_days;
    PeriodTimes m_times;
    SetPositions m_positions;
    std::int64_t m_interval;
    std::int64_t m_origin; // number of the day, week, month or year of DTSTART
    DayList m_list;
};

}
