#include "NotificationDaemon/RequestBook.h"

#include "NotificationDaemon/TriggerTime.h"

#include <algorithm>
#include <cmath>

namespace Tinkra::NotificationDaemon {

namespace {

constexpr std::int64_t kUsefulAfterStart = 15 * 60;
constexpr std::int64_t kFarthestStart = 10LL * 366 * 86400;

std::optional<double> number(const NotificationDaemonProtocol::UserInfo& userInfo, const std::string& key)
{
    const auto found = userInfo.find(key);
    if (found == userInfo.end())
        return std::nullopt;
    const auto* value = std::get_if<double>(&found->second);
    return value != nullptr ? std::optional(*value) : std::nullopt;
}

StoredState storedState(Phase phase)
{
    switch (phase) {
    case Phase::Pending:
    case Phase::Due: // that its time has come is found out again at every start
        return StoredState::Pending;
    case Phase::Past:
        return StoredState::Past;
    case Phase::Shown:
        return StoredState::Shown;
    case Phase::Missed:
        return StoredState::Missed;
    case Phase::Quarantined:
        return StoredState::Quarantined;
    }
    return StoredState::Pending;
}

}

std::int64_t Entry::lastUse() const
{
    // A start that is no number, or out of all proportion, is no reason to show or to hide anything.
    const auto limit = static_cast<double>(trigger + kFarthestStart);
    const bool usable = meetingStart && std::isfinite(*meetingStart)
        && *meetingStart > static_cast<double>(trigger) && *meetingStart < limit;
    return (usable ? static_cast<std::int64_t>(*meetingStart) : trigger) + kUsefulAfterStart;
}

StoredRequest Entry::stored() const
{
    return {.id = id, .state = storedState(phase), .offered = offered, .since = since, .record = record};
}

Entry& RequestBook::insert(const NotificationDaemonProtocol::Request& request, std::string record,
    const LocalZone& zone, std::int64_t id)
{
    if (id == 0)
        id = m_entries.empty() ? 1 : m_entries.rbegin()->first + 1;
    auto& entry = m_entries[id];
    entry.id = id;
    entry.identifier = request.identifier;
    entry.record = std::move(record);
    entry.components = request.components;
    entry.fireDate = number(request.userInfo, "fireDate");
    entry.meetingStart = number(request.userInfo, "meetingStart");
    entry.trigger = triggerTime(entry.components, entry.fireDate, zone);
    m_byIdentifier.emplace(entry.identifier, &entry);
    m_schedule.emplace(entry.trigger, id);
    ++m_counts[static_cast<std::size_t>(Phase::Pending)];
    m_recordBytes += entry.record.size();
    return entry;
}

void RequestBook::erase(std::int64_t id)
{
    const auto found = m_entries.find(id);
    if (found == m_entries.end())
        return;
    auto& entry = found->second;
    m_schedule.erase({entry.trigger, id});
    --m_counts[static_cast<std::size_t>(entry.phase)];
    m_recordBytes -= entry.record.size();
    const auto [first, last] = m_byIdentifier.equal_range(entry.identifier);
    m_byIdentifier.erase(std::find_if(first, last, [&](const auto& pair) { return pair.second == &entry; }));
    m_entries.erase(found);
}

void RequestBook::setPhase(Entry& entry, Phase phase, std::int64_t since)
{
    --m_counts[static_cast<std::size_t>(entry.phase)];
    ++m_counts[static_cast<std::size_t>(phase)];
    entry.phase = phase;
    entry.since = since;
    if (phase == Phase::Pending)
        m_schedule.emplace(entry.trigger, entry.id);
    else
        m_schedule.erase({entry.trigger, entry.id});
}

void RequestBook::setTrigger(Entry& entry, std::int64_t trigger)
{
    if (m_schedule.erase({entry.trigger, entry.id}) > 0)
        m_schedule.emplace(trigger, entry.id);
    entry.trigger = trigger;
}

Entry* RequestBook::find(std::int64_t id)
{
    const auto found = m_entries.find(id);
    return found == m_entries.end() ? nullptr : &found->second;
}

Entry* RequestBook::findListed(std::string_view identifier)
{
    const auto [first, last] = m_byIdentifier.equal_range(identifier);
    for (auto it = first; it != last; ++it) {
        if (it->second->phase == Phase::Pending || it->second->phase == Phase::Past)
            return it->second;
    }
    return nullptr;
}

Entry* RequestBook::findDelivered(const NotificationDaemonProtocol::Request& request)
{
    const auto [first, last] = m_byIdentifier.equal_range(request.identifier);
    for (auto it = first; it != last; ++it) {
        const auto& entry = *it->second;
        if ((entry.phase == Phase::Due || entry.phase == Phase::Shown)
            && entry.components == request.components
            && entry.fireDate == number(request.userInfo, "fireDate"))
            return it->second;
    }
    return nullptr;
}

std::vector<Entry*> RequestBook::all()
{
    std::vector<Entry*> entries;
    entries.reserve(m_entries.size());
    for (auto& [id, entry] : m_entries)
        entries.push_back(&entry);
    return entries;
}

}
