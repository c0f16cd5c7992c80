#include "TinkraICalendar/Calendar.h"

#include "TinkraICalendar/CalendarReach.h"
#include "TinkraICalendar/Encoding.h"
#include "TinkraICalendar/EventAssembly.h"
#include "TinkraICalendar/EventReader.h"
#include "TinkraICalendar/Notices.h"
#include "TinkraICalendar/OccurrenceQuery.h"
#include "TinkraICalendar/PackedEvents.h"

#include <utility>

namespace Tinkra::ICalendar {

Calendar::Calendar(std::unique_ptr<const PackedEvents> events)
    : m_events{std::move(events)}
{
}

Calendar::Calendar(Calendar&&) noexcept = default;
Calendar& Calendar::operator=(Calendar&&) noexcept = default;
Calendar::~Calendar() = default;

Calendar Calendar::read(std::string_view text, const Limits& limits)
{
    Notices notices;
    if (text.size() > limits.bytes) {
        notices.add("The text has " + std::to_string(text.size()) + " bytes; only the first "
            + std::to_string(limits.bytes) + " were read.");
        text = text.substr(0, limits.bytes);
    }
    std::string buffer;
    auto drafts = readEvents(withoutByteOrder(text, buffer), limits.line, notices);
    auto parts = assembleEvents(std::move(drafts), notices);
    parts.notices = notices.take();
    parts.limits = {.time = limits.expansionTime, .perEvent = limits.perEvent};
    return Calendar{PackedEvents::make(std::move(parts))};
}

bool Calendar::isWhole() const
{
    return m_events->isWhole();
}

std::vector<std::string> Calendar::forEachOccurrence(
    TimeRange range, const ZonePtr& viewer, const std::function<void(const Occurrence&)>& sink) const
{
    return forEachOccurrence(range, viewer, sink, m_events->limits());
}

std::vector<std::string> Calendar::forEachOccurrence(TimeRange range, const ZonePtr& viewer,
    const std::function<void(const Occurrence&)>& sink, const ExpansionLimits& limits) const
{
    return OccurrenceQuery{*m_events, range, viewer, sink, limits}.run();
}

TimeRange Calendar::reach() const
{
    return reachOf(*m_events);
}

const std::vector<std::string>& Calendar::notices() const
{
    return m_events->notices();
}

std::size_t Calendar::eventCount() const
{
    return m_events->events().size();
}

std::size_t Calendar::memoryUse() const
{
    return m_events->memoryUse();
}

}
