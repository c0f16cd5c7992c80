#include "TinkraICalendar/OccurrenceQuery.h"

#include "TinkraICalendar/RecurrenceRule.h"
#include "TinkraICalendar/RuleExpansion.h"

#include <algorithm>
#include <utility>

namespace Tinkra::ICalendar {

namespace {

using namespace std::chrono;

/// More than any two clocks differ: offsets are less than a day.
constexpr days clockSlack{2};

/// A length that counts days lasts an hour or so more or less where the clocks change.
constexpr days lengthSlack{1};

/// All that calendars can express; further bounds would only overflow.
constexpr UtcSeconds beginningOfTime = sys_days{year{-100} / January / 1};
constexpr UtcSeconds endOfTime = sys_days{year{12'000} / January / 1};

LocalSeconds onAnyClock(UtcSeconds time)
{
    return LocalSeconds{time.time_since_epoch()};
}

bool overlaps(UtcSeconds start, UtcSeconds end, TimeRange range)
{
    return start < range.to && (end > range.from || (start == end && start >= range.from));
}

}

OccurrenceQuery::OccurrenceQuery(const PackedEvents& events, TimeRange range, ZonePtr viewer,
    const Sink& sink, const ExpansionLimits& limits)
    : m_events{events}
    , m_range{std::clamp(range.from, beginningOfTime, endOfTime),
          std::clamp(range.to, beginningOfTime, endOfTime)}
    , m_viewer{std::move(viewer)}
    , m_limits{limits}
    , m_sink{sink}
{
}

std::vector<std::string> OccurrenceQuery::run()
{
    for (const auto& event : m_events.events()) {
        if (event.isDeleted)
            continue;
        if (const auto* series = m_events.series(event))
            addSeries(event, *series);
        else
            addSingle(event);
    }
    return m_notices.take();
}

void OccurrenceQuery::addSingle(const EventRecord& event)
{
    // Most events are far away, and that can be told without asking any zone.
    if (event.start - clockSlack > onAnyClock(m_range.to)
        || event.start + seconds{event.lengthSeconds} + clockSlack < onAnyClock(m_range.from))
        return;
    const auto start = zoneOf(event).toUtc(event.start);
    const auto end = endOf(event, event.length(), event.start, start);
    if (overlaps(start, end, m_range))
        give(event, start, end);
}

void OccurrenceQuery::addSeries(const EventRecord& event, const SeriesRecord& record)
{
    if (isOutOfReach(event, record))
        return;
    // The first series has a budget of its own; with one file per event, looking at the clock for it would
    // cost as much as working it out.
    const auto now = std::exchange(m_hasMetSeries, true) ? m_timer.elapsed() : std::chrono::nanoseconds{0};
    if (now >= m_limits.time) {
        noteGivenUp(event, "left out: the calendar takes too long to work out.");
        return;
    }
    if (m_givenOfSeries >= m_limits.occurrences) {
        noteGivenUp(event, "left out: too much happens in the calendar.");
        return;
    }
    Series series{.event = event,
        .record = record,
        .zone = &zoneOf(event),
        .length = exactLength(event),
        .range = m_range,
        .began = now};
    series.range = reach(series);

    const auto rules = m_events.rules(record);
    if (rules.size() == 1 && record.extraCount == 0 && record.exclusionRuleCount == 0) {
        m_given.clear();
        expand(series, rules.front(), m_limits.perEvent.occurrences, [&](const RuleInstance& instance) {
            if (isFirstAt(instance.utc))
                giveInstance(series, {.utc = instance.utc, .local = instance.local});
        });
        return;
    }
    for (const auto& instance : instancesOf(series))
        giveInstance(series, instance);
}

/// Whether the series at hand has given no instance at that time yet. Instances come in order, except that
/// skipped times move forward, to where others may be.
bool OccurrenceQuery::isFirstAt(UtcSeconds utc)
{
    const bool isInOrder = m_given.empty() || utc > m_given.back();
    if (!isInOrder && std::find(m_given.rbegin(), m_given.rend(), utc) != m_given.rend())
        return false;
    m_given.push_back(utc);
    return true;
}

bool OccurrenceQuery::isOutOfReach(const EventRecord& event, const SeriesRecord& record) const
{
    if (record.splitCount > 0)
        return false;
    auto length = event.lengthSeconds;
    for (const auto& extra : m_events.extras(record))
        length = std::max(length, extra.lengthSeconds);
    const bool isOver = record.lastStart < onAnyClock(m_range.from) - seconds{length} - clockSlack;
    const bool isToCome = record.extraCount == 0 && event.start - clockSlack > onAnyClock(m_range.to);
    return isOver || isToCome;
}

/// Instances that start here, or are moved from here, can overlap the range.
TimeRange OccurrenceQuery::reach(const Series& series) const
{
    auto length = series.event.lengthSeconds;
    auto forth = seconds{0};
    auto back = seconds{0};
    for (const auto& extra : m_events.extras(series.record))
        length = std::max(length, extra.lengthSeconds);
    for (const auto& split : m_events.splits(series.record)) {
        length = std::max(length, m_events.events()[split.event].lengthSeconds);
        const auto shift = shiftOf(split, series.event);
        forth = std::max(forth, shift + clockSlack);
        back = std::min(back, shift - clockSlack);
    }
    const auto slack = length > 0 ? seconds{lengthSlack} : seconds{0};
    return {std::max(beginningOfTime, m_range.from - seconds{length} - slack - forth),
        std::min(endOfTime, m_range.to - back)};
}

std::optional<RecurrenceRule> OccurrenceQuery::parsedRule(const RuleText& rule) const
{
    std::vector<std::string> saidWhenRead;
    return parseRecurrenceRule(m_events.text(rule.text, rule.length), saidWhenRead);
}

SeriesStart OccurrenceQuery::startOf(const Series& series)
{
    return {
        .local = series.event.start, .zone = ZonePtr{ZonePtr{}, series.zone}, .isDate = series.event.isDate};
}

/// Expands one rule. False when the time for the event, or for the whole text, is used up.
bool OccurrenceQuery::expand(const Series& series, const RuleText& rule, std::size_t most,
    const std::function<void(const RuleInstance&)>& sink)
{
    const auto parsed = parsedRule(rule);
    if (!parsed)
        return true;
    const auto start = startOf(series);
    const auto end =
        expandRule(*parsed, start, series.range, {.occurrences = most, .time = m_limits.perEvent.time}, sink);
    if (end == ExpansionEnd::TooManyOccurrences)
        noteGivenUp(series.event, "cut short: it happens too often.");
    if (end == ExpansionEnd::TooMuchTime)
        noteGivenUp(series.event, "cut short: its rule takes too long to work out.");
    return end == ExpansionEnd::Complete;
}

/// Several rules, single dates and excluded ones, each instance once, in order.
std::vector<OccurrenceQuery::Instance> OccurrenceQuery::instancesOf(const Series& series)
{
    std::vector<Instance> instances;
    const auto start = series.zone->toUtc(series.event.start);
    if (start >= series.range.from && start < series.range.to)
        instances.push_back({.utc = start, .local = series.event.start});
    const auto isInTime = [&] { return m_timer.elapsed() - series.began < m_limits.perEvent.time; };

    for (const auto& rule : m_events.rules(series.record)) {
        const auto left =
            m_limits.perEvent.occurrences - std::min(instances.size(), m_limits.perEvent.occurrences);
        const bool goesOn = expand(series, rule, left, [&](const RuleInstance& instance) {
            instances.push_back({.utc = instance.utc, .local = instance.local});
        });
        if (!goesOn || !isInTime())
            break;
    }
    addExtras(series, instances);
    std::sort(instances.begin(), instances.end(), [](const Instance& a, const Instance& b) {
        return a.utc != b.utc ? a.utc < b.utc : (a.extra != nullptr) > (b.extra != nullptr);
    });
    const auto isSame = [](const Instance& a, const Instance& b) { return a.utc == b.utc; };
    instances.erase(std::unique(instances.begin(), instances.end(), isSame), instances.end());

    for (const auto& rule : m_events.exclusionRules(series.record)) {
        if (!isInTime())
            break;
        exclude(series, rule, instances);
    }
    if (instances.size() > m_limits.perEvent.occurrences) {
        noteGivenUp(series.event, "cut short: it happens too often.");
        instances.resize(m_limits.perEvent.occurrences);
    }
    return instances;
}

void OccurrenceQuery::addExtras(const Series& series, std::vector<Instance>& instances) const
{
    for (const auto& extra : m_events.extras(series.record)) {
        const bool isOnSameClock = series.event.isDate || extra.zone == series.event.zone;
        const auto* zone = m_events.zone(extra.zone);
        const auto utc = (isOnSameClock ? *series.zone
                : zone != nullptr       ? *zone
                                        : *m_viewer)
                             .toUtc(extra.start);
        if (utc < series.range.from || utc >= series.range.to)
            continue;
        instances.push_back({.utc = utc,
            .local = isOnSameClock ? extra.start : series.zone->toLocal(utc),
            .extra = extra.hasLength ? &extra : nullptr});
    }
}

/// EXRULE. Its expansion begins with DTSTART, which it excludes only when it fits the rule.
void OccurrenceQuery::exclude(const Series& series, const RuleText& rule, std::vector<Instance>& instances)
{
    const auto parsed = parsedRule(rule);
    const bool startFits = parsed && fitsRule(*parsed, startOf(series));
    std::vector<UtcSeconds> excluded;
    expand(series, rule, m_limits.perEvent.occurrences, [&](const RuleInstance& instance) {
        if (startFits || instance.local != series.event.start)
            excluded.push_back(instance.utc);
    });
    std::sort(excluded.begin(), excluded.end());
    std::erase_if(instances, [&](const Instance& instance) {
        return std::binary_search(excluded.begin(), excluded.end(), instance.utc);
    });
}

void OccurrenceQuery::giveInstance(const Series& series, const Instance& instance)
{
    if (isSkipped(series, instance))
        return;
    ++m_givenOfSeries;
    if (const auto* split = splitFor(series.record, instance)) {
        giveMoved(series, *split, instance);
        return;
    }
    auto end = endOf(series.event, series.length, instance.local, instance.utc);
    if (instance.extra != nullptr) {
        const auto& extra = *instance.extra;
        EventRecord period = series.event;
        period.zone = extra.zone;
        end = endOf(period, extra.length(), extra.start, instance.utc);
    }
    if (overlaps(instance.utc, end, m_range))
        give(series.event, instance.utc, end);
}

void OccurrenceQuery::giveMoved(const Series& series, const SplitRecord& split, const Instance& instance)
{
    const auto& by = m_events.events()[split.event];
    const auto& zone = zoneOf(by);
    auto local = by.zone == series.event.zone ? instance.local : zone.toLocal(instance.utc);
    if (by.isDate)
        local = floor<days>(local);
    local += shiftOf(split, series.event);
    const auto start = zone.toUtc(local);
    const auto end = endOf(by, exactLength(by), local, start);
    if (overlaps(start, end, m_range))
        give(by, start, end);
}

bool OccurrenceQuery::isSkipped(const Series& series, const Instance& instance) const
{
    const auto skips = m_events.skips(series.record);
    if (skips.empty())
        return false;
    const auto has = [&](InstanceKey key) { return std::binary_search(skips.begin(), skips.end(), key); };
    if (has(InstanceKey::utc(instance.utc)) || has(InstanceKey::date(instance.local)))
        return true;
    // A local time means one instant: of a repeated hour the first one, of a skipped hour the one it moved
    // to.
    const auto hasLocal = [&](LocalSeconds local) {
        return has(InstanceKey::local(local)) && series.zone->toUtc(local) == instance.utc;
    };
    return hasLocal(instance.local) || hasLocal(series.zone->toLocal(instance.utc));
}

/// The last split at or before the instance.
const SplitRecord* OccurrenceQuery::splitFor(const SeriesRecord& record, const Instance& instance) const
{
    const auto splits = m_events.splits(record);
    const auto after = std::partition_point(splits.begin(), splits.end(), [&](const SplitRecord& split) {
        return split.from.form() == TimeForm::Utc ? split.from.time() <= onAnyClock(instance.utc)
                                                  : split.from.time() <= instance.local;
    });
    return after == splits.begin() ? nullptr : &*std::prev(after);
}

/// How far a split moves the instances, on the clock of the event that moves them.
seconds OccurrenceQuery::shiftOf(const SplitRecord& split, const EventRecord& event) const
{
    const auto& by = m_events.events()[split.event];
    auto from = split.from.time();
    if (split.from.form() == TimeForm::Utc)
        from = zoneOf(by).toLocal(UtcSeconds{from.time_since_epoch()});
    else if (by.zone != event.zone)
        from = zoneOf(by).toLocal(zoneOf(event).toUtc(from));
    return by.start - (by.isDate ? LocalSeconds{floor<days>(from)} : from);
}

const Zone& OccurrenceQuery::zoneOf(const EventRecord& event) const
{
    const auto* zone = m_events.zone(event.zone);
    return zone != nullptr ? *zone : *m_viewer;
}

/// DTEND says how long the first instance lasts; the others last exactly as long (RFC 5545, section 3.8.5.3).
Length OccurrenceQuery::exactLength(const EventRecord& event) const
{
    if (event.isDate || !event.isLengthOnClock)
        return event.length();
    const auto& zone = zoneOf(event);
    const auto exact = zone.toUtc(event.start + seconds{event.lengthSeconds}) - zone.toUtc(event.start);
    return {.seconds = std::max<std::int64_t>(exact.count(), 0)};
}

UtcSeconds OccurrenceQuery::endOf(
    const EventRecord& event, const Length& length, LocalSeconds local, UtcSeconds utc) const
{
    const auto whole = seconds{length.seconds};
    auto end = utc + whole;
    if (event.isDate || length.isOnClock)
        end = zoneOf(event).toUtc(local + whole);
    else if (length.nominalDays != 0)
        end = zoneOf(event).toUtc(local + days{length.nominalDays}) + (whole - days{length.nominalDays});
    return std::max(utc, end);
}

void OccurrenceQuery::give(const EventRecord& event, UtcSeconds start, UtcSeconds end) const
{
    Occurrence occurrence{.uid = m_events.text(event.text, event.uidLength),
        .title = {},
        .start = start,
        .end = end,
        .isAllDay = event.isDate};
    if (event.hasTitle)
        occurrence.title = m_events.text(event.text + event.uidLength, event.titleLength);
    m_sink(occurrence);
}

void OccurrenceQuery::noteGivenUp(const EventRecord& event, std::string_view what)
{
    const auto uid = m_events.text(event.text, event.uidLength);
    const auto title = m_events.text(event.text + event.uidLength, event.titleLength);
    m_notices.add("The event " + quoted(title.empty() ? uid : title) + " was " + std::string{what});
}

}
