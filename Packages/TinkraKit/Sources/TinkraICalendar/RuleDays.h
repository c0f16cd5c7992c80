#pragma once

#include "TinkraICalendar/RecurrenceRule.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace Tinkra::ICalendar {

using LocalDays = std::chrono::local_days;

/// The days of one period, in order; without a heap, because one is filled for each period.
class DayList {
public:
    void clear() { m_size = 0; }
    void add(LocalDays day) { m_days[m_size++] = day; }

    std::size_t size() const { return m_size; }
    LocalDays operator[](std::size_t i) const { return m_days[i]; }

private:
    std::array<LocalDays, 7 * 53> m_days; // the longest year, counted in weeks
    std::size_t m_size = 0;
};

/// The parts of a rule that speak of days: BYMONTH, BYWEEKNO, BYYEARDAY, BYMONTHDAY and BYDAY, as RFC 5545,
/// section 3.3.10, lets them expand or limit, with what they leave open taken from DTSTART. The rule must
/// outlive this value.
class RuleDays {
public:
    RuleDays(const RecurrenceRule& rule, LocalDays start);

    /// False when every day is allowed.
    bool isLimited() const { return m_isLimited; }

    /// Whether no part excludes the day; numbers in BYDAY do not count here. For DAILY and finer rules.
    bool allows(LocalDays day) const;

    /// Adds the days that a WEEKLY, MONTHLY or YEARLY rule gives for one period.
    void addWeek(LocalDays firstDay, DayList& days) const;
    void addMonth(std::chrono::year_month month, DayList& days) const;
    void addYear(std::chrono::year year, DayList& days) const;

    /// How many days each period has, where that never varies.
    std::optional<std::size_t> constantSize() const;

    /// The first day of week 1, the first week with at least four days in the year.
    LocalDays weekOne(std::chrono::year year) const;

    /// The year to whose weeks the day belongs.
    std::chrono::year weekYear(LocalDays day) const;

private:
    using DayMask = std::uint32_t; // bit n: day n of a month

    void fillGaps(LocalDays start);
    bool allowsByDate(LocalDays day, std::chrono::year_month_day date) const;
    bool allowsMonth(std::chrono::month month) const;
    bool allowsYearDay(LocalDays day, std::chrono::year year) const;
    bool allowsWeek(LocalDays day) const;
    DayMask monthDays(int length) const;
    DayMask weekdays(LocalDays firstDay, int length, bool withNumbers) const;
    std::array<DayMask, 13> numberedWeekdaysOfYear(std::chrono::year year) const;
    std::array<DayMask, 13> yearDays(std::chrono::year year) const;
    void addWeeksOfYear(std::chrono::year year, DayList& days) const;

    const RecurrenceRule& m_rule;
    DayMask m_monthDays = 0;
    DayMask m_monthDaysFromEnd = 0; // bit n: BYMONTHDAY=-n
    std::uint16_t m_months = 0; // bit n: month n
    std::uint8_t m_weekdays = 0; // bit n: weekday n from Sunday = 0, without a number
    bool m_hasMonthDays;
    bool m_hasWeekdays;
    bool m_numbersCountInMonth;
    bool m_isLimited;
    bool m_hasNumbers = false;
    bool m_isLeapDay = false; // DTSTART is
    bool m_isLateInMonth = false; // DTSTART is on a day that not every month has
};

}
