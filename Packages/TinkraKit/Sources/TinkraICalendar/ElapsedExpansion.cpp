#include "TinkraICalendar/ElapsedExpansion.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <vector>

namespace Tinkra::ICalendar {

namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::hh_mm_ss;
using std::chrono::seconds;

constexpr std::int64_t kDay = 86'400;
constexpr std::int64_t kDaysInCycle = 146'097; // the Gregorian calendar's 400 years
// By then every zone does the same in each cycle.
constexpr UtcSeconds kZonesAreRegular{std::chrono::sys_days{std::chrono::year{2129} / 1 / 1}};

std::int64_t stepOf(const RecurrenceRule& rule)
{
    const std::int64_t unit = rule.frequency == Frequency::Hourly ? 3600
        : rule.frequency == Frequency::Minutely                   ? 60
                                                                  : 1;
    return unit * rule.interval;
}

std::int64_t cycleOf(std::int64_t step)
{
    const auto repeats = step / std::gcd(step, kDaysInCycle * kDay);
    constexpr std::int64_t kMoreThanAllYears = 26;
    return repeats < kMoreThanAllYears ? repeats * kDaysInCycle * kDay
                                       : std::numeric_limits<std::int64_t>::max();
}

}

ElapsedExpansion::ElapsedExpansion(
    const RecurrenceRule& rule, const SeriesStart& start, InstanceFilter& filter)
    : m_rule(rule)
    , m_start(start)
    , m_filter(filter)
    , m_zone(start.isDate ? *utcZone() : *start.zone) // dates do not know of clock changes
    , m_step(stepOf(rule))
    , m_begin(m_zone.toUtc(start.local))
    , m_last(m_begin)
    , m_searchBegin(m_begin)
    , m_days(rule, floor<days>(start.local))
    , m_clock(
          start.isDate ? DayClock::midnightOnly(m_step) : DayClock(rule, m_step)) // a date begins at midnight
    , m_positions(rule.bySetPos)
    , m_cycle(cycleOf(m_step))
{
}

void ElapsedExpansion::run()
{
    if (!m_filter.takeStart() || !findFirstStep())
        return;
    const UtcSeconds end{(m_filter.lastDay() + days{2}).time_since_epoch()};
    while (m_filter.mayGoOn()) {
        const auto utc = m_begin + seconds{m_index * m_step};
        if (utc >= end || isBarrenForGood(utc))
            return;
        const auto local = m_zone.toLocal(utc);
        const auto day = floor<days>(local);
        if (!m_days.allows(day)) {
            if (!goToDayAfter(day))
                return;
            continue;
        }
        const auto time = (local - day).count();
        const auto allowed = m_clock.nextAllowed(time);
        if (allowed != time) {
            const auto wait = m_clock.isNeverMetFrom(time) ? kDay - time : allowed - time;
            goTo(firstChange(utc, utc + seconds{wait}));
            continue;
        }
        if (!takeStep(utc, local))
            return;
        ++m_index;
    }
}

bool ElapsedExpansion::startFits() const
{
    const auto local = m_zone.toLocal(m_begin);
    const auto day = floor<days>(local);
    const hh_mm_ss clock{local - day};
    const auto allows = [](const std::vector<std::uint8_t>& list, std::int64_t value) {
        return list.empty() || std::find(list.begin(), list.end(), value) != list.end();
    };
    return m_days.allows(day) && allows(m_rule.byHour, clock.hours().count())
        && allows(m_rule.byMinute, clock.minutes().count())
        && allows(m_rule.bySecond, clock.seconds().count());
}

/// Jumps to the range; with COUNT only where each step is an instance.
bool ElapsedExpansion::findFirstStep()
{
    const UtcSeconds from{(m_filter.firstDay() - days{1}).time_since_epoch()};
    const auto steps = from > m_begin ? (from - m_begin).count() / m_step : 0;
    const auto& r = m_rule;
    const bool isPlain = !m_days.isLimited() && r.byHour.empty() && r.byMinute.empty() && r.bySecond.empty()
        && r.bySetPos.empty() && !m_start.isDate;
    if (steps == 0 || (r.count && !isPlain))
        return true;
    m_index = steps;
    m_searchBegin = from;
    return !r.count || m_filter.skip(static_cast<std::uint64_t>(steps - 1));
}

bool ElapsedExpansion::takeStep(UtcSeconds utc, LocalSeconds local)
{
    const bool expands = (m_rule.frequency == Frequency::Hourly && !m_rule.byMinute.empty())
        || (m_rule.frequency != Frequency::Secondly && !m_rule.bySecond.empty());
    if (expands && !m_start.isDate)
        return takeWithin(utc, local);
    return (!m_positions.chooseAll() && m_positions.of(1).empty()) || take(local, utc);
}

/// Takes the times within the hour or minute of a step.
bool ElapsedExpansion::takeWithin(UtcSeconds utc, LocalSeconds local)
{
    const bool isHour = m_rule.frequency == Frequency::Hourly;
    const auto begin = isHour ? LocalSeconds{floor<std::chrono::hours>(local)}
                              : LocalSeconds{floor<std::chrono::minutes>(local)};
    const auto times =
        isHour ? PeriodTimes::ofHour(m_rule, local - begin) : PeriodTimes::ofMinute(m_rule, local - begin);
    const auto takeAt = [&](std::size_t i) {
        const auto wanted = begin + times[i];
        const auto moment = utc + (wanted - local);
        // A clock change inside of the hour, as on Lord Howe.
        return take(wanted, m_zone.toLocal(moment) == wanted ? moment : m_zone.toUtc(wanted));
    };
    if (m_positions.chooseAll()) {
        for (std::size_t i = 0; i < times.size(); ++i) {
            if (!takeAt(i))
                return false;
        }
        return true;
    }
    const auto& places = m_positions.of(times.size());
    return std::all_of(places.begin(), places.end(), takeAt);
}

bool ElapsedExpansion::take(LocalSeconds local, UtcSeconds utc)
{
    if (utc <= m_last)
        return true;
    m_last = utc;
    return m_filter.take(local, m_start.isDate ? m_start.zone->toUtc(local) : utc);
}

/// Gives false when no later day is allowed.
bool ElapsedExpansion::goToDayAfter(LocalDays day)
{
    for (std::int64_t i = 1; i <= kDaysInCycle; ++i) {
        if (m_days.allows(day + days{i})) {
            goTo(m_zone.toUtc(day + days{i}));
            return true;
        }
    }
    return false;
}

/// Goes to the first step that is not before `moment`, and on by at least one.
void ElapsedExpansion::goTo(UtcSeconds moment)
{
    const auto distance = (moment - m_begin).count();
    m_index = std::max(m_index + 1, (distance + m_step - 1) / m_step);
}

/// The first moment in (from, to] at which the clock is another than at `from`, or `to` when it does not
/// change.
UtcSeconds ElapsedExpansion::firstChange(UtcSeconds from, UtcSeconds to) const
{
    const auto offset = [this](UtcSeconds at) {
        return m_zone.toLocal(at).time_since_epoch() - at.time_since_epoch();
    };
    const auto before = offset(from);
    if (offset(to) == before)
        return to;
    while (to - from > seconds{1}) {
        const auto middle = from + (to - from) / 2;
        (offset(middle) == before ? from : to) = middle;
    }
    return to;
}

/// True when a whole cycle has passed without an instance: the next ones would pass in the same way.
bool ElapsedExpansion::isBarrenForGood(UtcSeconds utc) const
{
    const auto since = std::max({m_last, m_searchBegin, kZonesAreRegular});
    return utc > since && (utc - since).count() > m_cycle;
}

}
