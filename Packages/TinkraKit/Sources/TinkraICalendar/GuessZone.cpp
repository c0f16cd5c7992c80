#include "TinkraICalendar/Zone.h"
#include "TinkraICalendar/ZoneNames.h"
#include "TinkraICalendar/ZoneTable.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace Tinkra::ICalendar {

namespace {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

/// Display names that name no city of the zone list.
constexpr std::array<std::pair<std::string_view, const char*>, 13> kRegions{{
    {"Eastern Time", "America/New_York"},
    {"Central Time", "America/Chicago"},
    {"Mountain Time", "America/Denver"},
    {"Pacific Time", "America/Los_Angeles"},
    {"Atlantic Time", "America/Halifax"},
    {"Newfoundland", "America/St_Johns"},
    {"Indiana", "America/Indiana/Indianapolis"},
    {"Saskatchewan", "America/Regina"},
    {"Arizona", "America/Phoenix"},
    {"Alaska", "America/Anchorage"},
    {"Hawaii", "Pacific/Honolulu"},
    {"Chennai", "Asia/Kolkata"},
    {"Edinburgh", "Europe/London"},
}};

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

std::string_view withoutSpace(std::string_view text)
{
    while (text.starts_with(' '))
        text.remove_prefix(1);
    while (text.ends_with(' '))
        text.remove_suffix(1);
    return text;
}

/// "+01:00", "-0930", "+2": what is left of `text` follows it. Nothing when there is none.
std::optional<seconds> takeOffset(std::string_view& text)
{
    auto rest = withoutSpace(text);
    if (!rest.starts_with('+') && !rest.starts_with('-'))
        return std::nullopt;
    const int sign = rest.front() == '-' ? -1 : 1;
    rest.remove_prefix(1);
    int hour = 0;
    int minute = 0;
    std::size_t digits = 0;
    while (digits < rest.size() && digits < 4 && isDigit(rest[digits]))
        ++digits;
    const auto number = [&](std::size_t at, std::size_t count) {
        int value = 0;
        for (const char c : rest.substr(at, count))
            value = value * 10 + (c - '0');
        return value;
    };
    if (digits == 0 || digits == 3)
        return std::nullopt;
    hour = number(0, std::min<std::size_t>(digits, 2));
    if (digits == 4)
        minute = number(2, 2);
    rest.remove_prefix(digits);
    if (digits <= 2 && rest.size() >= 3 && rest[0] == ':' && isDigit(rest[1]) && isDigit(rest[2])) {
        minute = number(1, 2);
        rest.remove_prefix(3);
    }
    if (hour > 14 || minute > 59)
        return std::nullopt;
    text = rest;
    return sign * (hours{hour} + minutes{minute});
}

bool takeWord(std::string_view& text, std::string_view word)
{
    const auto isSame = [](char a, char b) { return (a | 0x20) == (b | 0x20); };
    if (text.size() < word.size() || !std::equal(word.begin(), word.end(), text.begin(), isSame))
        return false;
    text.remove_prefix(word.size());
    return true;
}

ZonePtr fixedZone(seconds offset)
{
    if (offset == seconds{0})
        return utcZone();
    const auto total = std::chrono::duration_cast<minutes>(abs(offset)).count();
    const auto twoDigits = [](auto n) { return (n < 10 ? "0" : "") + std::to_string(n); };
    const std::string name =
        (offset < seconds{0} ? "UTC-" : "UTC+") + twoDigits(total / 60) + ":" + twoDigits(total % 60);
    return std::make_shared<ZoneTable>(name, offset, std::vector<ZoneChange>{}, AfterLastChange::Stays);
}

/// Display names give the offset without summer time, which is the smaller one of the year.
bool hasStandardOffset(const Zone& zone, seconds offset)
{
    const auto at = [&](int month) {
        const UtcSeconds moment{std::chrono::sys_days{std::chrono::year{2026} / month / 1}};
        return seconds{zone.toLocal(moment).time_since_epoch() - moment.time_since_epoch()};
    };
    return std::min(at(1), at(7)) == offset;
}

ZonePtr zoneOfPlaces(std::string_view places, seconds offset)
{
    const auto fitting = [&](const std::optional<std::string>& name) -> ZonePtr {
        auto zone = name ? findZone(*name) : nullptr;
        return zone && hasStandardOffset(*zone, offset) ? zone : nullptr;
    };
    for (const auto& [region, name] : kRegions) {
        if (places.find(region) != std::string_view::npos) {
            if (auto zone = fitting(name))
                return zone;
        }
    }
    while (!places.empty()) {
        const auto comma = std::min(places.find(','), places.size());
        if (auto zone = fitting(zoneNameOfCity(withoutSpace(places.substr(0, comma)))))
            return zone;
        places.remove_prefix(std::min(comma + 1, places.size()));
    }
    return nullptr;
}

}

ZonePtr guessZone(std::string_view displayName)
{
    constexpr std::size_t kLongest = 200;
    auto text = withoutSpace(displayName.substr(0, kLongest));
    const bool isBracketed = takeWord(text, "(");
    const bool hasWord = takeWord(text, "UTC") || takeWord(text, "GMT");
    auto offset = takeOffset(text);
    if (!offset && isBracketed && hasWord && text.starts_with(')'))
        offset = seconds{0}; // "(UTC) Dublin, Edinburgh, Lisbon, London"
    if (!offset)
        return nullptr;
    if (!isBracketed)
        return withoutSpace(text).empty() ? fixedZone(*offset) : nullptr;
    if (!takeWord(text, ")"))
        return nullptr;
    auto zone = zoneOfPlaces(text, *offset);
    return zone ? zone : fixedZone(*offset);
}

}
