#include "TinkraICalendar/SeriesBound.h"

#include <algorithm>
#include <optional>

namespace Tinkra::ICalendar {

namespace {

using namespace std::chrono;

// UNTIL and the start may be on different clocks, which differ by a day at most.
constexpr days zoneSlack{2};

/// Counts beyond this are not worth an exact answer, and their product could overflow.
constexpr std::uint32_t largestFactor = 100'000;

bool hasDayOf(const std::vector<std::int8_t>& monthDays, int latest)
{
    return std::any_of(monthDays.begin(), monthDays.end(), [=](int day) { return day > 0 && day <= latest; });
}

/// Every month has each of its weekdays at least four times.
bool isInEveryMonth(const RecurrenceRule& rule)
{
    const auto upToFour = [](int number) { return number >= -4 && number <= 4; };
    const bool anyDay = std::any_of(
        rule.byDay.begin(), rule.byDay.end(), [=](const WeekdayNumber& day) { return upToFour(day.number); });
    const bool isPlain = std::all_of(
        rule.byDay.begin(), rule.byDay.end(), [](const WeekdayNumber& day) { return day.number == 0; });
    const bool anyPosition = std::any_of(rule.bySetPos.begin(), rule.bySetPos.end(), upToFour);
    return anyDay && (rule.bySetPos.empty() || (isPlain && anyPosition));
}

/// The longest time from one occurrence to the next with INTERVAL=1, for rules that have one in every period.
std::optional<days> longestStep(const RecurrenceRule& rule, LocalSeconds start)
{
    if (!rule.byYearDay.empty() || !rule.byWeekNo.empty() || !rule.byMonth.empty())
        return {};
    const auto date = year_month_day{floor<days>(start)};
    switch (rule.frequency) {
    case Frequency::Daily:
        if (rule.byDay.empty() && rule.byMonthDay.empty() && rule.bySetPos.empty())
            return days{1};
        return {};
    case Frequency::Weekly:
        if (rule.byMonthDay.empty() && rule.bySetPos.empty())
            return days{7};
        return {};
    case Frequency::Monthly:
        if (rule.byDay.empty() && rule.bySetPos.empty()
            && (rule.byMonthDay.empty() ? date.day() <= day{28} : hasDayOf(rule.byMonthDay, 28)))
            return days{31};
        if (rule.byMonthDay.empty() && isInEveryMonth(rule))
            return days{31};
        return {};
    case Frequency::Yearly:
        if (rule.byDay.empty() && rule.byMonthDay.empty() && rule.bySetPos.empty()
            && date.month() / date.day() != February / 29)
            return days{366};
        return {};
    case Frequency::Secondly:
    case Frequency::Minutely:
    case Frequency::Hourly:
        return {};
    }
    return {};
}

}

LocalSeconds lastPossibleStart(const RecurrenceRule& rule, LocalSeconds start)
{
    auto last = LocalSeconds::max();
    if (rule.until) {
        const auto until = std::visit([](auto time) { return time.time_since_epoch(); }, *rule.until);
        last = std::max(start, LocalSeconds{until} + zoneSlack);
    }
    if (rule.count && *rule.count <= largestFactor && rule.interval <= largestFactor) {
        if (const auto step = longestStep(rule, start)) {
            // One period more than the count: DTSTART may lie late in the first one, or not fit the rule.
            const auto periods = (static_cast<std::int64_t>(*rule.count) + 1) * rule.interval;
            last = std::min(last, start + hours{24 * step->count() * periods});
        }
    }
    return last;
}

}
