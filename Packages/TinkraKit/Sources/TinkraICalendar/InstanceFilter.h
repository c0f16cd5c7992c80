#pragma once

#include "TinkraICalendar/RuleExpansion.h"
#include "TinkraICalendar/WorkTimer.h"

#include <cstdint>
#include <functional>

namespace Tinkra::ICalendar {

/// Takes the instances of a rule one by one, holds them against COUNT, UNTIL, the range and the budget, and
/// hands on what passes.
class InstanceFilter {
public:
    using Sink = std::function<void(const RuleInstance&)>;

    InstanceFilter(const RecurrenceRule& rule, const SeriesStart& start, TimeRange range,
        const ExpansionBudget& budget, const Sink& sink);

    /// The first and the last day on which an instance can pass, with a day to spare for any offset.
    std::chrono::local_days firstDay() const { return m_firstDay; }
    std::chrono::local_days lastDay() const { return m_lastDay; }

    /// DTSTART itself, which UNTIL cannot take away. Like all others it gives false when no more are wanted.
    bool takeStart();
    bool take(LocalSeconds local, UtcSeconds utc);

    /// Counts instances that lie before the range without looking at them.
    bool skip(std::uint64_t count);

    /// To be called once for each piece of work of some microseconds at most.
    bool mayGoOn();

    ExpansionEnd end() const { return m_end; }

private:
    bool isAfterUntil(LocalSeconds local, UtcSeconds utc) const;
    bool pass(LocalSeconds local, UtcSeconds utc);

    const RecurrenceRule& m_rule;
    const SeriesStart& m_start;
    TimeRange m_range;
    const ExpansionBudget& m_budget;
    const Sink& m_sink;

    std::chrono::local_days m_firstDay;
    std::chrono::local_days m_lastDay;
    std::uint64_t m_left; // of COUNT
    std::size_t m_passed = 0;
    std::uint32_t m_work = 0;
    WorkTimer m_timer; // begins once there was work worth measuring
    ExpansionEnd m_end = ExpansionEnd::Complete;
};

}
