#pragma once

#include "TinkraSystem/EventStore.h"
#include "TinkraSystemLinux/CalendarFolders/CalendarFolder.h"

#include <string>
#include <vector>

namespace Tinkra::System {

/// Collects the occurrences that overlap [from, to) out of calendars that have been read. Floating times and
/// dates are those of the zone that the machine is in now.
class EventExpansion {
public:
    EventExpansion(Instant from, Instant to);

    /// `place` is the path of the folder that holds its files, for the notices.
    void add(const CalendarFolder& calendar, const std::string& place);

    std::vector<StoredEvent> takeEvents() { return std::move(m_events); }

    /// What was given up, one sentence each.
    std::vector<std::string> takeNotices() { return std::move(m_notices); }

private:
    bool isInside(const ICalendar::Occurrence& occurrence) const;

    Instant m_from;
    Instant m_to;
    ICalendar::TimeRange m_range;
    ICalendar::ZonePtr m_viewer;
    std::vector<StoredEvent> m_events;
    std::vector<std::string> m_notices;
};

}
