#include "TimeText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace Tinkra::CommandLine {

namespace {

using namespace std::chrono;

/// Takes what it recognises from the front of the text.
class Scanner {
public:
    explicit Scanner(std::string_view text)
        : m_rest(text)
    {
    }

    bool take(char character)
    {
        if (m_rest.empty() || m_rest.front() != character)
            return false;
        m_rest.remove_prefix(1);
        return true;
    }

    /// Exactly this many digits.
    std::optional<int> digits(std::size_t count)
    {
        if (m_rest.size() < count)
            return std::nullopt;
        int value = 0;
        for (const char digit : m_rest.substr(0, count)) {
            if (digit < '0' || digit > '9')
                return std::nullopt;
            value = value * 10 + (digit - '0');
        }
        m_rest.remove_prefix(count);
        return value;
    }

    /// A number with an optional fraction, to the end of the text.
    std::optional<double> number()
    {
        double value = 0;
        const auto* end = m_rest.data() + m_rest.size();
        const auto [next, error] = std::from_chars(m_rest.data(), end, value, std::chars_format::fixed);
        if (error != std::errc() || next != end || !std::isfinite(value))
            return std::nullopt;
        m_rest = {};
        return value;
    }

    /// The digits after a decimal point, as a part of one.
    double fraction()
    {
        double value = 0;
        for (double weight = 0.1; !m_rest.empty() && m_rest.front() >= '0' && m_rest.front() <= '9';
             weight /= 10) {
            value += weight * (m_rest.front() - '0');
            m_rest.remove_prefix(1);
        }
        return value;
    }

    bool isAtEnd() const { return m_rest.empty(); }

private:
    std::string_view m_rest;
};

struct TimeOfDay {
    seconds sinceMidnight{0};
    double fraction = 0;
};

std::optional<local_days> scanDate(Scanner& scanner)
{
    const auto year = scanner.digits(4);
    const bool isExtended = scanner.take('-');
    const auto month = scanner.digits(2);
    if (isExtended && !scanner.take('-'))
        return std::nullopt;
    const auto day = scanner.digits(2);
    if (!year || !month || !day)
        return std::nullopt;
    const year_month_day date{std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
        std::chrono::day(static_cast<unsigned>(*day))};
    return date.ok() ? std::optional(local_days(date)) : std::nullopt;
}

std::optional<TimeOfDay> scanTimeOfDay(Scanner& scanner)
{
    const auto hour = scanner.digits(2);
    const bool isExtended = scanner.take(':');
    const auto minute = scanner.digits(2);
    if (!hour || !minute || *hour > 24 || *minute > 59)
        return std::nullopt;
    TimeOfDay time{.sinceMidnight = hours(*hour) + minutes(*minute)};
    const bool namesSecond = !isExtended || scanner.take(':');
    if (const auto second = namesSecond ? scanner.digits(2) : std::nullopt) {
        if (*second > 60)
            return std::nullopt;
        time.sinceMidnight += seconds(*second);
        if (scanner.take('.') || scanner.take(','))
            time.fraction = scanner.fraction();
    } else if (isExtended && namesSecond) {
        return std::nullopt;
    }
    if (time.sinceMidnight > hours(24))
        return std::nullopt;
    return time;
}

/// How far the text's clock is ahead of UTC; an empty optional inside when the text does not say.
std::optional<std::optional<seconds>> scanOffset(Scanner& scanner)
{
    if (scanner.isAtEnd())
        return std::optional<seconds>();
    if (scanner.take('Z') || scanner.take('z'))
        return seconds(0);
    const bool isAhead = scanner.take('+');
    if (!isAhead && !scanner.take('-'))
        return std::nullopt;
    const auto hour = scanner.digits(2);
    if (!hour || *hour > 23)
        return std::nullopt;
    seconds offset = hours(*hour);
    if (!scanner.isAtEnd()) {
        scanner.take(':');
        const auto minute = scanner.digits(2);
        if (!minute || *minute > 59)
            return std::nullopt;
        offset += minutes(*minute);
    }
    return isAhead ? offset : -offset;
}

}

std::optional<Instant> parseInstant(std::string_view text, const ICalendar::Zone& viewer)
{
    Scanner scanner(text);
    if (scanner.take('@')) {
        const auto number = scanner.number();
        // Whole seconds that far away are still exact.
        return number && std::abs(*number) < 1e15 ? std::optional(instantAt(*number)) : std::nullopt;
    }
    const auto day = scanDate(scanner);
    if (!day)
        return std::nullopt;
    TimeOfDay time;
    std::optional<seconds> offset;
    if (scanner.take('T') || scanner.take('t') || scanner.take(' ')) {
        const auto scannedTime = scanTimeOfDay(scanner);
        if (!scannedTime)
            return std::nullopt;
        const auto scannedOffset = scanOffset(scanner);
        if (!scannedOffset)
            return std::nullopt;
        time = *scannedTime;
        offset = *scannedOffset;
    }
    if (!scanner.isAtEnd())
        return std::nullopt;

    const ICalendar::LocalSeconds local = *day + time.sinceMidnight;
    const auto utc = offset ? sys_seconds(local.time_since_epoch() - *offset) : viewer.toUtc(local);
    return Instant(utc) + Seconds(time.fraction);
}

std::string utcText(ICalendar::UtcSeconds instant)
{
    const auto day = floor<days>(instant);
    const year_month_day date(day);
    const hh_mm_ss time(instant - day);
    char text[40];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
        static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
        static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
        static_cast<int>(time.seconds().count()));
    return text;
}

std::string utcText(Instant instant)
{
    constexpr sys_seconds first = sys_days(year(0) / January / 1);
    constexpr sys_seconds last = sys_days(year(9999) / December / 31) + seconds(86399);
    const auto clamped = std::clamp(instant, Instant(first), Instant(last));
    const auto rounded = floor<milliseconds>(clamped);
    const auto whole = floor<seconds>(rounded);
    auto text = utcText(whole);
    if (rounded != whole) {
        char fraction[8];
        std::snprintf(fraction, sizeof fraction, ".%03d", static_cast<int>((rounded - whole).count()));
        text.insert(text.size() - 1, fraction);
    }
    return text;
}

std::string localText(const System::DateComponents& components)
{
    constexpr std::array names{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    const local_days day(year_month_day(year(components.year), month(static_cast<unsigned>(components.month)),
        std::chrono::day(static_cast<unsigned>(components.day))));
    char text[64];
    const int length =
        std::snprintf(text, sizeof text, "%s %04d-%02d-%02d %02d:%02d", names[weekday(day).c_encoding()],
            components.year, components.month, components.day, components.hour, components.minute);
    if (components.second != 0)
        std::snprintf(
            text + length, sizeof text - static_cast<std::size_t>(length), ":%02d", components.second);
    return text;
}

std::string isoText(const System::DateComponents& components)
{
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d", components.year, components.month,
        components.day, components.hour, components.minute, components.second);
    return text;
}

}
