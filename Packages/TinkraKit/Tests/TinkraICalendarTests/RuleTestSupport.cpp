#include "RuleTestSupport.h"

#include <array>
#include <cstdio>
#include <sstream>
#include <stdexcept>

namespace Tinkra::ICalendar::Test {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::hh_mm_ss;
using std::chrono::local_days;
using std::chrono::year;
using std::chrono::year_month_day;

LocalSeconds local(std::string_view text)
{
    const auto number = [&](std::size_t at, std::size_t count) {
        return at < text.size() ? std::stoi(std::string(text.substr(at, count))) : 0;
    };
    return local_days{year{number(0, 4)} / number(4, 2) / number(6, 2)} + std::chrono::hours{number(9, 2)}
    + std::chrono::minutes{number(11, 2)} + std::chrono::seconds{number(13, 2)};
}

UtcSeconds utc(std::string_view text)
{
    return UtcSeconds{local(text).time_since_epoch()};
}

std::string written(LocalSeconds time)
{
    const auto day = floor<days>(time);
    const year_month_day date{day};
    const hh_mm_ss clock{time - day};
    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%04d%02u%02uT%02d%02d%02d", static_cast<int>(date.year()),
        static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
        static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
        static_cast<int>(clock.seconds().count()));
    return buffer.data();
}

TimeRange allTime()
{
    return {utc("16000101"), UtcSeconds{std::chrono::sys_days{year{10'000} / 1 / 2}}};
}

RecurrenceRule rule(std::string_view text)
{
    std::vector<std::string> notices;
    auto parsed = parseRecurrenceRule(text, notices);
    if (!parsed)
        throw std::invalid_argument(std::string(text));
    return *parsed;
}

Expansion expansionOf(const Series& series)
{
    const auto zone = findZone(series.zone);
    if (!zone)
        throw std::invalid_argument(std::string(series.zone));
    Expansion expansion;
    // The budget takes the place of a test that waits: what would run for ever ends as TooMuchTime.
    const ExpansionBudget budget{.occurrences = series.atMost, .time = std::chrono::seconds{20}};
    expansion.end = expandRule(rule(series.rule),
        {.local = local(series.start), .zone = zone, .isDate = series.start.size() == 8}, series.range,
        budget, [&](const RuleInstance& instance) { expansion.instances.push_back(instance); });
    return expansion;
}

std::vector<std::string> localTimes(const Series& series)
{
    std::vector<std::string> result;
    for (const auto& instance : expansionOf(series).instances)
        result.push_back(written(instance.local));
    return result;
}

std::vector<std::string> instants(const Series& series)
{
    std::vector<std::string> result;
    for (const auto& instance : expansionOf(series).instances)
        result.push_back(written(LocalSeconds{instance.utc.time_since_epoch()}) + "Z");
    return result;
}

std::vector<std::string> daysAt(std::string_view start, std::string_view text)
{
    constexpr std::string_view kMonths = "JanFebMarAprMayJunJulAugSepOctNovDec";
    const auto time = local(start) - floor<days>(local(start));
    std::vector<std::string> result;
    std::istringstream words{std::string(text)};
    int ofYear = 0;
    int month = 0;
    for (std::string word; words >> word;) {
        if (const auto found = kMonths.find(word.substr(0, 3));
            word.size() == 3 && found != std::string::npos) {
            month = static_cast<int>(found / 3) + 1;
        } else if (word.size() == 4 && word.find_first_of(",-") == std::string::npos) {
            ofYear = std::stoi(word);
        } else {
            std::istringstream pieces(word);
            for (std::string piece; std::getline(pieces, piece, ',');) {
                const auto dash = piece.find('-');
                const int first = std::stoi(piece);
                const int last = dash == std::string::npos ? first : std::stoi(piece.substr(dash + 1));
                for (int day = first; day <= last; ++day)
                    result.push_back(written(local_days{year{ofYear} / month / day} + time));
            }
        }
    }
    return result;
}

}
