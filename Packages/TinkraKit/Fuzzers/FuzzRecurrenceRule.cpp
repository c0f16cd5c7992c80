// A rule that anybody can send: it is read and expanded within its budget, in order, inside of its range.
// Input: the first byte picks the zone and the kind of DTSTART, the next two its day and the window; the rest
// is the rule.

#include "TinkraICalendar/RuleExpansion.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace Tinkra::ICalendar;

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::array<const char*, 4> kZones{
        "UTC", "Europe/Zurich", "Australia/Lord_Howe", "Africa/Casablanca"};
    if (size < 4)
        return 0;
    std::vector<std::string> notices;
    const auto rule = parseRecurrenceRule({reinterpret_cast<const char*>(data) + 3, size - 3}, notices);
    if (!rule)
        return 0;

    SeriesStart start{
        .local = {}, .zone = findZone(kZones.at(data[0] % kZones.size())), .isDate = data[0] >= 128};
    start.local += std::chrono::days{data[1] * 97} + std::chrono::seconds{start.isDate ? 0 : data[1] * 331};
    const auto from = UtcSeconds{start.local.time_since_epoch()} + std::chrono::days{(data[2] - 128) * 200};
    const TimeRange range{from, from + std::chrono::days{data[2] % 2 == 0 ? 30 : 3'000'000}};

    const ExpansionBudget budget{.occurrences = 2000, .time = std::chrono::milliseconds{200}};
    std::size_t count = 0;
    auto last = LocalSeconds::min();
    const bool isElapsed = rule->frequency < Frequency::Daily;
    const auto end = expandRule(*rule, start, range, budget, [&](const RuleInstance& instance) {
        require(instance.utc >= range.from && instance.utc < range.to);
        const LocalSeconds key{
            isElapsed ? instance.utc.time_since_epoch() : instance.local.time_since_epoch()};
        require(key > last);
        require(instance.local >= start.local || isElapsed);
        last = key;
        ++count;
    });
    require(count <= budget.occurrences);
    require(!rule->count || count <= *rule->count);
    require(end != ExpansionEnd::TooManyOccurrences || count == budget.occurrences);
    return 0;
}
