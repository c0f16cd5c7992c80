#include "TinkraICalendar/PackedEvents.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace Tinkra::ICalendar {

namespace {

/// Every list but the texts keeps the next one aligned.
template <typename T> constexpr bool fitsTheBlock = sizeof(T) % 8 == 0 && alignof(T) <= 8;

static_assert(fitsTheBlock<ZonePtr> && fitsTheBlock<EventRecord> && fitsTheBlock<SeriesRecord>);
static_assert(fitsTheBlock<RuleText> && fitsTheBlock<ExtraRecord> && fitsTheBlock<InstanceKey>);
static_assert(fitsTheBlock<SplitRecord> && fitsTheBlock<PackedEvents>);

}

std::unique_ptr<const PackedEvents> PackedEvents::make(Parts parts)
{
    std::size_t size = sizeof(PackedEvents);
    const auto reserve = [&size](const auto& list) {
        const auto at = size;
        size += list.size() * sizeof(list[0]);
        return at;
    };
    const auto zonesAt = reserve(parts.zones);
    const auto eventsAt = reserve(parts.events);
    const auto seriesAt = reserve(parts.series);
    const auto rulesAt = reserve(parts.rules);
    const auto extrasAt = reserve(parts.extras);
    const auto skipsAt = reserve(parts.skips);
    const auto splitsAt = reserve(parts.splits);
    const auto textsAt = reserve(parts.texts);
    if (size > std::numeric_limits<std::uint32_t>::max())
        throw std::length_error{"a calendar of more than 4 GiB"};

    auto* block = static_cast<char*>(::operator new(size));
    auto* packed = new (block) PackedEvents;
    const auto place = [block](const auto& list, std::size_t at) {
        using T = std::remove_cvref_t<decltype(list[0])>;
        std::uninitialized_copy(list.begin(), list.end(), reinterpret_cast<T*>(block + at));
        return static_cast<std::uint32_t>(at);
    };
    place(parts.zones, zonesAt);
    packed->m_zoneCount = static_cast<std::uint16_t>(parts.zones.size());
    packed->m_eventCount = static_cast<std::uint32_t>(parts.events.size());
    packed->m_eventsAt = place(parts.events, eventsAt);
    packed->m_seriesAt = place(parts.series, seriesAt);
    packed->m_rulesAt = place(parts.rules, rulesAt);
    packed->m_extrasAt = place(parts.extras, extrasAt);
    packed->m_skipsAt = place(parts.skips, skipsAt);
    packed->m_splitsAt = place(parts.splits, splitsAt);
    packed->m_textsAt = place(parts.texts, textsAt);
    packed->m_size = static_cast<std::uint32_t>(size);
    packed->m_isWhole = parts.isWhole;
    if (!parts.notices.empty() || parts.limits != ExpansionLimits{}) {
        packed->m_rarities = std::make_unique<const Rarities>(
            Rarities{.notices = std::move(parts.notices), .limits = parts.limits});
    }
    return std::unique_ptr<const PackedEvents>{packed};
}

PackedEvents::~PackedEvents()
{
    const auto zones = part<ZonePtr>(sizeof(PackedEvents), m_zoneCount);
    std::destroy(const_cast<ZonePtr*>(zones.data()), const_cast<ZonePtr*>(zones.data() + zones.size()));
}

const SeriesRecord* PackedEvents::series(const EventRecord& event) const
{
    return event.series == 0 ? nullptr
                             : part<SeriesRecord>(m_seriesAt, event.series).data() + (event.series - 1);
}

std::span<const RuleText> PackedEvents::rules(const SeriesRecord& series) const
{
    return part<RuleText>(m_rulesAt, series.firstRule + series.ruleCount).subspan(series.firstRule);
}

std::span<const RuleText> PackedEvents::exclusionRules(const SeriesRecord& series) const
{
    const std::size_t first = series.firstRule + series.ruleCount;
    return part<RuleText>(m_rulesAt, first + series.exclusionRuleCount).subspan(first);
}

std::span<const ExtraRecord> PackedEvents::extras(const SeriesRecord& series) const
{
    return part<ExtraRecord>(m_extrasAt, series.firstExtra + series.extraCount).subspan(series.firstExtra);
}

std::span<const InstanceKey> PackedEvents::skips(const SeriesRecord& series) const
{
    return part<InstanceKey>(m_skipsAt, series.firstSkip + series.skipCount).subspan(series.firstSkip);
}

std::span<const SplitRecord> PackedEvents::splits(const SeriesRecord& series) const
{
    return part<SplitRecord>(m_splitsAt, series.firstSplit + series.splitCount).subspan(series.firstSplit);
}

const Zone* PackedEvents::zone(ZoneIndex index) const
{
    static const ZonePtr utc = utcZone();
    if (index == ZoneIndex::Viewer)
        return nullptr;
    if (index == ZoneIndex::Utc)
        return utc.get();
    return part<ZonePtr>(sizeof(PackedEvents), m_zoneCount)[static_cast<std::size_t>(index) - 2].get();
}

std::string_view PackedEvents::text(std::uint32_t at, std::uint32_t length) const
{
    return {reinterpret_cast<const char*>(this) + m_textsAt + at, length};
}

const PackedEvents::Rarities& PackedEvents::rarities() const
{
    static const Rarities none;
    return m_rarities ? *m_rarities : none;
}

const std::vector<std::string>& PackedEvents::notices() const
{
    return rarities().notices;
}

const ExpansionLimits& PackedEvents::limits() const
{
    return rarities().limits;
}

std::size_t PackedEvents::memoryUse() const
{
    std::size_t bytes = m_size;
    if (m_rarities) {
        bytes += sizeof(Rarities) + notices().capacity() * sizeof(std::string);
        for (const auto& notice : notices())
            bytes += notice.capacity();
    }
    return bytes;
}

}
