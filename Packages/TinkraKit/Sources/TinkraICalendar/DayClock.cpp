#include "TinkraICalendar/DayClock.h"

#include <bit>
#include <numeric>
#include <vector>

namespace Tinkra::ICalendar {

namespace {

constexpr std::int64_t kDay = 86'400;
constexpr int kNone = 64;

std::uint64_t bit(int n)
{
    return std::uint64_t{1} << static_cast<unsigned>(n);
}

std::uint64_t maskOf(const std::vector<std::uint8_t>& values, bool limits, int size)
{
    if (!limits || values.empty())
        return bit(size) - 1;
    std::uint64_t mask = 0;
    for (const int value : values)
        mask |= bit(value);
    return mask;
}

bool has(std::uint64_t mask, std::int64_t n)
{
    return (mask >> static_cast<unsigned>(n) & 1U) != 0;
}

/// The first bit that is not before `n`, or kNone.
std::int64_t firstFrom(std::uint64_t mask, std::int64_t n)
{
    return std::countr_zero(mask >> static_cast<unsigned>(n) << static_cast<unsigned>(n));
}

}

DayClock::DayClock(const RecurrenceRule& rule, std::int64_t step)
    : m_hours(maskOf(rule.byHour, true, 24))
    , m_minutes(maskOf(rule.byMinute, rule.frequency <= Frequency::Minutely, 60))
    , m_seconds(maskOf(rule.bySecond, rule.frequency == Frequency::Secondly, 60))
    , m_common(std::gcd(step, kDay))
{
}

DayClock::DayClock(std::int64_t step)
    : m_common(std::gcd(step, kDay))
{
}

std::int64_t DayClock::nextAllowed(std::int64_t time) const
{
    const auto hour = time / 3600;
    const auto minute = time / 60 % 60;
    if (has(m_hours, hour)) {
        if (has(m_minutes, minute)) {
            if (const auto second = firstFrom(m_seconds, time % 60); second != kNone)
                return time - time % 60 + second;
        }
        if (const auto later = firstFrom(m_minutes, minute + 1); later != kNone)
            return hour * 3600 + later * 60 + firstFrom(m_seconds, 0);
    }
    if (const auto later = firstFrom(m_hours, hour + 1); later != kNone)
        return later * 3600 + firstFrom(m_minutes, 0) * 60 + firstFrom(m_seconds, 0);
    return kDay;
}

bool DayClock::isNeverMetFrom(std::int64_t time)
{
    const auto remainder = time % m_common;
    for (const auto& verdict : m_verdicts) {
        if (verdict.remainder == remainder)
            return verdict.isNeverMet;
    }
    bool isNeverMet = true;
    for (auto met = remainder; met < kDay && isNeverMet; met += m_common)
        isNeverMet = nextAllowed(met) != met;
    m_verdicts[m_nextVerdict++ % m_verdicts.size()] = {remainder, isNeverMet};
    return isNeverMet;
}

}
