#include "TinkraICalendar/PosixZoneRule.h"

#include <charconv>

namespace Tinkra::ICalendar {

namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

/// Takes the parts of a TZ text from its front; each function leaves the text alone when it does not fit.
class Scanner {
public:
    explicit Scanner(std::string_view text)
        : m_rest(text)
    {
    }

    bool isAtEnd() const { return m_rest.empty(); }
    bool isAt(char c) const { return m_rest.starts_with(c); }

    bool take(char c)
    {
        if (!isAt(c))
            return false;
        m_rest.remove_prefix(1);
        return true;
    }

    /// Three or more letters, or anything between angle brackets.
    bool takeName()
    {
        const bool isQuoted = isAt('<');
        const auto length = isQuoted
            ? m_rest.find('>') + 1
            : std::min(m_rest.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"),
                m_rest.size());
        if (length < 3)
            return false;
        m_rest.remove_prefix(length);
        return true;
    }

    std::optional<int> takeNumber(int least, int most)
    {
        int value = 0;
        const auto [end, error] = std::from_chars(m_rest.data(), m_rest.data() + m_rest.size(), value);
        if (error != std::errc{} || isAt('-') || value < least || value > most)
            return std::nullopt;
        m_rest.remove_prefix(static_cast<std::size_t>(end - m_rest.data()));
        return value;
    }

    /// [+-]hh[:mm[:ss]]
    std::optional<seconds> takeTime(int mostHours)
    {
        const bool isNegative = take('-');
        if (!isNegative)
            take('+');
        const auto hour = takeNumber(0, mostHours);
        if (!hour)
            return std::nullopt;
        auto time = seconds{hours{*hour}};
        if (take(':')) {
            const auto minute = takeNumber(0, 59);
            if (!minute)
                return std::nullopt;
            time += minutes{*minute};
            if (take(':')) {
                const auto second = takeNumber(0, 59);
                if (!second)
                    return std::nullopt;
                time += seconds{*second};
            }
        }
        return isNegative ? -time : time;
    }

    std::optional<YearlyMoment> takeMoment()
    {
        YearlyMoment moment;
        std::optional<int> day;
        if (take('M')) {
            const auto month = takeNumber(1, 12);
            const auto week = month && take('.') ? takeNumber(1, 5) : std::nullopt;
            day = week && take('.') ? takeNumber(0, 6) : std::nullopt;
            moment.month = month.value_or(1);
            moment.week = week.value_or(1);
        } else if (take('J')) {
            moment.kind = YearlyMoment::Kind::DayWithoutLeapDay;
            day = takeNumber(1, 365);
        } else {
            moment.kind = YearlyMoment::Kind::DayWithLeapDay;
            day = takeNumber(0, 365);
        }
        if (!day)
            return std::nullopt;
        moment.day = *day;
        if (take('/')) {
            const auto time = takeTime(167);
            if (!time)
                return std::nullopt;
            moment.time = *time;
        }
        return moment;
    }

private:
    std::string_view m_rest;
};

}

LocalSeconds YearlyMoment::in(std::chrono::year year) const
{
    using namespace std::chrono;
    const auto newYear = local_days{year / January / 1};
    switch (kind) {
    case Kind::DayWithLeapDay:
        return newYear + days{day} + time;
    case Kind::DayWithoutLeapDay:
        return newYear + days{day - 1 + (day > 59 && year.is_leap() ? 1 : 0)} + time;
    case Kind::WeekdayOfMonth:
        break;
    }
    const auto of = year / std::chrono::month{static_cast<unsigned>(month)};
    const weekday on{static_cast<unsigned>(day)};
    const auto date =
        week == 5 ? local_days{of / on[last]} : local_days{of / on[static_cast<unsigned>(week)]};
    return date + time;
}

std::vector<ZoneChange> PosixZoneRule::changesIn(std::chrono::year year) const
{
    if (!daylight)
        return {};
    const auto utc = [&](const YearlyMoment& moment, seconds clock) {
        return UtcSeconds{moment.in(year).time_since_epoch() - clock};
    };
    return {{utc(daylight->begin, offset), daylight->offset}, {utc(daylight->end, daylight->offset), offset}};
}

std::optional<PosixZoneRule> parsePosixZoneRule(std::string_view text)
{
    Scanner scanner(text);
    PosixZoneRule rule;
    if (!scanner.takeName())
        return std::nullopt;
    const auto west = scanner.takeTime(23);
    if (!west)
        return std::nullopt;
    rule.offset = -*west;
    if (scanner.isAtEnd())
        return rule;

    PosixZoneRule::Daylight daylight;
    if (!scanner.takeName())
        return std::nullopt;
    daylight.offset = rule.offset + hours{1};
    if (!scanner.isAt(',')) {
        const auto daylightWest = scanner.takeTime(23);
        if (!daylightWest)
            return std::nullopt;
        daylight.offset = -*daylightWest;
    }
    const auto begin = scanner.take(',') ? scanner.takeMoment() : std::nullopt;
    const auto end = begin && scanner.take(',') ? scanner.takeMoment() : std::nullopt;
    if (!begin || !end || !scanner.isAtEnd())
        return std::nullopt;
    daylight.begin = *begin;
    daylight.end = *end;
    rule.daylight = daylight;
    return rule;
}

}
