#include "TinkraICalendar/EventAssembly.h"

#include "TinkraICalendar/EventGroups.h"
#include "TinkraICalendar/RecurrenceRule.h"
#include "TinkraICalendar/SeriesBound.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace Tinkra::ICalendar {

namespace {

using namespace std::chrono;

constexpr std::int64_t secondsPerDay = 86'400;

LocalSeconds midnightOf(LocalSeconds time)
{
    return floor<days>(time);
}

/// The day that a time of an all-day event means. Producers that write UTC write their own midnight in it.
LocalSeconds dayOf(const ZonedTime& time)
{
    return midnightOf(time.form == TimeForm::Utc ? time.time + hours{12} : time.time);
}

/// What an exception replaces.
ZonedTime instanceOf(const EventDraft& exception)
{
    return exception.recurrenceId.value_or(exception.start);
}

/// FNV-1a, 64 bits.
class Fingerprint {
public:
    void add(std::string_view text)
    {
        for (const char c : text)
            m_value = (m_value ^ static_cast<unsigned char>(c)) * 0x100000001B3;
        m_value = (m_value ^ 0xFF) * 0x100000001B3; // a border that no text contains
    }
    void add(std::int64_t number) { add(std::to_string(number)); }
    std::uint64_t value() const { return m_value; }

private:
    std::uint64_t m_value = 0xCBF29CE484222325;
};

class EventAssembly {
public:
    EventAssembly(Drafts drafts, Notices& notices)
        : m_drafts{std::move(drafts)}
        , m_notices{notices}
    {
    }

    PackedEvents::Parts assemble();

private:
    const EventDraft& draft(std::uint32_t at) const { return m_drafts.events[at]; }

    void nameTheNameless();
    std::string identifierFromContent(const EventDraft& event) const;

    void addGroup(const EventGroup& group);
    std::uint32_t addEvent(const EventDraft& event);
    void addSeries(std::uint32_t at, const EventDraft& master, const std::vector<std::uint32_t>& exceptions,
        std::uint32_t firstException);
    void addRules(SeriesRecord& series, const EventDraft& master, LocalSeconds start);
    bool addRule(Slice rule, const EventDraft& master, LocalSeconds start, LocalSeconds& last);
    void addExtras(SeriesRecord& series, const EventRecord& record, const EventDraft& master);
    std::vector<InstanceKey> exceptionDates(const EventRecord& record, const EventDraft& master) const;

    ZoneIndex zoneOf(const ZonedTime& time, std::uint32_t calendar) const;
    Length lengthOf(const ZonedTime& start, const std::optional<ZonedTime>& end,
        const std::optional<Duration>& duration, std::uint32_t calendar) const;
    EventRecord timesOf(const EventDraft& event) const;

    InstanceKey keyOf(const ZonedTime& time, const EventRecord& master) const;
    InstanceKey canonical(InstanceKey key, const EventRecord& master) const;
    bool isAmong(
        const std::vector<InstanceKey>& deleted, InstanceKey instance, const EventRecord& master) const;
    std::vector<std::uint32_t> newestOfEach(
        const std::vector<std::uint32_t>& exceptions, const EventDraft* master) const;

