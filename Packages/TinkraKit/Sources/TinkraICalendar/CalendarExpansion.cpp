#include "TinkraICalendar/CalendarExpansion.h"

#include <algorithm>

namespace Tinkra::ICalendar {

namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::year;
using std::chrono::year_month_day;

constexpr std::int64_t kYearAfterAll = 10'000;
constexpr std::int64_t kDayAfterAll = LocalDays{year{10'000} / 1 / 1}.time_since_epoch().count();

/// After so many periods the Gregorian calendar repeats, whatever the interval: the cycle of 400 years is a
/// whole number of days, weeks, months and years.
std::int64_t periodsInCycle(Frequency frequency)
{
    switch (frequency) {
    case Frequency::Daily:
        return 146'097;
    case Frequency::Weekly:
        return 20'871;
    case Frequency::Monthly:
        return 4'800;
    default:
        return 400;
    }
}

std::int64_t floorDivided(std::int64_t a, std::int64_t b)
{
    return a / b - (a % b < 0 ? 1 : 0);
}

}

CalendarExpansion::CalendarExpansion(
    const RecurrenceRule& rule, const SeriesStart& start, InstanceFilter& filter)
    : m_rule(rule)
    , m_start(start)
    , m_filter(filter)
    , m_startDay(floor<days>(start.local))
    , m_startWeek(m_startDay - (std::chrono::weekday{m_startDay} - rule.weekStart))
    , m_days(rule, m_startDay)
    , m_times(start.isDate ? PeriodTimes::only(start.local - m_startDay)
                           : PeriodTimes::ofDay(rule, start.local - m_startDay))
    , m_positions(rule.bySetPos)
    , m_interval(rule.interval)
    , m_origin(unitOf(m_startDay))
{
}

void CalendarExpansion::run()
{
    if (!m_filter.takeStart())
        return;
    auto period = firstPeriod();
    std::int64_t emptyPeriods = 0;
    while (period && beginOf(*period) <= m_filter.lastDay()) {
        fill(*period);
        const auto end = takePeriod();
        emptyPeriods = end == PeriodEnd::WasEmpty ? emptyPeriods + 1 : 0;
        if (end == PeriodEnd::Stop || emptyPeriods > periodsInCycle(m_rule.frequency) || !m_filter.mayGoOn())
            return;
        ++*period;
    }
}

bool CalendarExpansion::startFits()
{
    fill(0);
    bool fits = false;
    forEachLocal([&](LocalSeconds local) {
        fits = fits || local == m_start.local;
        return !fits;
    });
    return fits;
}

/// The number of the day, week, month or year.
std::int64_t CalendarExpansion::unitOf(LocalDays day) const
{
    const year_month_day date{day};
    switch (m_rule.frequency) {
    case Frequency::Daily:
        return day.time_since_epoch().count();
    case Frequency::Weekly:
        return floorDivided((day - m_startWeek).count(), 7);
    case Frequency::Monthly:
        return static_cast<int>(date.year()) * std::int64_t{12} + static_cast<unsigned>(date.month()) - 1;
    default:
        return static_cast<int>(m_rule.byWeekNo.empty() ? date.year() : m_days.weekYear(day));
    }
}

std::int64_t CalendarExpansion::periodOf(LocalDays day) const
{
    return floorDivided(unitOf(day) - m_origin, m_interval);
}

LocalDays CalendarExpansion::beginOf(std::int64_t period) const
{
    const auto unit = m_origin + period * m_interval;
    const auto yearOf = [](std::int64_t number) {
        return year{static_cast<int>(std::min<std::int64_t>(number, kYearAfterAll))};
    };
    switch (m_rule.frequency) {
    case Frequency::Daily:
        return LocalDays{days{std::min(unit, kDayAfterAll)}};
    case Frequency::Weekly:
        return m_startWeek + days{7 * std::min(unit, kDayAfterAll / 7)};
    case Frequency::Monthly:
        return LocalDays{
            yearOf(floorDivided(unit, 12)) / static_cast<int>(unit - floorDivided(unit, 12) * 12 + 1) / 1};
    default:
        return m_rule.byWeekNo.empty() ? LocalDays{yearOf(unit) / 1 / 1} : m_days.weekOne(yearOf(unit));
    }
}

void CalendarExpansion::fill(std::int64_t period)
{
    m_list.clear();
    const auto begin = beginOf(period);
    switch (m_rule.frequency) {
    case Frequency::Daily:
        if (m_days.allows(begin))
            m_list.add(begin);
        break;
    case Frequency::Weekly:
        m_days.addWeek(begin, m_list);
        break;
    case Frequency::Monthly:
        m_days.addMonth(year_month_day{begin}.year() / year_month_day{begin}.month(), m_list);
        break;
    default:
        m_days.addYear(year{static_cast<int>(m_origin + period * m_interval)}, m_list);
    }
}

/// The first period that can reach into the range; COUNT must be counted up to it. Nothing when that uses it
/// up.
std::optional<std::int64_t> CalendarExpansion::firstPeriod()
{
    const auto first = periodOf(m_filter.firstDay());
    if (first <= 0)
        return 0;
    if (!m_rule.count)
        return first;
    const auto daysInEach = m_days.constantSize();
    if (!daysInEach)
        return 0;
    const auto size = *daysInEach * m_times.size();
    const auto inEach = m_positions.chooseAll() ? size : m_positions.of(size).size();
    fill(0);
    const bool isLeft =
        m_filter.skip(instancesAfterStart()) && m_filter.skip(static_cast<std::uint64_t>(first - 1) * inEach);
    return isLeft ? std::optional(first) : std::nullopt;
}

std::uint64_t CalendarExpansion::instancesAfterStart()
{
    std::uint64_t count = 0;
    forEachLocal([&](LocalSeconds local) {
        count += local > m_start.local ? 1 : 0;
        return true;
    });
    return count;
}

/// Calls `take` with the times of the filled period that BYSETPOS leaves, until it gives false.
template <typename Take> CalendarExpansion::PeriodEnd CalendarExpansion::forEachLocal(Take take)
{
    const auto at = [this](std::size_t day, std::size_t time) { return m_list[day] + m_times[time]; };
    if (m_positions.chooseAll()) {
        for (std::size_t day = 0; day < m_list.size(); ++day) {
            for (std::size_t time = 0; time < m_times.size(); ++time) {
                if (!take(at(day, time)))
                    return PeriodEnd::Stop;
            }
        }
        return m_list.size() == 0 ? PeriodEnd::WasEmpty : PeriodEnd::HadInstances;
    }
    const auto& places = m_positions.of(m_list.size() * m_times.size());
    for (const auto place : places) {
        if (!take(at(place / m_times.size(), place % m_times.size())))
            return PeriodEnd::Stop;
    }
    return places.empty() ? PeriodEnd::WasEmpty : PeriodEnd::HadInstances;
}

CalendarExpansion::PeriodEnd CalendarExpansion::takePeriod()
{
    return forEachLocal([this](LocalSeconds local) {
        if (local <= m_start.local)
            return true;
        if (local < m_filter.firstDay())
            return m_filter.skip(1);
        if (local >= m_filter.lastDay() + days{1})
            return false;
        return m_filter.take(local, m_start.zone->toUtc(local));
    });
}

}
