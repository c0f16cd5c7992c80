#include "TinkraICalendar/TimeValue.h"

#include "TinkraICalendar/Property.h"

#include <algorithm>
#include <string>

namespace Tinkra::ICalendar {

namespace {

using namespace std::chrono;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// The number that the first `count` characters of `text` write, or -1.
int digits(std::string_view text, std::size_t at, std::size_t count)
{
    if (at + count > text.size())
        return -1;
    int number = 0;
    for (auto i = at; i < at + count; ++i) {
        if (!isDigit(text[i]))
            return -1;
        number = number * 10 + (text[i] - '0');
    }
    return number;
}

std::optional<LocalSeconds> parseDate(std::string_view text)
{
    const auto y = digits(text, 0, 4);
    const auto m = digits(text, 4, 2);
    const auto d = digits(text, 6, 2);
    if (y < 0 || m < 0 || d < 0)
        return {};
    const year_month_day date{year{y}, month{static_cast<unsigned>(m)}, day{static_cast<unsigned>(d)}};
    if (!date.ok())
        return {};
    return LocalSeconds{local_days{date}};
}

/// The time of day in "hhmmss" or "hhmm".
std::optional<seconds> parseTimeOfDay(std::string_view text)
{
    const auto h = digits(text, 0, 2);
    const auto m = digits(text, 2, 2);
    const auto s = text.size() == 4 ? 0 : digits(text, 4, 2);
    if ((text.size() != 4 && text.size() != 6) || h < 0 || h > 23 || m < 0 || m > 59 || s < 0 || s > 60)
        return {};
    return hours{h} + minutes{m} + seconds{std::min(s, 59)};
}

bool isZulu(char c)
{
    return c == 'Z' || c == 'z';
}

/// "19970714T173012", "19970714T173012Z" or "19970714": what nearly every value looks like.
std::optional<TimeValue> parseBasic(std::string_view value)
{
    const auto date = parseDate(value);
    if (!date)
        return {};
    if (value.size() == 8)
        return TimeValue{*date, TimeForm::Date};
    const bool isUtc = isZulu(value.back());
    const auto length = value.size() - (isUtc ? 1 : 0);
    if ((value[8] != 'T' && value[8] != 't') || length < 9)
        return {};
    const auto timeOfDay = parseTimeOfDay(value.substr(9, length - 9));
    if (!timeOfDay)
        return {};
    return TimeValue{*date + *timeOfDay, isUtc ? TimeForm::Utc : TimeForm::Local};
}

/// Other ISO 8601 forms, brought into the basic one.
std::optional<TimeValue> parseExtended(std::string_view value)
{
    if (value.size() > 40)
        return {};
    const auto marker = std::min(value.find_first_of("Tt "), value.size());
    auto time = value.substr(marker);
    std::optional<seconds> offset;
    if (const auto sign = time.find_first_of("+-"); sign != std::string_view::npos) {
        offset = parseUtcOffset(time.substr(sign));
        if (!offset)
            return {};
        time = time.substr(0, sign);
    }
    std::string basic;
    const auto append = [&basic](std::string_view part, char separator) {
        std::copy_if(
            part.begin(), part.end(), std::back_inserter(basic), [=](char c) { return c != separator; });
    };
    append(value.substr(0, marker), '-');
    if (!time.empty()) {
        basic += 'T';
        const auto point = std::min(time.find_first_of(".,"), time.size());
        append(time.substr(1, point - std::min<std::size_t>(point, 1)), ':');
        if (point < time.size() && isZulu(time.back()))
            basic += 'Z';
    }
    auto result = parseBasic(basic);
    if (result && offset && result->form == TimeForm::Local)
        return TimeValue{result->time - *offset, TimeForm::Utc};
    return result;
}

}

std::optional<TimeValue> parseTime(std::string_view value)
{
    value = trimmed(value);
    const auto basic = parseBasic(value);
    return basic ? basic : parseExtended(value);
}

std::optional<Duration> parseDuration(std::string_view value)
{
    constexpr std::int64_t longest = 10'000LL * 366 * 86'400;
    value = trimmed(value);
    bool isNegative = false;
    if (value.starts_with('-') || value.starts_with('+')) {
        isNegative = value.front() == '-';
        value.remove_prefix(1);
    }
    if (!value.starts_with('P') && !value.starts_with('p'))
        return {};
    value.remove_prefix(1);

    std::int64_t nominal = 0;
    std::int64_t exact = 0;
    std::int64_t number = 0;
    bool hasNumber = false;
    bool hasPart = false;
    bool isTime = false;
    for (const char c : value) {
        if (isDigit(c)) {
            number = std::min(number * 10 + (c - '0'), longest);
            hasNumber = true;
            continue;
        }
        if (c == 'T' || c == 't') {
            if (hasNumber)
                return {};
            isTime = true;
            continue;
        }
        if (!hasNumber)
            return {};
        const auto add = [&number, longest](std::int64_t& sum, std::int64_t unit) {
            sum = std::min(sum + std::min(number, longest / unit) * unit, longest);
        };
        switch (c) {
        case 'W':
        case 'w':
            add(nominal, 7LL * 86'400);
            break;
        case 'D':
        case 'd':
            add(nominal, 86'400);
            break;
        case 'H':
        case 'h':
            add(exact, 3'600);
            break;
        case 'M':
        case 'm':
            if (!isTime) // months are not part of the standard
                return {};
            add(exact, 60);
            break;
        case 'S':
        case 's':
            add(exact, 1);
            break;
        default:
            return {};
        }
        number = 0;
        hasNumber = false;
        hasPart = true;
    }
    if (!hasPart || hasNumber)
        return {};
    const int sign = isNegative ? -1 : 1;
    return Duration{days{static_cast<int>(sign * (nominal / 86'400))}, seconds{sign * exact}};
}

std::optional<seconds> parseUtcOffset(std::string_view value)
{
    value = trimmed(value);
    if (!value.starts_with('+') && !value.starts_with('-'))
        return {};
    const int sign = value.front() == '-' ? -1 : 1;
    std::string plain;
    for (const char c : value.substr(1, 8)) {
        if (c != ':')
            plain += c;
    }
    if (value.size() > 9)
        return {};
    if (plain.size() == 2)
        plain += "00";
    const auto offset = parseTimeOfDay(plain);
    if (!offset)
        return {};
    return sign * *offset;
}

}
