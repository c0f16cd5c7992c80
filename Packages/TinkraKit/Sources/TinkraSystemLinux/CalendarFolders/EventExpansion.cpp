#include "TinkraSystemLinux/CalendarFolders/EventExpansion.h"

#include "TinkraICalendar/WorkTimer.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <future>
#include <iterator>
#include <optional>
#include <utility>

namespace Tinkra::System {

namespace {

using ICalendar::UtcSeconds;
using namespace std::chrono_literals;

// Fewer files than this are not worth a second thread.
constexpr std::size_t kSourcesPerThread = 1000;

// What a file with one event gives for a month: many happen once, weekly ones four times, some each day.
constexpr std::size_t kUsualOccurrences = 4;

// What a file, and an event in it, may take at first: many times what honest ones need.
constexpr std::chrono::milliseconds kQuickFile = 50ms;
constexpr std::chrono::milliseconds kQuickEvent = 10ms;

// Processor time for all files together that need more than that: a busy machine makes a query late, which is
// an error, and never incomplete.
constexpr std::chrono::seconds kPatience = 8s;

// The years 1 to 9999, which is what iCalendar can write. NaN gives the lower end.
UtcSeconds wholeSecond(double seconds)
{
    constexpr double kFirst = -62135596800.0;
    constexpr double kLast = 253402300799.0;
    const double inside = seconds > kFirst ? std::min(seconds, kLast) : kFirst;
    return UtcSeconds{std::chrono::seconds{static_cast<std::int64_t>(inside)}};
}

EventDetails detailsOf(const ICalendar::Occurrence& occurrence, const std::string& calendarIdentifier)
{
    std::string identifier;
    identifier.reserve(calendarIdentifier.size() + 1 + occurrence.uid.size());
    identifier.append(calendarIdentifier).append("/").append(occurrence.uid);
    return {
        .eventIdentifier = identifier,
        .calendarItemIdentifier = std::move(identifier),
        .calendarIdentifier = calendarIdentifier,
        .title = occurrence.title ? std::optional{std::string{*occurrence.title}} : std::nullopt,
    };
}

}

EventExpansion::EventExpansion(Instant from, Instant to)
    : m_from(from)
    , m_to(to)
    , m_range{wholeSecond(std::floor(secondsSince1970(from))), wholeSecond(std::ceil(secondsSince1970(to)))}
    , m_days(DayRange::covering(m_range))
    , m_viewer(ICalendar::viewerZone())
{
}

void EventExpansion::add(const CalendarFolder& calendar, const std::string& place)
{
    m_places.push_back(place);
    const auto& files = calendar.contents().files();
    for (const auto& record : files.records()) {
        if (record.content && record.reach.overlaps(m_days))
            m_sources.push_back({&calendar, &*record.content, m_places.back(), files.name(record)});
    }
}

EventExpansion::Result EventExpansion::run() const
{
    const std::span all{m_sources};
    const auto half = all.size() < kSourcesPerThread ? 0 : all.size() / 2;
    std::vector<Source> slow;
    std::vector<Source> slowOfOther;
    auto other = std::async(half == 0 ? std::launch::deferred : std::launch::async,
        [&] { return expand(all.first(half), slowOfOther); });
    auto result = expand(all.subspan(half), slow);
    auto otherResult = other.get();

    result.events.insert(result.events.end(), std::move_iterator{otherResult.events.begin()},
        std::move_iterator{otherResult.events.end()});
    slow.insert(slow.end(), slowOfOther.begin(), slowOfOther.end());
    expandSlow(slow, result);
    return result;
}

// Those that give anything up under tight limits are left for later.
EventExpansion::Result EventExpansion::expand(
    std::span<const Source> sources, std::vector<Source>& slow) const
{
    Result result;
    result.events.reserve(sources.size() * kUsualOccurrences);
    for (const auto& source : sources) {
        const auto before = result.events.size();
        const auto events = static_cast<std::int64_t>(source.content->eventCount());
        const ICalendar::ExpansionLimits limits{
            .time = kQuickFile + kQuickEvent * events / 100, .perEvent = {.time = kQuickEvent}};
        if (!expandOne(source, limits, result.events).empty()) {
            result.events.erase(
                result.events.begin() + static_cast<std::ptrdiff_t>(before), result.events.end());
            slow.push_back(source);
        }
    }
    return result;
}

void EventExpansion::expandSlow(std::span<const Source> slow, Result& result) const
{
    ICalendar::WorkTimer timer;
    timer.elapsed();
    for (const auto& source : slow) {
        const auto place = std::string{source.place} + "/" + std::string{source.name} + ": ";
        if (timer.elapsed() >= kPatience) {
            result.notices.push_back(place + "left out: too many files take long to work out.");
            continue;
        }
        for (const auto& notice : expandOne(source, {}, result.events))
            result.notices.push_back(place + notice);
    }
}

std::vector<std::string> EventExpansion::expandOne(
    const Source& source, const ICalendar::ExpansionLimits& limits, std::vector<StoredEvent>& events) const
{
    std::optional<ICalendar::Occurrence> newest;
    const auto sink = [&](const ICalendar::Occurrence& occurrence) {
        if (!isInside(occurrence))
            return;
        const bool isOfSameEvent =
            newest && newest->uid == occurrence.uid && newest->title == occurrence.title;
        newest = occurrence;
        events.push_back({
            .details =
                isOfSameEvent ? events.back().details : detailsOf(occurrence, source.calendar->identifier()),
            .start = occurrence.start,
            .end = occurrence.end,
            .isAllDay = occurrence.isAllDay,
        });
    };
    return source.content->forEachOccurrence(m_range, m_viewer, sink, limits);
}

// The range in whole seconds is a little wider than the one that was asked for.
bool EventExpansion::isInside(const ICalendar::Occurrence& occurrence) const
{
    const Instant start = occurrence.start;
    const Instant end = occurrence.end;
    return start == end ? m_from <= start && start < m_to : start < m_to && m_from < end;
}

}
