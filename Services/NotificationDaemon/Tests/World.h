#pragma once

#include "NotificationDaemon/NotificationCenter.h"
#include "NotificationDaemon/TriggerTime.h"

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Tinkra::NotificationDaemon {

/// A zone with one offset, until a test says otherwise.
class MovableZone final : public LocalZone {
public:
    std::int64_t offset = 3600;

    std::int64_t utcOffset(std::int64_t /*instant*/) const override { return offset; }
};

/// Keeps its promises in memory, and fails when told to.
class FakeStore final : public NotificationStore {
public:
    std::map<std::int64_t, StoredRequest> requests;
    Notes notes;
    std::optional<StoreError::Kind> failure;
    bool replacingFails = false;
    int durableChanges = 0;
    int replacements = 0;

    void apply(const StoreChange& change, Durability durability) override
    {
        if (failure)
            throw StoreError(*failure, "the disk is in trouble");
        for (const auto& request : change.put)
            requests[request.id] = request;
        for (const auto id : change.erase)
            requests.erase(id);
        for (const auto& [name, value] : change.notes)
            notes[name] = value;
        durableChanges += durability == Durability::SurvivesPowerCut ? 1 : 0;
    }

    void replace(const std::vector<StoredRequest>& all, const Notes& allNotes) override
    {
        if (replacingFails)
            throw StoreError(StoreError::Kind::Full, "no room for a new file");
        ++replacements;
        failure.reset();
        requests.clear();
        for (const auto& request : all)
            requests[request.id] = request;
        notes = allNotes;
    }
};

/// Remembers what it was asked to show; a test decides what it answers, and when.
class FakeServer final : public NotificationServer {
public:
    struct Call {
        std::int64_t token = 0;
        Notification notification;
    };
    std::vector<Call> calls;

    void show(std::int64_t token, const Notification& notification) override
    {
        calls.push_back({token, notification});
    }

    bool isAvailable() override { return true; }

    std::vector<std::string> bodies() const
    {
        std::vector<std::string> bodies;
        for (const auto& call : calls)
            bodies.push_back(call.notification.body);
        return bodies;
    }
};

class FakeObserver final : public CenterObserver {
public:
    std::vector<std::string> deliveredIDs;
    std::vector<std::string> undeliverableIDs;

    void delivered(const NotificationDaemonProtocol::Request& request, std::uint32_t /*serverID*/) override
    {
        deliveredIDs.push_back(request.identifier);
    }
    void undeliverable(const NotificationDaemonProtocol::Request& request) override
    {
        undeliverableIDs.push_back(request.identifier);
    }
};

/// 2026-11-20 12:00 UTC, which is 13:00 in the zone of the world.
inline constexpr std::int64_t kNoon = 1795176000;
inline constexpr std::int64_t kMinute = 60;
inline constexpr std::int64_t kHour = 3600;
inline constexpr std::int64_t kDay = 86400;

inline NotificationDaemonProtocol::WallClock wallClockAt(std::int64_t instant, const LocalZone& zone)
{
    using namespace std::chrono;
    const sys_seconds local{seconds{instant + zone.utcOffset(instant)}};
    const auto day = floor<days>(local);
    const year_month_day date{day};
    const hh_mm_ss time{local - day};
    return {.year = int{date.year()},
        .month = static_cast<int>(unsigned{date.month()}),
        .day = static_cast<int>(unsigned{date.day()}),
        .hour = static_cast<int>(time.hours().count()),
        .minute = static_cast<int>(time.minutes().count()),
        .second = static_cast<int>(time.seconds().count())};
}

/// A centre with fakes around it and two dials for the time.
class World {
public:
    MovableZone zone;
    FakeStore store;
    FakeServer server;
    FakeObserver observer;
    Moment now{.wall = kNoon, .elapsed = 1000000};
    std::unique_ptr<NotificationCenter> center;

    World() { restart(); }

    /// As after a crash: what was not stored is forgotten. `quarantine` lists ids.
    void restart(const std::set<std::int64_t>& quarantine = {})
    {
        std::vector<StoredRequest> rows;
        for (const auto& [id, row] : store.requests)
            rows.push_back(row);
        center = std::make_unique<NotificationCenter>(store, server, zone, observer);
        center->load(rows, store.notes, quarantine, now);
        turn();
    }

    /// The daemon's turn of the loop.
    void turn()
    {
        center->fire(now);
        center->settle(now);
    }

    void pass(std::int64_t seconds)
    {
        now.wall += seconds;
        now.elapsed += seconds * 1000;
        turn();
    }

    void passMilliseconds(std::int64_t milliseconds)
    {
        now.elapsed += milliseconds;
        turn();
    }

    void setClock(std::int64_t wall)
    {
        now.wall = wall;
        turn();
    }

    void travelTo(std::int64_t offset)
    {
        zone.offset = offset;
        center->zoneChanged(now);
        turn();
    }

    /// A request that fires at `instant`, its meeting starting five minutes later.
    NotificationDaemonProtocol::Request request(const std::string& identifier, std::int64_t instant) const
    {
        return {.identifier = identifier,
            .title = "Meeting starting",
            .body = "Body of " + identifier,
            .sound = NotificationDaemonProtocol::Sound::Default,
            .interruptionLevel = 2,
            .userInfo = {{"meetingID", "m"}, {"title", "Body of " + identifier},
                {"fireDate", static_cast<double>(instant)},
                {"meetingStart", static_cast<double>(instant + 5 * kMinute)}},
            .components = wallClockAt(instant, zone),
            .repeats = false};
    }

    void add(const std::string& identifier, std::int64_t instant)
    {
        center->add(request(identifier, instant), now);
        turn();
    }

    /// The server takes everything it was asked to show since the last time.
    void serverTakesAll()
    {
        for (; m_answered < server.calls.size(); ++m_answered)
            center->answered(server.calls[m_answered].token, static_cast<std::uint32_t>(m_answered + 1), now);
        center->settle(now);
    }

    void serverRefusesAll()
    {
        for (; m_answered < server.calls.size(); ++m_answered)
            center->answered(server.calls[m_answered].token, 0, now);
    }

    std::vector<std::string> pending() { return center->pendingIdentifiers(now); }
    std::size_t count(Phase phase) const { return center->book().count(phase); }

private:
    std::size_t m_answered = 0;
};

}
