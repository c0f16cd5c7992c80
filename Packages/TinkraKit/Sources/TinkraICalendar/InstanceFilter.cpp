#include "TinkraICalendar/InstanceFilter.h"

#include <algorithm>
#include <limits>

namespace Tinkra::ICalendar {

namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::local_days;
using std::chrono::seconds;

constexpr local_days kFirstDay{std::chrono::year{0} / 1 / 1};
constexpr local_days kLastDay{std::chrono::year{9999} / 12 / 31};
constexpr std::uint32_t kWorkBetweenLooks =
    1024; // a look at the clock costs as much as some twenty instances

/// The day of a moment as a number, within the years that we know.
local_days dayOf(UtcSeconds moment)
{
    const auto day = floor<days>(std::clamp(moment.time_since_epoch(), seconds{kFirstDay.time_since_epoch()},
        seconds{kLastDay.time_since_epoch()}));
    return local_days{day};
}

}

InstanceFilter::InstanceFilter(const RecurrenceRule& rule, const SeriesStart& start, TimeRange range,
    const ExpansionBudget& budget, const Sink& sink)
    : m_rule(rule)
    , m_start(start)
    , m_range(range)
    , m_budget(budget)
    , m_sink(sink)
    , m_left(rule.count ? *rule.count : std::numeric_limits<std::uint64_t>::max())
{
    m_firstDay = dayOf(range.from) - days{1};
    m_lastDay = std::min(dayOf(range.to) + days{1}, kLastDay);
    if (!rule.until)
        return;
    if (const auto* utc = std::get_if<UtcSeconds>(&*rule.until))
        m_lastDay = std::min(m_lastDay, dayOf(*utc) + days{1});
    else
        m_lastDay = std::min(m_lastDay, floor<days>(std::get<LocalSeconds>(*rule.until)));
}

bool InstanceFilter::isAfterUntil(LocalSeconds local, UtcSeconds utc) const
{
    if (local >= kLastDay + days{1})
        return true;
    if (!m_rule.until)
        return false;
    if (const auto* until = std::get_if<UtcSeconds>(&*m_rule.until)) {
        // Dates have no zone: they are held against the date that the UTC time names.
        if (m_start.isDate)
            return local.time_since_epoch() > until->time_since_epoch();
        return utc > *until;
    }
    const auto until = std::get<LocalSeconds>(*m_rule.until);
    return m_rule.untilIsDate ? floor<days>(local) > floor<days>(until) : local > until;
}

bool InstanceFilter::takeStart()
{
    return pass(m_start.local, m_start.zone->toUtc(m_start.local));
}

bool InstanceFilter::take(LocalSeconds local, UtcSeconds utc)
{
    return isAfterUntil(local, utc) ? mayGoOn() : pass(local, utc);
}

bool InstanceFilter::pass(LocalSeconds local, UtcSeconds utc)
{
    if (m_left == 0)
        return false;
    --m_left;
    if (utc >= m_range.from && utc < m_range.to) {
        if (m_passed == m_budget.occurrences) {
            m_end = ExpansionEnd::TooManyOccurrences;
            return false;
        }
        ++m_passed;
        m_sink({utc, local});
    }
    return mayGoOn() && m_left > 0;
}

bool InstanceFilter::skip(std::uint64_t count)
{
    m_left -= std::min(m_left, count);
    return m_left > 0;
}

bool InstanceFilter::mayGoOn()
{
    if (++m_work % kWorkBetweenLooks != 0)
        return true;
    if (m_timer.elapsed() <= m_budget.time)
        return true;
    m_end = ExpansionEnd::TooMuchTime;
    return false;
}

}
