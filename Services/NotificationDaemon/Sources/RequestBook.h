#pragma once

#include "NotificationDaemon/LocalZone.h"
#include "NotificationDaemon/NotificationStore.h"
#include "NotificationDaemonProtocol/Request.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Tinkra::NotificationDaemon {

enum class Phase : std::uint8_t {
    Pending, ///< waits for its time
    Past, ///< lay in the past when it was added; listed as pending, never fires
    Due, ///< its time has come, no server has taken it yet
    Shown,
    Missed, ///< was too old when it could have been shown
    Quarantined, ///< the daemon crashed on it, repeatedly
};

/// One request and where it stands. Texts stay in the packed record until somebody wants to see them.
struct Entry {
    std::int64_t id = 0;
    Phase phase = Phase::Pending;
    bool offered = false; ///< see StoredRequest
    std::int64_t since = 0; ///< see StoredRequest
    std::string identifier;
    std::string record;
    NotificationDaemonProtocol::WallClock components;
    std::optional<double> fireDate;
    std::optional<double> meetingStart;
    std::int64_t trigger = 0; ///< when it fires in the zone now in force, seconds since 1970 UTC

    /// Until when showing it is of use: 15 minutes past the start of its meeting. Seconds since 1970 UTC.
    std::int64_t lastUse() const;

    StoredRequest stored() const;
};

/// Every request the daemon knows, in the order in which they were added, with the ways to find them.
class RequestBook {
public:
    /// The instant and the identifier of a request, earliest first; equal instants in the order of adding.
    using Slot = std::pair<std::int64_t, std::int64_t>;

    /// Adds a request as pending. `id` 0 gives it the next free one.
    Entry& insert(const NotificationDaemonProtocol::Request& request, std::string record,
        const LocalZone& zone, std::int64_t id = 0);
    void erase(std::int64_t id);

    void setPhase(Entry& entry, Phase phase, std::int64_t since);
    void setTrigger(Entry& entry, std::int64_t trigger);

    Entry* find(std::int64_t id);
    /// The one that callers see under this identifier: pending, or past when it was added.
    Entry* findListed(std::string_view identifier);
    /// One with this identifier and these components that is due or was shown.
    Entry* findDelivered(const NotificationDaemonProtocol::Request& request);

    const std::map<std::int64_t, Entry>& entries() const { return m_entries; }
    std::vector<Entry*> all();
    /// When the pending ones fire.
    const std::set<Slot>& schedule() const { return m_schedule; }

    std::size_t count(Phase phase) const { return m_counts[static_cast<std::size_t>(phase)]; }
    std::size_t listedCount() const { return count(Phase::Pending) + count(Phase::Past); }
    std::size_t recordBytes() const { return m_recordBytes; }

private:
    static constexpr std::size_t kPhases = 6;

    std::map<std::int64_t, Entry> m_entries;
    std::unordered_multimap<std::string_view, Entry*> m_byIdentifier;
    std::set<Slot> m_schedule;
    std::size_t m_counts[kPhases] = {};
    std::size_t m_recordBytes = 0;
};

}
