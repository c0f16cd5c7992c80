#pragma once

#include "NotificationDaemon/LocalZone.h"
#include "NotificationDaemon/Moment.h"
#include "NotificationDaemon/NotificationServer.h"
#include "NotificationDaemon/NotificationStore.h"
#include "NotificationDaemon/RequestBook.h"
#include "NotificationDaemonProtocol/Request.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace Tinkra::NotificationDaemon {

class LimitExceeded : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Told what has become of a request.
class CenterObserver {
public:
    virtual ~CenterObserver() = default;

    /// A notification server has taken it, and calls it `serverID`.
    virtual void delivered(const NotificationDaemonProtocol::Request& request, std::uint32_t serverID) = 0;

    /// It is due and no server takes it: the user should be told in some other way. Once for each request.
    virtual void undeliverable(const NotificationDaemonProtocol::Request& request) = 0;
};

/// Decides what fires when, and remembers what has fired. Holds every request in memory, so that a disk in
/// trouble never stops an alarm; the store follows. Knows no clock, bus or disk: `now` is an argument, the
/// rest is handed in.
///
/// Every call first moves the requests whose time has come from "pending" to "due", so that a caller who
/// lists and cancels cannot cancel an alarm that is being delivered.
class NotificationCenter {
public:
    static constexpr std::size_t kMostRequests = 50000;
    static constexpr std::size_t kMostBytes = std::size_t{64} << 20U;

    NotificationCenter(NotificationStore& store, NotificationServer& server, const LocalZone& zone,
        CenterObserver& observer);

    /// Takes over what the store held. Those in `quarantine` are kept and reported, and otherwise left alone.
    void load(const std::vector<StoredRequest>& stored, Notes notes, const std::set<std::int64_t>& quarantine,
        Moment now);

    // What callers ask for.

    enum class Addition {
        Added,
        Replaced,
        AlreadyDelivered, ///< the same request, for the same time, is due or was shown: nothing to do
    };

    /// Kept durably when this returns. Throws StoreError, when nothing has changed, and LimitExceeded.
    Addition add(const NotificationDaemonProtocol::Request& request, Moment now);
    /// Throws StoreError; then nothing was removed.
    void removePending(const std::vector<std::string>& identifiers, Moment now);
    std::vector<std::string> pendingIdentifiers(Moment now);
    std::vector<NotificationDaemonProtocol::Request> pending(Moment now);
    std::vector<NotificationDaemonProtocol::Request> missed() const;
    std::vector<std::string> quarantined() const;
    void acknowledgeReset();

    // What happens.

    /// Hands everything that is due to the server. Touches no disk.
    void fire(Moment now);
    /// Records what has happened, and clears up. Called after fire(), when there is time.
    void settle(Moment now);
    /// The server's answer; `serverID` 0 is a refusal.
    void answered(std::int64_t token, std::uint32_t serverID, Moment now);
    void serverAppeared(Moment now);
    void serverVanished(Moment now);
    void zoneChanged(Moment now);
    /// The store was found damaged: some requests are lost. `damagedRows` are still in it, and go when that
    /// is recorded, so that each loss is reported once.
    void storeWasDamaged(std::int64_t lostRequests, const std::vector<std::int64_t>& damagedRows = {});

    /// When the next pending request fires, seconds since 1970 UTC.
    std::optional<std::int64_t> nextTrigger() const;
    /// When fire() has something to do again although no request comes due, in Moment::elapsed.
    std::optional<std::int64_t> nextRetry() const;
    /// Something waits to be recorded.
    bool isUnsettled() const { return !m_changed.empty() || !m_erased.empty() || m_notesChanged; }

    const RequestBook& book() const { return m_book; }
    std::int64_t note(const std::string& name) const;

private:
    /// How far the handing over of a due request has come.
    struct Delivery {
        std::int64_t nextOffer = 0; ///< elapsed
        std::int64_t offeredAt = 0; ///< elapsed
        int offers = 0;
        bool waits = false; ///< for the server's answer
        bool isLate = false; ///< the server has not answered in time; it still may
        bool reported = false; ///< undeliverable() was called
    };

    static bool isWaiting(const Delivery& delivery) { return delivery.waits && !delivery.isLate; }

    void noteClock(Moment now);
    void reconsider(Moment now);
    void moveDue(Moment now);
    void offer(Moment now);
    void offerOne(Entry& entry, Delivery& delivery, Moment now);
    void reportUndeliverable(const Entry& entry, Delivery& delivery);
    void setPhase(Entry& entry, Phase phase, std::int64_t since);
    void setNote(const std::string& name, std::int64_t value);
    void noteContact(Moment now);
    void clearUp(Moment now);
    void dropOldest(Phase phase, std::size_t keep, std::int64_t before);
    void remindOfSilence(Moment now);
    void commit(const StoreChange& change, Durability durability, Moment now);
    void repairStore(Moment now);
    void takeChanges(StoreChange& change);

    NotificationStore& m_store;
    NotificationServer& m_server;
    const LocalZone& m_zone;
    CenterObserver& m_observer;

    RequestBook m_book;
    Notes m_notes;
    std::map<RequestBook::Slot, Delivery> m_deliveries; ///< of the due ones, in the order of firing
    std::map<std::int64_t, std::int64_t> m_justShown; ///< request to when, elapsed

    // What the store does not know yet.
    std::set<std::int64_t> m_changed;
    std::vector<std::int64_t> m_erased;
    bool m_notesChanged = false;
    bool m_mustSurvivePowerCut = false;
    bool m_storeIsBroken = false;
    std::int64_t m_nextRepair = 0; ///< elapsed
    std::optional<std::int64_t> m_nextRecording; ///< elapsed; set while the store refuses

    Moment m_last;
    std::int64_t m_clockSetAt = 0; ///< elapsed
    std::int64_t m_clearedUpAt = 0; ///< elapsed
};

}
