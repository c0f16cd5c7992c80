#include "TinkraICalendar/RecurrenceRule.h"
#include "TinkraICalendar/RuleExpansion.h"
#include "TinkraICalendar/Zone.h"
#include "TinkraICalendar/ZoneTable.h"

#include <algorithm>

namespace Tinkra::ICalendar {

namespace {

using std::chrono::seconds;

// No clock is further from UTC; the rest of the library relies on less than a day.
constexpr seconds kFarthestOffset = std::chrono::hours{24} - seconds{1};
constexpr ExpansionBudget kBudget{.occurrences = 20'000, .time = std::chrono::milliseconds{50}};
const UtcSeconds kEnd{std::chrono::sys_days{kFirstRepeatedYear / 1 / 1}};

seconds clamped(seconds offset)
{
    return std::clamp(offset, -kFarthestOffset, kFarthestOffset);
}

bool goesOnEachYear(const RecurrenceRule& rule)
{
    return rule.frequency == Frequency::Yearly && rule.interval == 1 && !rule.count && !rule.until;
}

/// Calls `add` with each local time at which the observance begins, on the clock in force before it. Says
/// whether it begins each year for ever.
template <typename Add> bool forEachOnset(const Observance& observance, Add add)
{
    add(observance.start);
    for (const auto onset : observance.additionalOnsets)
        add(onset);

    std::vector<std::string> notices;
    auto rule = parseRecurrenceRule(observance.rule, notices);
    if (!rule || rule->frequency < Frequency::Daily)
        return false;
    // Expanded as if the clock before the onset were UTC, so an UNTIL in UTC is moved onto that clock.
    if (auto* until = rule->until ? std::get_if<UtcSeconds>(&*rule->until) : nullptr)
        *until += clamped(observance.offsetFrom);
    const UtcSeconds from{observance.start.time_since_epoch()};
    expandRule(*rule, {.local = observance.start, .zone = utcZone()}, {from, kEnd}, kBudget,
        [&](const RuleInstance& instance) { add(instance.local); });
    return goesOnEachYear(*rule);
}

}

ZonePtr makeZone(std::string tzid, std::vector<Observance> observances)
{
    if (observances.empty())
        return nullptr;

    std::vector<ZoneChange> changes;
    auto after = AfterLastChange::Stays;
    const Observance* earliest = nullptr;
    UtcSeconds first = UtcSeconds::max();
    for (const auto& observance : observances) {
        const auto from = clamped(observance.offsetFrom);
        const auto to = clamped(observance.offsetTo);
        const bool repeats = forEachOnset(observance, [&](LocalSeconds onset) {
            const UtcSeconds at{onset.time_since_epoch() - from};
            changes.push_back({at, to});
            if (at < first) {
                first = at;
                earliest = &observance;
            }
        });
        if (repeats)
            after = AfterLastChange::RepeatsByYear;
    }
    return std::make_shared<ZoneTable>(
        std::move(tzid), earliest ? clamped(earliest->offsetFrom) : seconds{0}, std::move(changes), after);
}

}
