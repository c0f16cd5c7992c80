#include "TinkraICalendar/RuleDays.h"

#include <bit>
#include <cstdlib>

namespace Tinkra::ICalendar {

namespace {

using std::chrono::days;
using std::chrono::month;
using std::chrono::weekday;
using std::chrono::year;
using std::chrono::year_month;
using std::chrono::year_month_day;

constexpr std::uint32_t kEveryWeek = 0x10204081U; // bits 0, 7, 14, 21, 28
constexpr std::uint16_t kAllMonths = 0x1FFE;

std::uint32_t bit(int n)
{
    return 1U << static_cast<unsigned>(n);
}

/// Bits 1 to `length`.
std::uint32_t allDays(int length)
{
    return (bit(length) - 1) << 1U;
}

int lengthOf(year_month of)
{
    return static_cast<int>(static_cast<unsigned>((of / std::chrono::last).day()));
}

LocalDays newYear(year of)
{
    return LocalDays{of / 1 / 1};
}

int lengthOf(year of)
{
    return of.is_leap() ? 366 : 365;
}

/// The place counted from the beginning, 1 and up, of one that may be counted from the end.
int fromBeginning(int place, int length)
{
    return place > 0 ? place : length + 1 + place;
}

template <typename Mask, typename Visit> void forEachBit(Mask mask, Visit visit)
{
    for (; mask != 0; mask &= mask - 1)
        visit(std::countr_zero(mask));
}

std::size_t index(month of)
{
    return static_cast<unsigned>(of);
}

int daysUntil(weekday from, weekday to)
{
    return static_cast<int>((to - from).count());
}

}

RuleDays::RuleDays(const RecurrenceRule& rule, LocalDays start)
    : m_rule(rule)
    , m_hasMonthDays(!rule.byMonthDay.empty())
    , m_hasWeekdays(!rule.byDay.empty())
    , m_numbersCountInMonth(rule.frequency == Frequency::Monthly || !rule.byMonth.empty())
    , m_isLimited(!rule.byMonth.empty() || m_hasMonthDays || m_hasWeekdays || !rule.byYearDay.empty()
          || !rule.byWeekNo.empty())
{
    for (const auto n : rule.byMonth)
        m_months |= static_cast<std::uint16_t>(bit(n));
    for (const auto n : rule.byMonthDay)
        (n > 0 ? m_monthDays : m_monthDaysFromEnd) |= bit(std::abs(n));

    const bool countsInPeriod = rule.frequency == Frequency::Monthly
        || (rule.frequency == Frequency::Yearly && rule.byWeekNo.empty());
    for (const auto& day : rule.byDay) {
        if (day.number != 0 && countsInPeriod)
            m_hasNumbers = true;
        else
            m_weekdays |= static_cast<std::uint8_t>(bit(static_cast<int>(day.weekday.c_encoding())));
    }
    fillGaps(start);
    if (m_months == 0)
        m_months = kAllMonths;
}

/// "Information, not contained in the rule, necessary to determine the various recurrence instance start time
/// and dates are derived from DTSTART" (RFC 5545, section 3.3.10).
void RuleDays::fillGaps(LocalDays start)
{
    if (m_rule.frequency < Frequency::Weekly)
        return;
    const year_month_day date{start};
    const bool isYearly = m_rule.frequency == Frequency::Yearly;
    const bool saysDayOfYear = !m_rule.byYearDay.empty();
    const bool saysWeek = !m_rule.byWeekNo.empty();
    const bool saysDay = m_hasMonthDays || m_hasWeekdays || saysDayOfYear;
    const auto startMonth = static_cast<std::uint16_t>(bit(static_cast<int>(index(date.month()))));

    if (!saysDay && (saysWeek || m_rule.frequency == Frequency::Weekly)) {
        m_weekdays = static_cast<std::uint8_t>(bit(static_cast<int>(weekday{start}.c_encoding())));
        m_hasWeekdays = true;
    } else if (!saysDay) {
        const auto day = static_cast<int>(static_cast<unsigned>(date.day()));
        m_monthDays = bit(day);
        m_hasMonthDays = true;
        m_isLateInMonth = day > 28;
        m_isLeapDay = day == 29 && date.month() == std::chrono::February;
        if (isYearly && m_months == 0)
            m_months = startMonth;
    } else if (isYearly && m_hasMonthDays && m_months == 0 && !saysWeek && !saysDayOfYear) {
        m_months = startMonth;
    }
}

bool RuleDays::allowsMonth(month of) const
{
    return (m_months & bit(static_cast<int>(index(of)))) != 0;
}

bool RuleDays::allowsYearDay(LocalDays day, year of) const
{
    const auto place = static_cast<int>((day - newYear(of)).count()) + 1;
    for (const int wanted : m_rule.byYearDay) {
        if (fromBeginning(wanted, lengthOf(of)) == place)
            return true;
    }
    return false;
}

bool RuleDays::allowsWeek(LocalDays day) const
{
    const year of = weekYear(day);
    const auto weeks = static_cast<int>((weekOne(of + std::chrono::years{1}) - weekOne(of)).count()) / 7;
    const auto week = static_cast<int>((day - weekOne(of)).count()) / 7 + 1;
    for (const auto wanted : m_rule.byWeekNo) {
        if (fromBeginning(wanted, weeks) == week)
            return true;
    }
    return false;
}

bool RuleDays::allowsByDate(LocalDays day, year_month_day date) const
{
    if (!allowsMonth(date.month()))
        return false;
    if (m_hasWeekdays && (m_weekdays & bit(static_cast<int>(weekday{day}.c_encoding()))) == 0)
        return false;
    if (m_hasMonthDays) {
        const auto mask = monthDays(lengthOf(date.year() / date.month()));
        if ((mask & bit(static_cast<int>(static_cast<unsigned>(date.day())))) == 0)
            return false;
    }
    return m_rule.byYearDay.empty() || allowsYearDay(day, date.year());
}

bool RuleDays::allows(LocalDays day) const
{
    return !m_isLimited
        || (allowsByDate(day, year_month_day{day}) && (m_rule.byWeekNo.empty() || allowsWeek(day)));
}

RuleDays::DayMask RuleDays::monthDays(int length) const
{
    DayMask mask = m_monthDays;
    forEachBit(m_monthDaysFromEnd, [&](int place) {
        if (place <= length)
            mask |= bit(length + 1 - place);
    });
    return mask & allDays(length);
}

RuleDays::DayMask RuleDays::weekdays(LocalDays firstDay, int length, bool withNumbers) const
{
    const weekday first{firstDay};
    DayMask mask = 0;
    forEachBit(m_weekdays, [&](int day) {
        mask |=
            kEveryWeek << static_cast<unsigned>(1 + daysUntil(first, weekday{static_cast<unsigned>(day)}));
    });
    if (withNumbers) {
        for (const auto& wanted : m_rule.byDay) {
            if (wanted.number == 0)
                continue;
            const int earliest = 1 + daysUntil(first, wanted.weekday);
            const int count = (length - earliest) / 7 + 1;
            const int week = fromBeginning(wanted.number, count);
            if (week >= 1 && week <= count)
                mask |= bit(earliest + 7 * (week - 1));
        }
    }
    return mask & allDays(length);
}

void RuleDays::addWeek(LocalDays firstDay, DayList& list) const
{
    const bool isLimited =
        m_months != kAllMonths || m_hasMonthDays || !m_rule.byYearDay.empty() || !m_rule.byWeekNo.empty();
    for (auto day = firstDay; day < firstDay + days{7}; day += days{1}) {
        const bool fits =
            !m_hasWeekdays || (m_weekdays & bit(static_cast<int>(weekday{day}.c_encoding()))) != 0;
        if (fits && (!isLimited || allows(day)))
            list.add(day);
    }
}

void RuleDays::addMonth(year_month of, DayList& list) const
{
    if (!allowsMonth(of.month()))
        return;
    const LocalDays firstDay{of / 1};
    const int length = lengthOf(of);
    DayMask mask = allDays(length);
    if (m_hasMonthDays)
        mask &= monthDays(length);
    if (m_hasWeekdays)
        mask &= weekdays(firstDay, length, true);
    forEachBit(mask, [&](int n) {
        const auto day = firstDay + days{n - 1};
        if ((m_rule.byYearDay.empty() || allowsYearDay(day, of.year()))
            && (m_rule.byWeekNo.empty() || allowsWeek(day)))
            list.add(day);
    });
}

namespace {

template <typename Masks> void markDayOfYear(Masks& masks, year of, int place)
{
    const year_month_day date{newYear(of) + days{place - 1}};
    masks[index(date.month())] |= bit(static_cast<int>(static_cast<unsigned>(date.day())));
}

}

std::array<RuleDays::DayMask, 13> RuleDays::numberedWeekdaysOfYear(year of) const
{
    std::array<DayMask, 13> masks{};
    for (const auto& wanted : m_rule.byDay) {
        if (wanted.number == 0)
            continue;
        const int earliest = 1 + daysUntil(weekday{newYear(of)}, wanted.weekday);
        const int count = (lengthOf(of) - earliest) / 7 + 1;
        const int week = fromBeginning(wanted.number, count);
        if (week >= 1 && week <= count)
            markDayOfYear(masks, of, earliest + 7 * (week - 1));
    }
    return masks;
}

std::array<RuleDays::DayMask, 13> RuleDays::yearDays(year of) const
{
    std::array<DayMask, 13> masks{};
    for (const int wanted : m_rule.byYearDay) {
        const int place = fromBeginning(wanted, lengthOf(of));
        if (place >= 1 && place <= lengthOf(of))
            markDayOfYear(masks, of, place);
    }
    return masks;
}

void RuleDays::addYear(year of, DayList& list) const
{
    if (!m_rule.byWeekNo.empty())
        return addWeeksOfYear(of, list);

    const bool numbersCountInYear = m_hasNumbers && !m_numbersCountInMonth;
    const auto numbered = numbersCountInYear ? numberedWeekdaysOfYear(of) : std::array<DayMask, 13>{};
    const auto places = m_rule.byYearDay.empty() ? std::array<DayMask, 13>{} : yearDays(of);
    forEachBit(std::uint32_t{m_months}, [&](int n) {
        const year_month thisMonth = of / n;
        const LocalDays firstDay{thisMonth / 1};
        const int length = lengthOf(thisMonth);
        DayMask mask = allDays(length);
        if (m_hasMonthDays)
            mask &= monthDays(length);
        if (m_hasWeekdays)
            mask &= weekdays(firstDay, length, m_numbersCountInMonth) | numbered[static_cast<std::size_t>(n)];
        if (!m_rule.byYearDay.empty())
            mask &= places[static_cast<std::size_t>(n)];
        forEachBit(mask, [&](int day) { list.add(firstDay + days{day - 1}); });
    });
}

void RuleDays::addWeeksOfYear(year of, DayList& list) const
{
    const auto first = weekOne(of);
    const auto count = static_cast<int>((weekOne(of + std::chrono::years{1}) - first).count()) / 7;
    std::uint64_t weeks = 0;
    for (const auto wanted : m_rule.byWeekNo) {
        const int week = fromBeginning(wanted, count);
        if (week >= 1 && week <= count)
            weeks |= std::uint64_t{1} << static_cast<unsigned>(week);
    }
    forEachBit(weeks, [&](int week) {
        const auto begin = first + days{7 * (week - 1)};
        for (auto day = begin; day < begin + days{7}; day += days{1}) {
            if (allowsByDate(day, year_month_day{day}))
                list.add(day);
        }
    });
}

LocalDays RuleDays::weekOne(year of) const
{
    const LocalDays fourth{of / 1 / 4}; // always in week 1
    return fourth - (weekday{fourth} - m_rule.weekStart);
}

year RuleDays::weekYear(LocalDays day) const
{
    const year of = year_month_day{day}.year();
    if (day < weekOne(of))
        return of - std::chrono::years{1};
    const year next = of + std::chrono::years{1};
    return day >= weekOne(next) ? next : of;
}

std::optional<std::size_t> RuleDays::constantSize() const
{
    const bool saysYearPlaces = !m_rule.byYearDay.empty() || !m_rule.byWeekNo.empty();
    const auto dayParts = m_rule.byDay.size() + m_rule.byMonthDay.size();
    switch (m_rule.frequency) {
    case Frequency::Daily:
        return m_isLimited ? std::nullopt : std::optional<std::size_t>(1);
    case Frequency::Weekly:
        if (saysYearPlaces || m_months != kAllMonths || m_hasMonthDays)
            return std::nullopt;
        return static_cast<std::size_t>(std::popcount(m_weekdays));
    case Frequency::Monthly:
        if (saysYearPlaces || m_months != kAllMonths || dayParts > 1 || m_isLateInMonth)
            return std::nullopt;
        if (!m_rule.byMonthDay.empty() && std::abs(m_rule.byMonthDay.front()) > 28)
            return std::nullopt;
        if (!m_rule.byDay.empty()
            && (m_rule.byDay.front().number == 0 || std::abs(m_rule.byDay.front().number) > 4))
            return std::nullopt;
        return 1;
    case Frequency::Yearly:
        if (saysYearPlaces || dayParts > 0 || (m_isLateInMonth && (!m_rule.byMonth.empty() || m_isLeapDay)))
            return std::nullopt;
        return static_cast<std::size_t>(std::popcount(m_months));
    default:
        return std::nullopt;
    }
}

}
