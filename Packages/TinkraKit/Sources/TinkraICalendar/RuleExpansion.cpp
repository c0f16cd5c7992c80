#include "TinkraICalendar/RuleExpansion.h"

#include "TinkraICalendar/CalendarExpansion.h"
#include "TinkraICalendar/ElapsedExpansion.h"
#include "TinkraICalendar/InstanceFilter.h"

namespace Tinkra::ICalendar {

ExpansionEnd expandRule(const RecurrenceRule& rule, const SeriesStart& start, TimeRange range,
    const ExpansionBudget& budget, const std::function<void(const RuleInstance&)>& sink)
{
    InstanceFilter filter(rule, start, range, budget, sink);
    if (rule.frequency < Frequency::Daily)
        ElapsedExpansion(rule, start, filter).run();
    else
        CalendarExpansion(rule, start, filter).run();
    return filter.end();
}

bool fitsRule(const RecurrenceRule& rule, const SeriesStart& start)
{
    const InstanceFilter::Sink nobody = [](const RuleInstance&) {};
    const ExpansionBudget budget;
    InstanceFilter filter(rule, start, {}, budget, nobody);
    return rule.frequency < Frequency::Daily ? ElapsedExpansion(rule, start, filter).startFits()
                                             : CalendarExpansion(rule, start, filter).startFits();
}

}
