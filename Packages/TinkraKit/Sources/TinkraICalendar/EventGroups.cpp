#include "TinkraICalendar/EventGroups.h"

#include "TinkraICalendar/Property.h"
#include "TinkraICalendar/PropertyName.h"

#include <algorithm>
#include <functional>
#include <set>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace Tinkra::ICalendar {

namespace {

LocalSeconds timeOn(std::string_view line)
{
    if (line.empty())
        return LocalSeconds::min();
    const auto time = parseTime(divide(line, propertyName(line).length).value);
    return time ? time->time : LocalSeconds::min();
}

auto version(const EventDraft& event)
{
    return std::tuple{event.sequence, timeOn(event.stamp), timeOn(event.lastModified)};
}

auto startOf(const EventDraft& event)
{
    return std::tuple{event.start.time, event.start.zone, event.start.form};
}

/// The events that do not have their UID for themselves.
struct SharedUids {
    std::vector<std::vector<std::uint32_t>> groups;
    std::unordered_map<std::uint32_t, std::size_t> groupOfEvent;

    /// Nothing for an event that has its UID for itself.
    const std::vector<std::uint32_t>* of(std::uint32_t event) const
    {
        const auto found = groupOfEvent.empty() ? groupOfEvent.end() : groupOfEvent.find(event);
        return found == groupOfEvent.end() ? nullptr : &groups[found->second];
    }
};

/// Sorted by hash and then by UID rather than kept in a hash table, which a hostile text could make
/// quadratic.
SharedUids sharedUids(const Drafts& drafts)
{
    SharedUids shared;
    if (drafts.events.size() < 2)
        return shared;
    struct Entry {
        std::size_t hash;
        std::uint32_t event;
    };
    const auto uid = [&drafts](const Entry& entry) { return drafts.text(drafts.events[entry.event].uid); };
    std::vector<Entry> entries;
    entries.reserve(drafts.events.size());
    for (std::uint32_t i = 0; i < drafts.events.size(); ++i)
        entries.push_back({std::hash<std::string_view>{}(drafts.text(drafts.events[i].uid)), i});
    std::sort(entries.begin(), entries.end(), [&](const Entry& a, const Entry& b) {
        if (a.hash != b.hash)
            return a.hash < b.hash;
        const auto order = uid(a).compare(uid(b));
        return order != 0 ? order < 0 : a.event < b.event;
    });
    for (std::size_t first = 0; first < entries.size();) {
        auto last = first + 1;
        while (last < entries.size() && entries[last].hash == entries[first].hash
            && uid(entries[last]) == uid(entries[first]))
            ++last;
        if (last - first > 1) {
            std::vector<std::uint32_t> members;
            for (auto i = first; i < last; ++i) {
                members.push_back(entries[i].event);
                shared.groupOfEvent.emplace(entries[i].event, shared.groups.size());
            }
            shared.groups.push_back(std::move(members));
        }
        first = last;
    }
    return shared;
}

/// Chooses among the events of one UID, given in the order of the text.
EventGroup groupOf(const Drafts& drafts, const std::vector<std::uint32_t>& members)
{
    const auto event = [&drafts](std::uint32_t at) -> const EventDraft& { return drafts.events[at]; };
    const auto isOlder = [&](std::uint32_t a, std::uint32_t b) { return isOlderVersion(event(a), event(b)); };

    EventGroup group;
    std::vector<std::uint32_t> masters;
    for (const auto member : members)
        (event(member).recurrenceId ? group.exceptions : masters).push_back(member);
    if (masters.empty()) {
        // A series that carries a RECURRENCE-ID of its own stands in for a master that is not there.
        auto candidates = members;
        std::erase_if(candidates, [&](std::uint32_t at) { return event(at).rules.count == 0; });
        if (!candidates.empty()) {
            const auto newest = *std::max_element(candidates.begin(), candidates.end(), isOlder);
            group.master = newest;
            std::erase(group.exceptions, newest);
        }
        return group;
    }
    const auto newest = *std::max_element(masters.begin(), masters.end(), isOlder);
    group.master = newest;
    if (masters.size() > 1 && group.exceptions.empty()) {
        std::set<decltype(startOf(event(0)))> starts{startOf(event(newest))};
        std::reverse(masters.begin(), masters.end());
        for (const auto at : masters) {
            if (version(event(at)) == version(event(newest)) && starts.insert(startOf(event(at))).second)
                group.namesakes.push_back(at);
        }
    }
    return group;
}

}

bool isOlderVersion(const EventDraft& a, const EventDraft& b)
{
    if (a.sequence != b.sequence)
        return a.sequence < b.sequence;
    return std::pair{version(a), a.line} < std::pair{version(b), b.line};
}

void forEachUid(const Drafts& drafts, const std::function<void(const EventGroup&)>& sink)
{
    const auto shared = sharedUids(drafts);
    EventGroup alone;
    for (std::uint32_t i = 0; i < drafts.events.size(); ++i) {
        const auto* members = shared.of(i);
        if (members == nullptr) {
            const bool isException = drafts.events[i].recurrenceId && drafts.events[i].rules.count == 0;
            alone.master = isException ? std::nullopt : std::optional{i};
            alone.exceptions.assign(isException ? 1 : 0, i);
            sink(alone);
        } else if (members->front() == i) {
            sink(groupOf(drafts, *members));
        }
    }
}

}
