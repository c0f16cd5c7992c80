#pragma once

#include "TinkraICalendar/RecurrenceRule.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>

namespace Tinkra::ICalendar {

/// The times within one day, hour or minute: each hour with each minute with each second, in order.
class PeriodTimes {
public:
    /// Of one day: BYHOUR, BYMINUTE and BYSECOND, each from `otherwise` where the rule does not say.
    static PeriodTimes ofDay(const RecurrenceRule& rule, std::chrono::seconds otherwise)
    {
        return {rule.byHour, rule.byMinute, rule.bySecond, otherwise};
    }

    /// Of one hour: BYMINUTE and BYSECOND.
    static PeriodTimes ofHour(const RecurrenceRule& rule, std::chrono::seconds otherwise)
    {
        return {kNone, rule.byMinute, rule.bySecond, otherwise};
    }

    /// Of one minute: BYSECOND.
    static PeriodTimes ofMinute(const RecurrenceRule& rule, std::chrono::seconds otherwise)
    {
        return {kNone, kNone, rule.bySecond, otherwise};
    }

    /// Of one day, when it has a single time.
    static PeriodTimes only(std::chrono::seconds time) { return {kNone, kNone, kNone, time}; }

    std::size_t size() const { return m_size; }

    std::chrono::seconds operator[](std::size_t i) const
    {
        if (m_size == 1)
            return m_first;
        const auto [minutePlace, second] = part(m_seconds, i, m_otherwise.count() % 60);
        const auto [hourPlace, minute] = part(m_minutes, minutePlace, m_otherwise.count() / 60 % 60);
        const auto hour = part(m_hours, hourPlace, m_otherwise.count() / 3600).value;
        return std::chrono::seconds{(hour * 60 + minute) * 60 + second};
    }

private:
    using List = std::span<const std::uint8_t>;
    static constexpr List kNone{};

    struct Part {
        std::size_t rest;
        std::int64_t value;
    };

    PeriodTimes(List hours, List minutes, List seconds, std::chrono::seconds otherwise)
        : m_hours(hours)
        , m_minutes(minutes)
        , m_seconds(seconds)
        , m_otherwise(otherwise)
        , m_size(sizeOf(hours) * sizeOf(minutes) * sizeOf(seconds))
    {
        const auto first = [](List list, std::int64_t value) { return list.empty() ? value : list.front(); };
        m_first = std::chrono::seconds{
            (first(hours, otherwise.count() / 3600) * 60 + first(minutes, otherwise.count() / 60 % 60)) * 60
            + first(seconds, otherwise.count() % 60)};
    }

    static std::size_t sizeOf(List list) { return list.empty() ? 1 : list.size(); }

    static Part part(List list, std::size_t i, std::int64_t otherwise)
    {
        return list.empty() ? Part{i, otherwise} : Part{i / list.size(), list[i % list.size()]};
    }

    List m_hours;
    List m_minutes;
    List m_seconds;
    std::chrono::seconds m_otherwise;
    std::chrono::seconds m_first{0};
    std::size_t m_size;
};

}
