#pragma once

#include "TinkraConcurrency/Instant.h"
#include "TinkraConcurrency/Task.h"
#include "TinkraSystem/Observation.h"
#include "TinkraSystem/Shared.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Tinkra::System {

/// Whether the user lets us read calendars. The values are the platform's (EKAuthorizationStatus).
enum class CalendarAuthorization {
    NotDetermined = 0,
    Restricted = 1,
    Denied = 2,
    FullAccess = 3,
    WriteOnly = 4,
};

/// A calendar as the store holds it.
struct StoredCalendar {
    std::string identifier; ///< stable across runs
    std::string title;
    std::string sourceTitle; ///< the account that holds the calendar
    std::optional<std::vector<double>> colorComponents; ///< in the colour's own space, nominally 0...1

    friend bool operator==(const StoredCalendar&, const StoredCalendar&) = default;
};

/// What the occurrences of an event have in common.
struct EventDetails {
    std::optional<std::string> eventIdentifier; ///< the same for every occurrence of a series
    std::string calendarItemIdentifier;
    std::string calendarIdentifier;
    std::optional<std::string> title;

    friend bool operator==(const EventDetails&, const EventDetails&) = default;
};

/// One occurrence of an event as the store reports it. A store answers with tens of thousands of them, which
/// is why those of one event share what they have in common.
struct StoredEvent {
    Shared<EventDetails> details;
    std::optional<Instant> start;
    std::optional<Instant> end;
    bool isAllDay = false;

    friend bool operator==(const StoredEvent&, const StoredEvent&) = default;
};

/// The calendar store of the desktop.
///
/// Failure is not emptiness: an operation throws whenever it cannot be sure of its answer; only denied access
/// is empty. Callable from any executor; the caller resumes on its own.
class EventStore {
public:
    virtual ~EventStore() = default;

    /// Read afresh at each call.
    virtual CalendarAuthorization authorizationStatus() = 0;

    /// Asks for full access; true when granted. May throw.
    virtual Task<bool> requestFullAccess() = 0;

    /// Every calendar that holds events, in the store's own order. May throw.
    virtual Task<std::vector<StoredCalendar>> calendars() = 0;

    /// The occurrences that overlap [from, to) in the calendars named, in no order; an occurrence without
    /// length counts when its start lies in the range. Identifiers that match no calendar are ignored.
    /// May throw.
    virtual Task<std::vector<StoredEvent>> events(
        Instant from, Instant to, std::vector<std::string> calendarIdentifiers) = 0;

    /// Calls `changed` after any change of calendars or events, at most once a second, on a thread of the
    /// store's own, until the result is dropped.
    [[nodiscard]] virtual Observation observeChanges(std::function<void()> changed) = 0;
};

}
