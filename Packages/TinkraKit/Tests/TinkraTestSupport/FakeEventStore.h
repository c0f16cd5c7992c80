#pragma once

#include "TinkraSystem/EventStore.h"
#include "TinkraTestSupport/CallLog.h"
#include "TinkraTestSupport/FakeObservers.h"

#include <exception>
#include <memory>
#include <mutex>

namespace Tinkra::System {

/// A calendar store in memory. Calls are logged as "requestFullAccess", "calendars" and
/// "events [ID, ID]". Without full access it is empty, as the real ones are.
class FakeEventStore final : public EventStore {
public:
    explicit FakeEventStore(std::shared_ptr<CallLog> log = std::make_shared<CallLog>());

    CalendarAuthorization authorizationStatus() override;
    Task<bool> requestFullAccess() override;
    Task<std::vector<StoredCalendar>> calendars() override;
    Task<std::vector<StoredEvent>> events(
        Instant from, Instant to, std::vector<std::string> calendarIdentifiers) override;
    Observation observeChanges(std::function<void()> changed) override;

    /// Full access at the start.
    void setAuthorization(CalendarAuthorization authorization);
    /// What the user answers to the next request for access; the status follows the answer.
    void answerRequestsWith(bool isGranted);
    /// From now on requests for access throw, until this is called with nothing.
    void failRequestsWith(std::exception_ptr error);

    void setCalendars(std::vector<StoredCalendar> calendars);
    /// In the order in which `events` is to report them. Events without a start are reported always.
    void setEvents(std::vector<StoredEvent> events);
    /// From now on `calendars` and `events` throw, until this is called with nothing.
    void failWith(std::exception_ptr error);

    /// Tells the observers, on this thread, that something changed.
    void notifyChanged() const { m_observers.notify(); }
    std::size_t observerCount() const { return m_observers.count(); }

    CallLog& log() { return *m_log; }

private:
    std::shared_ptr<CallLog> m_log;
    FakeObservers m_observers;
    mutable std::mutex m_mutex; // guards what follows
    CalendarAuthorization m_authorization = CalendarAuthorization::FullAccess;
    bool m_answer = true;
    std::exception_ptr m_requestError;
    std::exception_ptr m_error;
    std::vector<StoredCalendar> m_calendars;
    std::vector<StoredEvent> m_events;
};

}
