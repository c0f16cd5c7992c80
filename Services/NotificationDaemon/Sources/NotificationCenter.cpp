#include "NotificationDaemon/NotificationCenter.h"

#include "NotificationDaemon/CrashPoint.h"
#include "NotificationDaemon/CrashedRequests.h"
#include "NotificationDaemon/Log.h"
#include "NotificationDaemon/RequestRecord.h"
#include "NotificationDaemon/TriggerTime.h"

#include <algorithm>

namespace Tinkra::NotificationDaemon {

using NotificationDaemonProtocol::Request;

namespace {

/// 2026-01-01. A clock that shows an earlier time was never set, and is no reason to call anything too old.
constexpr std::int64_t kEarliestPlausible = 1767225600;

// Of a notification server, in milliseconds.
constexpr std::int64_t kAnswerTime = 3000;
constexpr std::int64_t kRetryTime = 5000;
constexpr std::int64_t kPatientRetryTime = 60000;
constexpr std::int64_t kShownIsSafeAfter = 10000;
constexpr int kOffersBeforePatience = 2;
constexpr std::size_t kMostUnanswered = 100;

// Of what is kept, in seconds.
constexpr std::int64_t kKeepShown = 48LL * 3600;
constexpr std::int64_t kKeepMissed = 7LL * 86400;
constexpr std::size_t kMostShown = 5000;
constexpr std::size_t kMostMissed = 1000;

// Nothing is forgotten because of its age until the clock has not been set for this long, in milliseconds.
constexpr std::int64_t kClockIsSettledAfter = 3600000;
constexpr std::int64_t kLargeStep = 600000;
constexpr std::int64_t kClearUpEvery = 3600000;

// The application arms 30 days ahead; five days before the last of these alarms the user is told.
constexpr std::int64_t kLongSilence = 25LL * 86400;
constexpr std::int64_t kContactGranularity = 3600;

const std::string kLastContact = "lastContact";
const std::string kLastShown = "lastShown";
const std::string kSilenceReported = "silenceReported";
const std::string kLostRequests = "lostRequests";

constexpr std::int64_t kSilenceToken = -1;

}

NotificationCenter::NotificationCenter(
    NotificationStore& store, NotificationServer& server, const LocalZone& zone, CenterObserver& observer)
    : m_store(store)
    , m_server(server)
    , m_zone(zone)
    , m_observer(observer)
{
}

void NotificationCenter::load(const std::vector<StoredRequest>& stored, Notes notes,
    const std::set<std::int64_t>& quarantine, Moment now)
{
    m_notes = std::move(notes);
    m_last = now;
    m_clockSetAt = now.elapsed;
    m_clearedUpAt = now.elapsed - kClearUpEvery; // sessions may all be short

    std::int64_t damaged = 0;
    for (const auto& row : stored) {
        const BeingProcessed mark(row.id);
        try {
            const auto request = decodeRecord(row.record);
            if (!quarantine.contains(row.id))
                crashPoint("loading", request.identifier);
            auto& entry = m_book.insert(request, row.record, m_zone, row.id);
            entry.offered = row.offered;
            if (quarantine.contains(row.id))
                setPhase(entry, Phase::Quarantined, now.wall);
            else if (row.state == StoredState::Past)
                m_book.setPhase(entry, Phase::Past, row.since);
            else if (row.state == StoredState::Shown)
                m_book.setPhase(entry, Phase::Shown, row.since);
            else if (row.state == StoredState::Missed)
                m_book.setPhase(entry, Phase::Missed, row.since);
            else if (row.state == StoredState::Quarantined)
                m_book.setPhase(entry, Phase::Quarantined, row.since);
            else
                entry.since = row.since;
        } catch (const DamagedRecord& error) {
            log(LogLevel::Error, "request " + std::to_string(row.id) + " is damaged: " + error.what());
            m_erased.push_back(row.id);
            ++damaged;
        }
    }
    if (damaged > 0)
        storeWasDamaged(damaged);
    reconsider(now);
}

void NotificationCenter::storeWasDamaged(
    std::int64_t lostRequests, const std::vector<std::int64_t>& damagedRows)
{
    m_erased.insert(m_erased.end(), damagedRows.begin(), damagedRows.end());
    setNote(kStoreWasReset, 1);
    setNote(kLostRequests, note(kLostRequests) + lostRequests);
}

void NotificationCenter::acknowledgeReset()
{
    setNote(kStoreWasReset, 0);
    setNote(kLostRequests, 0);
}

std::int64_t NotificationCenter::note(const std::string& name) const
{
    const auto found = m_notes.find(name);
    return found == m_notes.end() ? 0 : found->second;
}

void NotificationCenter::setNote(const std::string& name, std::int64_t value)
{
    if (note(name) == value)
        return;
    m_notes[name] = value;
    m_notesChanged = true;
    m_mustSurvivePowerCut = m_mustSurvivePowerCut || name != kLastContact;
}

void NotificationCenter::noteContact(Moment now)
{
    if (std::abs(now.wall - note(kLastContact)) < kContactGranularity)
        return;
    setNote(kLastContact, now.wall);
    setNote(kSilenceReported, 0);
}

void NotificationCenter::setPhase(Entry& entry, Phase phase, std::int64_t since)
{
    m_book.setPhase(entry, phase, since);
    m_changed.insert(entry.id);
    m_mustSurvivePowerCut = true;
}

// --- what callers ask for

NotificationCenter::Addition NotificationCenter::add(const Request& request, Moment now)
{
    fire(now);
    noteContact(now);
    if (m_book.findDelivered(request) != nullptr)
        return Addition::AlreadyDelivered;

    auto* replaced = m_book.findListed(request.identifier);
    auto record = encodeRecord(request);
    if (replaced == nullptr && m_book.listedCount() >= kMostRequests)
        throw LimitExceeded("there are " + std::to_string(kMostRequests) + " pending requests already");
    if (m_book.recordBytes() + record.size() > kMostBytes)
        throw LimitExceeded("the pending requests are too large");

    // Into the store first: what it refuses has not happened.
    RequestBook scratch;
    auto& candidate = scratch.insert(request, record, m_zone,
        replaced != nullptr ? replaced->id
                            : (m_book.entries().empty() ? 1 : m_book.entries().rbegin()->first + 1));
    scratch.setPhase(candidate, candidate.trigger < now.wall ? Phase::Past : Phase::Pending, now.wall);
    commit({.put = {candidate.stored()}, .erase = {}, .notes = {}}, Durability::SurvivesPowerCut, now);
    crashPoint("added");

    const auto id = candidate.id;
    m_book.erase(id);
    m_changed.erase(id);
    std::erase(m_erased, id); // the number of a row that is still to go was given anew, and written over it
    auto& entry = m_book.insert(request, std::move(record), m_zone, id);
    m_book.setPhase(entry, candidate.phase, now.wall);
    return replaced != nullptr ? Addition::Replaced : Addition::Added;
}

void NotificationCenter::removePending(const std::vector<std::string>& identifiers, Moment now)
{
    fire(now);
    noteContact(now);
    std::set<std::int64_t> removed;
    for (const auto& identifier : identifiers) {
        if (const auto* entry = m_book.findListed(identifier))
            removed.insert(entry->id);
    }
    if (removed.empty())
        return;
    commit({.put = {}, .erase = {removed.begin(), removed.end()}, .notes = {}}, Durability::SurvivesPowerCut,
        now);
    for (const auto id : removed) {
        m_changed.erase(id);
        m_book.erase(id);
    }
}

std::vector<std::string> NotificationCenter::pendingIdentifiers(Moment now)
{
    fire(now);
    noteContact(now);
    std::vector<std::string> identifiers;
    identifiers.reserve(m_book.listedCount());
    for (const auto& [id, entry] : m_book.entries()) {
        if (entry.phase == Phase::Pending || entry.phase == Phase::Past)
            identifiers.push_back(entry.identifier);
    }
    return identifiers;
}

std::vector<Request> NotificationCenter::pending(Moment now)
{
    fire(now);
    noteContact(now);
    std::vector<Request> requests;
    requests.reserve(m_book.listedCount());
    for (const auto& [id, entry] : m_book.entries()) {
        if (entry.phase == Phase::Pending || entry.phase == Phase::Past)
            requests.push_back(decodeRecord(entry.record));
    }
    return requests;
}

std::vector<Request> NotificationCenter::missed() const
{
    std::vector<Request> requests;
    for (const auto& [id, entry] : m_book.entries()) {
        if (entry.phase == Phase::Missed)
            requests.push_back(decodeRecord(entry.record));
    }
    return requests;
}

std::vector<std::string> NotificationCenter::quarantined() const
{
    std::vector<std::string> identifiers;
    for (const auto& [id, entry] : m_book.entries()) {
        if (entry.phase == Phase::Quarantined)
            identifiers.push_back(entry.identifier);
    }
    return identifiers;
}

// --- time

void NotificationCenter::noteClock(Moment now)
{
    const bool wentBack = now.wall < m_last.wall;
    const auto drift = (now.wall - m_last.wall) * 1000 - (now.elapsed - m_last.elapsed);
    m_last = now;
    if (std::abs(drift) > kLargeStep)
        m_clockSetAt = now.elapsed;
    if (wentBack)
        reconsider(now);
}

void NotificationCenter::zoneChanged(Moment now)
{
    for (auto* entry : m_book.all()) {
        const auto old = RequestBook::Slot{entry->trigger, entry->id};
        m_book.setTrigger(*entry, triggerTime(entry->components, entry->fireDate, m_zone));
        if (auto delivery = m_deliveries.extract(old)) {
            delivery.key() = {entry->trigger, entry->id};
            m_deliveries.insert(std::move(delivery));
        }
    }
    reconsider(now);
}

/// After the clock or the zone was set: what now lies ahead is pending again.
void NotificationCenter::reconsider(Moment now)
{
    for (auto* entry : m_book.all()) {
        const bool liesAhead = entry->trigger > now.wall;
        if (entry->phase == Phase::Past && liesAhead)
            setPhase(*entry, Phase::Pending, now.wall);
        else if (entry->phase == Phase::Missed && entry->lastUse() >= now.wall)
            setPhase(*entry, Phase::Pending, now.wall);
        else if (entry->phase == Phase::Due && liesAhead && !entry->offered
            && m_deliveries.erase({entry->trigger, entry->id}) > 0)
            m_book.setPhase(*entry, Phase::Pending, now.wall);
    }
}

void NotificationCenter::moveDue(Moment now)
{
    const auto isTooOld = [&](const Entry& entry) {
        return entry.lastUse() < now.wall && now.wall >= kEarliestPlausible;
    };

    while (!m_book.schedule().empty() && m_book.schedule().begin()->first <= now.wall) {
        auto& entry = *m_book.find(m_book.schedule().begin()->second);
        if (isTooOld(entry)) {
            setPhase(entry, Phase::Missed, now.wall);
            continue;
        }
        m_book.setPhase(entry, Phase::Due, now.wall);
        m_deliveries.emplace(RequestBook::Slot{entry.trigger, entry.id}, Delivery{});
    }

    std::erase_if(m_deliveries, [&](const auto& pair) {
        auto& entry = *m_book.find(pair.first.second);
        if (isWaiting(pair.second) || !isTooOld(entry))
            return false;
        setPhase(entry, Phase::Missed, now.wall);
        return true;
    });
}

// --- delivery

void NotificationCenter::fire(Moment now)
{
    noteClock(now);
    moveDue(now);
    offer(now);
}

void NotificationCenter::offer(Moment now)
{
    std::size_t unanswered = 0;
    for (auto& [slot, delivery] : m_deliveries) {
        if (isWaiting(delivery) && now.elapsed - delivery.offeredAt >= kAnswerTime) {
            delivery.isLate = true;
            delivery.nextOffer = delivery.offeredAt
                + (delivery.offers < kOffersBeforePatience ? kRetryTime : kPatientRetryTime);
            reportUndeliverable(*m_book.find(slot.second), delivery);
        }
        unanswered += isWaiting(delivery) ? 1 : 0;
    }

    for (auto& [slot, delivery] : m_deliveries) {
        if (isWaiting(delivery) || delivery.nextOffer > now.elapsed || unanswered >= kMostUnanswered)
            continue;
        offerOne(*m_book.find(slot.second), delivery, now);
        ++unanswered;
    }
}

std::optional<std::int64_t> NotificationCenter::nextRetry() const
{
    std::optional<std::int64_t> next;
    const auto consider = [&](std::int64_t elapsed) { next = std::min(next.value_or(elapsed), elapsed); };
    std::size_t unanswered = 0;
    for (const auto& [slot, delivery] : m_deliveries) {
        if (isWaiting(delivery)) {
            consider(delivery.offeredAt + kAnswerTime);
            ++unanswered;
        }
    }
    // Otherwise the others wait for an answer, not for a time.
    if (unanswered < kMostUnanswered) {
        for (const auto& [slot, delivery] : m_deliveries) {
            if (!isWaiting(delivery))
                consider(delivery.nextOffer);
        }
    }
    return next;
}

void NotificationCenter::offerOne(Entry& entry, Delivery& delivery, Moment now)
{
    const BeingProcessed mark(entry.id);
    const auto request = decodeRecord(entry.record);
    crashPoint("showing", request.identifier);
    const bool maybeSeen = entry.offered;
    delivery.waits = true;
    delivery.isLate = false;
    delivery.offeredAt = now.elapsed;
    ++delivery.offers;
    if (!entry.offered) {
        entry.offered = true;
        m_changed.insert(entry.id);
    }
    m_server.show(entry.id,
        {.summary = request.title,
            .body = request.body,
            .sound = request.sound == NotificationDaemonProtocol::Sound::Default,
            .repeat = maybeSeen});
    crashPoint("offered");
}

void NotificationCenter::reportUndeliverable(const Entry& entry, Delivery& delivery)
{
    if (std::exchange(delivery.reported, true))
        return;
    m_observer.undeliverable(decodeRecord(entry.record));
}

void NotificationCenter::answered(std::int64_t token, std::uint32_t serverID, Moment now)
{
    if (token == kSilenceToken && serverID != 0)
        setNote(kSilenceReported, 1);
    auto* entry = m_book.find(token);
    if (entry == nullptr || entry->phase != Phase::Due)
        return;
    const auto found = m_deliveries.find({entry->trigger, entry->id});
    if (serverID == 0) {
        auto& delivery = found->second;
        delivery.waits = false;
        delivery.nextOffer = now.elapsed + kRetryTime;
        entry->offered = false; // nobody has seen it
        m_changed.insert(entry->id);
        reportUndeliverable(*entry, delivery);
        return;
    }
    crashPoint("answered");
    m_deliveries.erase(found);
    setPhase(*entry, Phase::Shown, now.wall);
    setNote(kLastShown, now.wall);
    m_justShown[entry->id] = now.elapsed;
    m_observer.delivered(decodeRecord(entry->record), serverID);
}

void NotificationCenter::serverAppeared(Moment now)
{
    for (auto& [slot, delivery] : m_deliveries) {
        delivery.waits = false;
        delivery.nextOffer = now.elapsed;
        delivery.offers = 0;
    }
    fire(now);
}

/// A server that dies takes with it what it has just shown: that is due again.
void NotificationCenter::serverVanished(Moment now)
{
    for (const auto& [id, shownAt] : std::exchange(m_justShown, {})) {
        auto* entry = m_book.find(id);
        if (entry == nullptr || entry->phase != Phase::Shown || now.elapsed - shownAt > kShownIsSafeAfter)
            continue;
        setPhase(*entry, Phase::Due, now.wall);
        m_deliveries.emplace(
            RequestBook::Slot{entry->trigger, entry->id}, Delivery{.nextOffer = now.elapsed + kRetryTime});
    }
    for (auto& [slot, delivery] : m_deliveries) {
        delivery.waits = false;
        delivery.nextOffer = now.elapsed + kRetryTime;
    }
    offer(now);
}

std::optional<std::int64_t> NotificationCenter::nextTrigger() const
{
    if (m_book.schedule().empty())
        return std::nullopt;
    return m_book.schedule().begin()->first;
}

// --- the store

void NotificationCenter::takeChanges(StoreChange& change)
{
    for (const auto id : m_changed) {
        if (const auto* entry = m_book.find(id))
            change.put.push_back(entry->stored());
    }
    change.erase.insert(change.erase.end(), m_erased.begin(), m_erased.end());
    if (m_notesChanged)
        change.notes = m_notes;
}

void NotificationCenter::settle(Moment now)
{
    std::erase_if(
        m_justShown, [&](const auto& shown) { return now.elapsed - shown.second > kShownIsSafeAfter; });
    if (now.elapsed - m_clearedUpAt >= kClearUpEvery)
        clearUp(now);
    if (!isUnsettled())
        return;
    if (m_nextRecording && now.elapsed < *m_nextRecording)
        return;
    StoreChange change;
    takeChanges(change);
    try {
        commit(change, m_mustSurvivePowerCut ? Durability::SurvivesPowerCut : Durability::SurvivesCrash, now);
        m_changed.clear();
        m_erased.clear();
        m_notesChanged = false;
        m_mustSurvivePowerCut = false;
        m_nextRecording.reset();
    } catch (const StoreError& error) {
        // Kept in mind and tried again.
        if (!m_nextRecording)
            log(LogLevel::Error, std::string("what was shown could not be recorded: ") + error.what());
        m_nextRecording = now.elapsed + kRetryTime;
    }
    crashPoint("recorded");
}

void NotificationCenter::commit(const StoreChange& change, Durability durability, Moment now)
{
    if (m_storeIsBroken)
        repairStore(now);
    try {
        m_store.apply(change, durability);
    } catch (const StoreError& error) {
        if (error.kind() != StoreError::Kind::Broken)
            throw;
        log(LogLevel::Error, std::string("the store is written anew: ") + error.what());
        m_storeIsBroken = true;
        repairStore(now);
        m_store.apply(change, durability);
    }
}

/// Writing everything is dear, so that it is not tried at every call.
void NotificationCenter::repairStore(Moment now)
{
    if (now.elapsed < m_nextRepair)
        throw StoreError(StoreError::Kind::Broken, "the store is broken and will be tried again in a moment");
    m_nextRepair = now.elapsed + kRetryTime;
    std::vector<StoredRequest> everything;
    everything.reserve(m_book.entries().size());
    for (const auto& [id, entry] : m_book.entries())
        everything.push_back(entry.stored());
    m_store.replace(everything, m_notes);
    m_storeIsBroken = false;
}

void NotificationCenter::clearUp(Moment now)
{
    m_clearedUpAt = now.elapsed;
    const bool clockIsTrusted =
        now.elapsed - m_clockSetAt >= kClockIsSettledAfter && now.wall >= kEarliestPlausible;
    dropOldest(Phase::Shown, kMostShown, clockIsTrusted ? now.wall - kKeepShown : INT64_MIN);
    dropOldest(Phase::Missed, kMostMissed, clockIsTrusted ? now.wall - kKeepMissed : INT64_MIN);
    if (clockIsTrusted)
        remindOfSilence(now);
}

/// Forgets those of a phase that came into it before an instant, and all but the newest `keep`.
void NotificationCenter::dropOldest(Phase phase, std::size_t keep, std::int64_t before)
{
    std::vector<RequestBook::Slot> bySince;
    for (const auto& [id, entry] : m_book.entries()) {
        if (entry.phase == phase)
            bySince.emplace_back(entry.since, id);
    }
    std::sort(bySince.begin(), bySince.end());
    const auto surplus = bySince.size() > keep ? bySince.size() - keep : 0;
    for (std::size_t i = 0; i < bySince.size(); ++i) {
        if (i >= surplus && bySince[i].first >= before)
            break;
        m_changed.erase(bySince[i].second);
        m_erased.push_back(bySince[i].second);
        m_book.erase(bySince[i].second);
    }
}

/// The application arms a month ahead. Where it has armed something and then never came back, the user is
/// told before the last alarm has rung, once.
void NotificationCenter::remindOfSilence(Moment now)
{
    const auto lastContact = note(kLastContact);
    const bool hasRung = note(kLastShown) > lastContact;
    if (lastContact == 0 || now.wall - lastContact < kLongSilence || note(kSilenceReported) != 0
        || (m_book.count(Phase::Pending) == 0 && !hasRung))
        return;
    m_server.show(kSilenceToken,
        {.summary = "Calendar Murkel has not run for a while",
            .body = "Open it soon: only the meetings of the next few days still have an alarm.",
            .sound = false,
            .repeat = false});
}

}