    Drafts m_drafts;
    Notices& m_notices;
    PackedEvents::Parts m_parts;
};

PackedEvents::Parts EventAssembly::assemble()
{
    nameTheNameless();
    m_parts.events.reserve(m_drafts.events.size());
    m_parts.texts.reserve(m_drafts.texts.size());
    forEachUid(m_drafts, [this](const EventGroup& group) { addGroup(group); });
    m_parts.zones = m_drafts.zones.named();
    m_parts.isWhole = m_drafts.isWhole;
    return std::move(m_parts);
}

void EventAssembly::nameTheNameless()
{
    for (auto& event : m_drafts.events) {
        if (event.uid.count > 0)
            continue;
        const auto identifier = identifierFromContent(event);
        event.uid = {
            static_cast<std::uint32_t>(m_drafts.texts.size()), static_cast<std::uint32_t>(identifier.size())};
        m_drafts.texts += identifier;
    }
}

/// From what the user sees of the event, so that time stamps of a new export do not change it.
std::string EventAssembly::identifierFromContent(const EventDraft& event) const
{
    Fingerprint fingerprint;
    const auto addTime = [&](const std::optional<ZonedTime>& time) {
        if (!time)
            return fingerprint.add("none");
        const auto zone = m_drafts.zones.zone(m_drafts.zones.settled(time->zone));
        fingerprint.add(static_cast<int>(time->form));
        fingerprint.add(time->time.time_since_epoch().count());
        fingerprint.add(zone ? zone->name() : "");
    };
    addTime(event.start);
    addTime(event.end);
    addTime(event.recurrenceId);
    if (event.duration) {
        fingerprint.add(event.duration->nominal.count());
        fingerprint.add(event.duration->exact.count());
    }
    fingerprint.add(m_drafts.text(event.title));
    for (std::uint32_t i = 0; i < event.rules.count; ++i)
        fingerprint.add(m_drafts.text(m_drafts.rules[event.rules.first + i]));

    std::array<char, 32> name{};
    const auto length = std::snprintf(
        name.data(), name.size(), "content-%016llx", static_cast<unsigned long long>(fingerprint.value()));
    return {name.data(), static_cast<std::size_t>(length)};
}

void EventAssembly::addGroup(const EventGroup& group)
{
    for (const auto at : group.namesakes)
        addSeries(addEvent(draft(at)), draft(at), {}, 0);
    if (!group.master) {
        for (const auto at : newestOfEach(group.exceptions, nullptr))
            addEvent(draft(at));
        return;
    }
    const auto& master = draft(*group.master);
    const auto record = addEvent(master);
    if (group.exceptions.empty()) {
        addSeries(record, master, {}, 0);
        return;
    }

    // What was deleted stays deleted, even when it had been moved before.
    auto exceptions = newestOfEach(group.exceptions, &master);
    const auto series = m_parts.events[record];
    const auto deleted = exceptionDates(series, master);
    const auto isDeleted = [&](std::uint32_t at) {
        return isAmong(deleted, keyOf(instanceOf(draft(at)), series), series);
    };
    std::erase_if(exceptions, [&](std::uint32_t at) { return !draft(at).appliesToFuture && isDeleted(at); });
    const auto firstException = static_cast<std::uint32_t>(m_parts.events.size());
    for (const auto at : exceptions)
        m_parts.events[addEvent(draft(at))].isDeleted = isDeleted(at);
    addSeries(record, master, exceptions, firstException);
}

std::uint32_t EventAssembly::addEvent(const EventDraft& event)
{
    auto record = timesOf(event);
    const auto uid = m_drafts.text(event.uid);
    const auto title = m_drafts.text(event.title);
    record.text = static_cast<std::uint32_t>(m_parts.texts.size());
    record.uidLength = event.uid.count;
    record.titleLength = event.title.count;
    record.hasTitle = event.hasTitle;
    m_parts.texts += uid;
    m_parts.texts += title;
    m_parts.events.push_back(record);
    return static_cast<std::uint32_t>(m_parts.events.size() - 1);
}

EventRecord EventAssembly::timesOf(const EventDraft& event) const
{
    EventRecord record;
    const auto length = lengthOf(event.start, event.end, event.duration, event.calendar);
    record.start = event.start.time;
    record.zone = zoneOf(event.start, event.calendar);
    record.isDate = event.start.form == TimeForm::Date;
    record.lengthSeconds = length.seconds;
    record.lengthDays = length.nominalDays;
    record.isLengthOnClock = length.isOnClock;
    return record;
}

ZoneIndex EventAssembly::zoneOf(const ZonedTime& time, std::uint32_t calendar) const
{
    switch (time.form) {
    case TimeForm::Date:
        return ZoneIndex::Viewer;
    case TimeForm::Utc:
        return ZoneIndex::Utc;
    case TimeForm::Local:
        break;
    }
    const auto zone = time.zone == ZoneIndex::Viewer ? m_drafts.zones.defaultOf(calendar) : time.zone;
    return m_drafts.zones.settled(zone);
}

Length EventAssembly::lengthOf(const ZonedTime& start, const std::optional<ZonedTime>& end,
    const std::optional<Duration>& duration, std::uint32_t calendar) const
{
    const auto ofDays = [](std::int64_t count) {
        count = std::max<std::int64_t>(count, 0);
        return Length{.seconds = count * secondsPerDay, .nominalDays = static_cast<std::int32_t>(count)};
    };
    if (start.form == TimeForm::Date) {
        if (end) {
            // An end within a day means that the day belongs to the event.
            const auto last = end->form == TimeForm::Local ? ceil<days>(end->time) : floor<days>(dayOf(*end));
            return ofDays((last - floor<days>(start.time)).count());
        }
        if (duration)
            return ofDays(duration->nominal.count() + ceil<days>(duration->exact).count());
        return ofDays(1);
    }
    if (end) {
        const auto startZone = zoneOf(start, calendar);
        // An end without a zone is on the clock of the start, whatever the calendar says.
        const bool isFloating = end->form == TimeForm::Local && end->zone == ZoneIndex::Viewer;
        const auto endZone = isFloating ? startZone : zoneOf(*end, calendar);
        if (startZone == endZone || startZone == ZoneIndex::Viewer || endZone == ZoneIndex::Viewer)
            return {
                .seconds = std::max<std::int64_t>((end->time - start.time).count(), 0), .isOnClock = true};
        const auto from = m_drafts.zones.zone(startZone)->toUtc(start.time);
        const auto to = m_drafts.zones.zone(endZone)->toUtc(end->time);
        return {.seconds = std::max<std::int64_t>((to - from).count(), 0)};
    }
    if (duration) {
        const auto total = seconds{duration->nominal} + duration->exact;
        if (total > seconds{0})
            return {.seconds = total.count(),
                .nominalDays = static_cast<std::int32_t>(duration->nominal.count())};
    }
    return {};
}

/// How an EXDATE or RECURRENCE-ID names an instance of `master`.
InstanceKey EventAssembly::keyOf(const ZonedTime& time, const EventRecord& master) const
{
    if (master.isDate)
        return InstanceKey::date(dayOf(time));
    if (time.form == TimeForm::Date)
        return InstanceKey::date(time.time);
    if (time.form == TimeForm::Utc)
        return InstanceKey::utc(UtcSeconds{time.time.time_since_epoch()});
    // One without a zone, or in a zone unknown here or there, means the clock of the series.
    const auto zone = m_drafts.zones.settled(time.zone);
    if (zone == ZoneIndex::Viewer || zone == master.zone || master.zone == ZoneIndex::Viewer)
        return InstanceKey::local(time.time);
    return InstanceKey::utc(m_drafts.zones.zone(zone)->toUtc(time.time));
}

/// One form for all that name the same instance, as far as that can be told without knowing the viewer's
/// zone.
InstanceKey EventAssembly::canonical(InstanceKey key, const EventRecord& master) const
{
    const auto zone = m_drafts.zones.zone(master.zone);
    if (key.form() != TimeForm::Local || !zone)
        return key;
    return InstanceKey::utc(zone->toUtc(key.time()));
}

bool EventAssembly::isAmong(
    const std::vector<InstanceKey>& deleted, InstanceKey instance, const EventRecord& master) const
{
    const auto has = [&deleted](
                         InstanceKey key) { return std::binary_search(deleted.begin(), deleted.end(), key); };
    if (has(instance))
        return true;
    const auto zone = m_drafts.zones.zone(master.zone);
    auto local = instance.time();
    if (instance.form() == TimeForm::Utc) {
        if (!zone)
            return false;
        local = zone->toLocal(UtcSeconds{instance.time().time_since_epoch()});
    }
    return has(canonical(instance, master)) || has(InstanceKey::local(local))
        || has(InstanceKey::date(local));
}

/// One event for each instance that is replaced: its newest version.
std::vector<std::uint32_t> EventAssembly::newestOfEach(
    const std::vector<std::uint32_t>& exceptions, const EventDraft* master) const
{
    struct Keyed {
        InstanceKey key;
        std::uint32_t event;
    };
    std::vector<Keyed> keyed;
    keyed.reserve(exceptions.size());
    auto series = master != nullptr ? timesOf(*master) : EventRecord{};
    for (const auto at : exceptions) {
        const auto time = instanceOf(draft(at));
        if (master == nullptr) { // without a series, the key itself says on which clock it is
            series.isDate = time.form == TimeForm::Date;
            series.zone = zoneOf(time, draft(at).calendar);
        }
        keyed.push_back({canonical(keyOf(time, series), series), at});
    }
    std::sort(keyed.begin(), keyed.end(), [this](const Keyed& a, const Keyed& b) {
        return a.key != b.key ? a.key < b.key : isOlderVersion(draft(a.event), draft(b.event));
    });
    std::vector<std::uint32_t> newest;
    for (std::size_t i = 0; i < keyed.size(); ++i) {
        if (i + 1 == keyed.size() || keyed[i + 1].key != keyed[i].key)
            newest.push_back(keyed[i].event);
    }
    std::sort(newest.begin(), newest.end());
    return newest;
}

std::vector<InstanceKey> EventAssembly::exceptionDates(
    const EventRecord& record, const EventDraft& master) const
{
    std::vector<InstanceKey> keys;
    keys.reserve(master.exceptions.count);
    for (std::uint32_t i = 0; i < master.exceptions.count; ++i)
        keys.push_back(keyOf(m_drafts.exceptions[master.exceptions.first + i], record));
    std::sort(keys.begin(), keys.end());
    return keys;
}

void EventAssembly::addSeries(std::uint32_t at, const EventDraft& master,
    const std::vector<std::uint32_t>& exceptions, std::uint32_t firstException)
{
    if (master.rules.count == 0 && master.extras.count == 0 && master.exceptions.count == 0
        && exceptions.empty())
        return;
    const auto record = m_parts.events[at];
    SeriesRecord series;
    series.lastStart = record.start;
    addRules(series, master, record.start);
    addExtras(series, record, master);

    auto skips = exceptionDates(record, master);
    std::vector<SplitRecord> splits;
    for (std::size_t i = 0; i < exceptions.size(); ++i) {
        const auto& exception = draft(exceptions[i]);
        const auto key = keyOf(instanceOf(exception), record);
        skips.push_back(key);
        if (exception.appliesToFuture)
            splits.push_back({canonical(key, record), firstException + static_cast<std::uint32_t>(i)});
    }
    std::sort(skips.begin(), skips.end());
    skips.erase(std::unique(skips.begin(), skips.end()), skips.end());
    std::sort(splits.begin(), splits.end(), [](const auto& a, const auto& b) { return a.from < b.from; });

    series.firstSkip = static_cast<std::uint32_t>(m_parts.skips.size());
    series.skipCount = static_cast<std::uint32_t>(skips.size());
    m_parts.skips.insert(m_parts.skips.end(), skips.begin(), skips.end());
    series.firstSplit = static_cast<std::uint32_t>(m_parts.splits.size());
    series.splitCount = static_cast<std::uint32_t>(splits.size());
    m_parts.splits.insert(m_parts.splits.end(), splits.begin(), splits.end());
    m_parts.series.push_back(series);
    m_parts.events[at].series = static_cast<std::uint32_t>(m_parts.series.size());
}

void EventAssembly::addRules(SeriesRecord& series, const EventDraft& master, LocalSeconds start)
{
    series.firstRule = static_cast<std::uint32_t>(m_parts.rules.size());
    for (std::uint32_t i = 0; i < master.rules.count; ++i) {
        if (addRule(m_drafts.rules[master.rules.first + i], master, start, series.lastStart))
            ++series.ruleCount;
    }
    LocalSeconds ignored;
    for (std::uint32_t i = 0; i < master.exclusionRules.count; ++i) {
        if (addRule(m_drafts.exclusionRules[master.exclusionRules.first + i], master, start, ignored))
            ++series.exclusionRuleCount;
    }
}

/// False for a rule that cannot be read.
bool EventAssembly::addRule(Slice rule, const EventDraft& master, LocalSeconds start, LocalSeconds& last)
{
    const auto text = m_drafts.text(rule);
    std::vector<std::string> complaints;
    const auto parsed = parseRecurrenceRule(text, complaints);
    for (const auto& complaint : complaints)
        m_notices.add(master.line, complaint);
    if (!parsed)
        return false;
    last = std::max(last, lastPossibleStart(*parsed, start));
    m_parts.rules.push_back({static_cast<std::uint32_t>(m_parts.texts.size()), rule.count});
    m_parts.texts += text;
    return true;
}

void EventAssembly::addExtras(SeriesRecord& series, const EventRecord& record, const EventDraft& master)
{
    series.firstExtra = static_cast<std::uint32_t>(m_parts.extras.size());
    series.extraCount = master.extras.count;
    for (std::uint32_t i = 0; i < master.extras.count; ++i) {
        const auto& written = m_drafts.extras[master.extras.first + i];
        ExtraRecord extra;
        if (record.isDate) {
            extra.start = dayOf(written.start);
        } else if (written.start.form == TimeForm::Date) { // that day, at the time of the series
            extra.start = written.start.time + (record.start - midnightOf(record.start));
            extra.zone = record.zone;
        } else {
            const bool isFloating =
                written.start.form == TimeForm::Local && written.start.zone == ZoneIndex::Viewer;
            extra.start = written.start.time;
            extra.zone = isFloating ? record.zone : zoneOf(written.start, master.calendar);
            extra.hasLength = written.end || written.duration;
        }
        if (extra.hasLength) {
            const auto length = lengthOf(written.start, written.end, written.duration, master.calendar);
            extra.lengthSeconds = length.seconds;
            extra.lengthDays = length.nominalDays;
            extra.isLengthOnClock = length.isOnClock;
        }
        // The two may be on different clocks, which differ by a day at most.
        series.lastStart = std::max(series.lastStart, extra.start + days{2});
        m_parts.extras.push_back(extra);
    }
}

}

PackedEvents::Parts assembleEvents(Drafts drafts, Notices& notices)
{
    return EventAssembly{std::move(drafts), notices}.assemble();
}

}
