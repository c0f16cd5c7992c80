#include "TinkraSystemLinux/CalendarFolders/EventExpansion.h"

#include <algorithm>
#include <cmath>

namespace Tinkra::System {

namespace {

using ICalendar::UtcSeconds;

// The years 1 to 9999, which is what iCalendar can write. NaN gives the lower end.
UtcSeconds wholeSecond(double seconds)
{
    constexpr double kFirst = -62135596800.0;
    constexpr double kLast = 253402300799.0;
    const double inside = seconds > kFirst ? std::min(seconds, kLast) : kFirst;
    return UtcSeconds{std::chrono::seconds{static_cast<std::int64_t>(inside)}};
}

}

EventExpansion::EventExpansion(Instant from, Instant to)
    : m_from(from)
    , m_to(to)
    , m_range{wholeSecond(std::floor(secondsSince1970(from))), wholeSecond(std::ceil(secondsSince1970(to)))}
    , m_viewer(ICalendar::viewerZone())
{
}

void EventExpansion::add(const CalendarFolder& calendar, const std::string& place)
{
    const auto& files = calendar.contents().files();
    const auto prefix = calendar.identifier() + "/";
    const auto sink = [&](const ICalendar::Occurrence& occurrence) {
        if (!isInside(occurrence))
            return;
        auto identifier = prefix + std::string{occurrence.uid};
        m_events.push_back({
            .eventIdentifier = identifier,
            .calendarItemIdentifier = std::move(identifier),
            .calendarIdentifier = calendar.identifier(),
            .title = occurrence.title ? std::optional{std::string{*occurrence.title}} : std::nullopt,
            .start = occurrence.start,
            .end = occurrence.end,
            .isAllDay = occurrence.isAllDay,
        });
    };
    for (const auto& record : files.records()) {
        if (!record.content)
            continue;
        for (const auto& notice : record.content->forEachOccurrence(m_range, m_viewer, sink))
            m_notices.push_back(place + "/" + std::string{files.name(record)} + ": " + notice);
    }
}

// The range in whole seconds is a little wider than the one that was asked for.
bool EventExpansion::isInside(const ICalendar::Occurrence& occurrence) const
{
    const Instant start = occurrence.start;
    const Instant end = occurrence.end;
    return start == end ? m_from <= start && start < m_to : start < m_to && m_from < end;
}

}
