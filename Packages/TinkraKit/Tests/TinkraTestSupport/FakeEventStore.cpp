#include "TinkraTestSupport/FakeEventStore.h"

#include <algorithm>
#include <utility>

namespace Tinkra::System {

namespace {

bool overlaps(const StoredEvent& event, Instant from, Instant to)
{
    if (!event.start)
        return true;
    return *event.start < to && (*event.start >= from || event.end.value_or(*event.start) > from);
}

}

FakeEventStore::FakeEventStore(std::shared_ptr<CallLog> log)
    : m_log(std::move(log))
{
}

CalendarAuthorization FakeEventStore::authorizationStatus()
{
    const std::lock_guard lock(m_mutex);
    return m_authorization;
}

Task<bool> FakeEventStore::requestFullAccess()
{
    co_await m_log->record("requestFullAccess");
    const std::lock_guard lock(m_mutex);
    if (m_requestError)
        std::rethrow_exception(m_requestError);
    m_authorization = m_answer ? CalendarAuthorization::FullAccess : CalendarAuthorization::Denied;
    co_return m_answer;
}

Task<std::vector<StoredCalendar>> FakeEventStore::calendars()
{
    co_await m_log->record("calendars");
    const std::lock_guard lock(m_mutex);
    if (m_error)
        std::rethrow_exception(m_error);
    if (m_authorization != CalendarAuthorization::FullAccess)
        co_return std::vector<StoredCalendar>{};
    co_return m_calendars;
}

Task<std::vector<StoredEvent>> FakeEventStore::events(
    Instant from, Instant to, std::vector<std::string> calendarIdentifiers)
{
    co_await m_log->record("events " + listed(calendarIdentifiers));
    const std::lock_guard lock(m_mutex);
    if (m_error)
        std::rethrow_exception(m_error);
    std::vector<StoredEvent> found;
    if (m_authorization != CalendarAuthorization::FullAccess)
        co_return found;
    for (const auto& event : m_events) {
        if (std::ranges::find(calendarIdentifiers, event.details->calendarIdentifier)
                != calendarIdentifiers.end()
            && overlaps(event, from, to))
            found.push_back(event);
    }
    co_return found;
}

Observation FakeEventStore::observeChanges(std::function<void()> changed)
{
    return m_observers.add(std::move(changed));
}

void FakeEventStore::setAuthorization(CalendarAuthorization authorization)
{
    const std::lock_guard lock(m_mutex);
    m_authorization = authorization;
}

void FakeEventStore::answerRequestsWith(bool isGranted)
{
    const std::lock_guard lock(m_mutex);
    m_answer = isGranted;
}

void FakeEventStore::failRequestsWith(std::exception_ptr error)
{
    const std::lock_guard lock(m_mutex);
    m_requestError = std::move(error);
}

void FakeEventStore::setCalendars(std::vector<StoredCalendar> calendars)
{
    const std::lock_guard lock(m_mutex);
    m_calendars = std::move(calendars);
}

void FakeEventStore::setEvents(std::vector<StoredEvent> events)
{
    const std::lock_guard lock(m_mutex);
    m_events = std::move(events);
}

void FakeEventStore::failWith(std::exception_ptr error)
{
    const std::lock_guard lock(m_mutex);
    m_error = std::move(error);
}

}
