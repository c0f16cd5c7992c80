#pragma once

#include "TinkraSystem/EventStore.h"
#include "TinkraSystemLinux/CalendarFolders/CalendarFolder.h"

#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Tinkra::System {

/// The occurrences that overlap [from, to) in calendars that have been read. Floating times and dates are
/// those of the zone that the machine is in now.
///
/// All files share one budget of time: those that take long come last, so that a few files made to exhaust us
/// cannot keep the others from being heard.
class EventExpansion {
public:
    EventExpansion(Instant from, Instant to);

    /// `place` is the path of the folder that holds its files, for the notices.
    void add(const CalendarFolder& calendar, const std::string& place);

    /// What was found, and what was given up, one sentence each.
    struct Result {
        std::vector<StoredEvent> events;
        std::vector<std::string> notices;
    };

    /// Works out what was added.
    Result run() const;

private:
    /// One file that may have something to give.
    struct Source {
        const CalendarFolder* calendar;
        const ICalendar::Calendar* content;
        std::string_view place;
        std::string_view name;
    };

    Result expand(std::span<const Source> sources, std::vector<Source>& slow) const;
    void expandSlow(std::span<const Source> slow, Result& result) const;
    std::vector<std::string> expandOne(const Source& source, const ICalendar::ExpansionLimits& limits,
        std::vector<StoredEvent>& events) const;
    bool isInside(const ICalendar::Occurrence& occurrence) const;

    Instant m_from;
    Instant m_to;
    ICalendar::TimeRange m_range;
    DayRange m_days;
    ICalendar::ZonePtr m_viewer;
    std::deque<std::string> m_places; ///< stay where they are while it grows
    std::vector<Source> m_sources;
};

}
