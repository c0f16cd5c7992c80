#include "TinkraICalendar/IcuZone.h"

#include "TinkraICalendar/ZoneTable.h"

#include <memory>
#include <unicode/basictz.h>
#include <unicode/timezone.h>
#include <unicode/tzrule.h>
#include <unicode/tztrans.h>

namespace Tinkra::ICalendar {

namespace {

constexpr double kBeforeAllRecords = -6e13; // 0068, in milliseconds

std::chrono::seconds offsetOf(const icu::TimeZoneRule& rule)
{
    return std::chrono::seconds{(rule.getRawOffset() + rule.getDSTSavings()) / 1000};
}

}

ZonePtr makeIcuZone(const std::string& name)
{
    const std::unique_ptr<icu::TimeZone> zone(
        icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(name)));
    const auto* table = dynamic_cast<const icu::BasicTimeZone*>(zone.get());
    if (!table || *zone == icu::TimeZone::getUnknown())
        return nullptr;

    std::int32_t raw = 0;
    std::int32_t saved = 0;
    UErrorCode error = U_ZERO_ERROR;
    zone->getOffset(kBeforeAllRecords, 0, raw, saved, error);
    if (U_FAILURE(error))
        return nullptr;

    const UtcSeconds end{std::chrono::sys_days{kFirstRepeatedYear / 1 / 1}};
    std::vector<ZoneChange> changes;
    icu::TimeZoneTransition change;
    for (double at = kBeforeAllRecords; table->getNextTransition(at, 0, change) != 0; at = change.getTime()) {
        const UtcSeconds moment{std::chrono::seconds{static_cast<std::int64_t>(change.getTime() / 1000)}};
        if (moment >= end || change.getTime() <= at)
            break;
        changes.push_back({moment, offsetOf(*change.getTo())});
    }
    return std::make_shared<ZoneTable>(
        name, std::chrono::seconds{(raw + saved) / 1000}, std::move(changes), AfterLastChange::RepeatsByYear);
}

}
