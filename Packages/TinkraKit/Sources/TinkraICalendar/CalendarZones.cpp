#include "TinkraICalendar/CalendarZones.h"

#include "TinkraICalendar/Property.h"
#include "TinkraICalendar/ZoneDefinition.h"

#include <algorithm>

namespace Tinkra::ICalendar {

namespace {

// Real files have a handful. Looking up a name, and making a zone from a definition, cost time.
constexpr std::size_t mostZones = 1'000;

std::size_t positionOf(ZoneIndex index)
{
    return static_cast<std::size_t>(index) - 2;
}

/// Some producers escape the commas of a TZID in one of the two places and not in the other.
std::string comparable(std::string_view tzid)
{
    std::string plain{trimmed(tzid)};
    std::erase(plain, '\\');
    std::erase(plain, '"');
    return plain;
}

}

ZoneIndex CalendarZones::add(ZonePtr zone)
{
    m_zones.push_back(std::move(zone));
    return static_cast<ZoneIndex>(m_zones.size() + 1);
}

ZoneIndex CalendarZones::indexOf(std::string_view tzid, std::uint32_t calendar, std::size_t line)
{
    if (m_hasLast && tzid == m_lastName && calendar == m_lastCalendar)
        return m_lastIndex;

    const auto remembered = [&](ZoneIndex index) {
        m_lastName = tzid;
        m_lastCalendar = calendar;
        m_lastIndex = index;
        m_hasLast = true;
        return index;
    };
    if (const auto known = m_known.find(tzid); known != m_known.end())
        return remembered(known->second);
    auto key = std::pair{calendar, std::string{tzid}};
    if (const auto unknown = m_unknown.find(key); unknown != m_unknown.end())
        return remembered(unknown->second);
    if (m_zones.size() >= mostZones) {
        m_isFull = true;
        return remembered(ZoneIndex::Viewer);
    }
    if (auto zone = findZone(tzid)) {
        const auto index = zone == utcZone() ? ZoneIndex::Utc : add(std::move(zone));
        m_known.emplace(tzid, index);
        return remembered(index);
    }
    const auto index = add({});
    m_pending.push_back({.tzid = comparable(tzid), .calendar = calendar, .line = line, .index = index});
    m_unknown.emplace(std::move(key), index);
    return remembered(index);
}

void CalendarZones::define(std::uint32_t calendar, std::string_view definition)
{
    m_definitions.emplace_back(calendar, definition);
}

void CalendarZones::setDefault(std::uint32_t calendar, ZoneIndex zone)
{
    m_defaults.try_emplace(calendar, zone);
}

void CalendarZones::settle(ZoneIndex index, ZonePtr zone)
{
    m_zones[positionOf(index)] = std::move(zone);
}

/// Gives the zones that have a definition that definition: the one in their own VCALENDAR, else any.
void CalendarZones::resolveDefinitions()
{
    std::map<std::string, std::vector<Pending*>, std::less<>> wanted;
    for (auto& pending : m_pending)
        wanted[pending.tzid].push_back(&pending);

    for (const auto& [calendar, text] : m_definitions) {
        const auto definition = readZoneDefinition(text);
        const auto found = wanted.find(comparable(definition.tzid));
        if (found == wanted.end())
            continue;
        ZonePtr zone;
        for (const auto* pending : found->second) {
            if (m_zones[positionOf(pending->index)] && pending->calendar != calendar)
                continue;
            if (!zone) {
                zone = definition.observances.empty() ? findZone(definition.location)
                                                      : makeZone(definition.tzid, definition.observances);
            }
            settle(pending->index, zone);
        }
    }
}

void CalendarZones::resolve(Notices& notices)
{
    if (!m_pending.empty() && !m_definitions.empty())
        resolveDefinitions();
    for (const auto& pending : m_pending) {
        if (m_zones[positionOf(pending.index)])
            continue;
        if (auto guessed = guessZone(pending.tzid)) {
            settle(pending.index, std::move(guessed));
            continue;
        }
        const auto fallback = zone(defaultOf(pending.calendar));
        settle(pending.index, fallback);
        notices.add(pending.line,
            "the time zone " + quoted(pending.tzid) + " is unknown; its times are read in "
                + (fallback ? "the calendar's own zone." : "the zone of this computer."));
    }
    if (m_isFull)
        notices.add("There are too many time zones; some times are read in the zone of this computer.");
}

ZoneIndex CalendarZones::defaultOf(std::uint32_t calendar) const
{
    const auto found = m_defaults.find(calendar);
    return found == m_defaults.end() ? ZoneIndex::Viewer : found->second;
}

ZoneIndex CalendarZones::settled(ZoneIndex index) const
{
    return index == ZoneIndex::Viewer || index == ZoneIndex::Utc || m_zones[positionOf(index)]
        ? index
        : ZoneIndex::Viewer;
}

ZonePtr CalendarZones::zone(ZoneIndex index) const
{
    if (index == ZoneIndex::Viewer)
        return {};
    return index == ZoneIndex::Utc ? utcZone() : m_zones[positionOf(index)];
}

}
