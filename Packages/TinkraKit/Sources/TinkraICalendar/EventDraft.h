#pragma once

#include "TinkraICalendar/CalendarZones.h"
#include "TinkraICalendar/TimeValue.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tinkra::ICalendar {

/// A DATE or DATE-TIME with its zone.
struct ZonedTime {
    LocalSeconds time;
    ZoneIndex zone = ZoneIndex::Viewer; ///< of a local time
    TimeForm form = TimeForm::Date;
};

/// A part of a list or text.
struct Slice {
    std::uint32_t first = 0;
    std::uint32_t count = 0;
};

/// An RDATE; one of type PERIOD has an end or a duration.
struct ExtraDraft {
    ZonedTime start;
    std::optional<ZonedTime> end;
    std::optional<Duration> duration;
};

/// A VEVENT as it was read, before the events of the text are put in relation to each other.
struct EventDraft {
    std::size_t line = 0;
    std::uint32_t calendar = 0; ///< the number of its VCALENDAR
    std::int32_t sequence = 0;
    Slice uid; ///< of the texts
    Slice title;
    Slice rules;
    Slice exclusionRules;
    Slice extras;
    Slice exceptions;
    ZonedTime start;
    std::optional<ZonedTime> end;
    std::optional<ZonedTime> recurrenceId;
    std::optional<Duration> duration;
    std::string_view stamp; ///< DTSTAMP, the whole line
    std::string_view lastModified; ///< likewise
    bool hasTitle = false;
    bool appliesToFuture = false; ///< RANGE=THISANDFUTURE
};

/// Everything that was read from one text.
struct Drafts {
    std::vector<EventDraft> events;
    std::vector<Slice> rules; ///< of the texts
    std::vector<Slice> exclusionRules;
    std::vector<ExtraDraft> extras;
    std::vector<ZonedTime> exceptions;
    std::string texts;
    CalendarZones zones; ///< resolved
    bool isWhole = false;

    std::string_view text(Slice slice) const
    {
        return std::string_view{texts}.substr(slice.first, slice.count);
    }
};

}
