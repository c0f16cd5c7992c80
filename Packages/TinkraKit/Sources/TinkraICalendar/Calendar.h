#pragma once

#include "TinkraICalendar/ExpansionLimits.h"
#include "TinkraICalendar/RuleExpansion.h"
#include "TinkraICalendar/Time.h"
#include "TinkraICalendar/Zone.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tinkra::ICalendar {

class PackedEvents;

/// One occurrence of an event. The texts live as long as the calendar that gave it.
struct Occurrence {
    std::string_view uid; ///< the event's UID; for an event without one, a value made from its content
    std::optional<std::string_view> title; ///< SUMMARY, unescaped; nothing when there is none
    UtcSeconds start;
    UtcSeconds end; ///< never before `start`
    bool isAllDay = false;
};

/// Limits that hold for any input.
struct Limits {
    std::size_t bytes = 32U << 20U; ///< of one text
    std::size_t line = 1U << 20U; ///< of one physical line
    std::chrono::milliseconds expansionTime{
        2000}; ///< of processor time, for all events of one text and query
    ExpansionBudget perEvent;
};

/// The events of one iCalendar text (RFC 5545), compact and ready to be expanded. Reading never fails: what
/// is not understood is left out and named in the notices. Immutable; safe to share between threads.
class Calendar {
public:
    /// Reads `text`, in UTF-8, UTF-16 with a byte order mark, or Latin-1.
    static Calendar read(std::string_view text, const Limits& limits = {});

    Calendar(Calendar&&) noexcept;
    Calendar& operator=(Calendar&&) noexcept;
    ~Calendar();

    /// False when BEGIN:VCALENDAR or END:VCALENDAR is missing: the text may still be on its way to the disk.
    bool isWhole() const;

    /// Calls `sink` for each occurrence that overlaps `range` (one without length: that starts in it).
    /// Floating times and dates are those of `viewer`. Gives what was given up, one sentence each.
    std::vector<std::string> forEachOccurrence(
        TimeRange range, const ZonePtr& viewer, const std::function<void(const Occurrence&)>& sink) const;

    /// The same under limits of this query's own.
    std::vector<std::string> forEachOccurrence(TimeRange range, const ZonePtr& viewer,
        const std::function<void(const Occurrence&)>& sink, const ExpansionLimits& limits) const;

    /// A range that holds every occurrence, whatever the viewer's zone is; empty when there are no events.
    TimeRange reach() const;

    /// What was not understood while reading, one sentence each, with line numbers.
    const std::vector<std::string>& notices() const;

    std::size_t eventCount() const;

    /// Bytes that this value occupies on the heap, texts included.
    std::size_t memoryUse() const;

private:
    explicit Calendar(std::unique_ptr<const PackedEvents> events);

    std::unique_ptr<const PackedEvents> m_events;
};

}
