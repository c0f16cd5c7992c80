#include "TinkraTestSupport/FakeCalendarProvider.h"

#include <utility>

namespace Tinkra {

namespace {

bool overlaps(const Meeting& meeting, Instant from, Instant to)
{
    return meeting.start < to && (meeting.end > from || meeting.start >= from);
}

}

FakeCalendarProvider::FakeCalendarProvider(std::vector<Meeting> meetings, std::shared_ptr<CallLog> log)
    : m_log(std::move(log))
    , m_meetings(std::move(meetings))
{
}

Task<bool> FakeCalendarProvider::requestAccess()
{
    co_await m_log->record("requestAccess");
    const std::lock_guard lock(m_mutex);
    co_return m_isAccessGranted;
}

Task<std::vector<CalendarRef>> FakeCalendarProvider::availableCalendars()
{
    co_await m_log->record("availableCalendars");
    const std::lock_guard lock(m_mutex);
    if (m_error)
        std::rethrow_exception(m_error);
    co_return m_calendars;
}

Task<std::vector<Meeting>> FakeCalendarProvider::meetings(CalendarIDs in, Instant from, Instant to)
{
    {
        const std::lock_guard lock(m_mutex);
        m_queries.push_back({in, from, to});
    }
    co_await m_log->record("meetings");
    const std::lock_guard lock(m_mutex);
    if (m_error)
        std::rethrow_exception(m_error);
    std::vector<Meeting> found;
    for (const auto& meeting : m_meetings) {
        if (in.contains(meeting.calendarID) && overlaps(meeting, from, to))
            found.push_back(meeting);
    }
    co_return found;
}

void FakeCalendarProvider::setAccess(bool isGranted)
{
    const std::lock_guard lock(m_mutex);
    m_isAccessGranted = isGranted;
}

void FakeCalendarProvider::setCalendars(std::vector<CalendarRef> calendars)
{
    const std::lock_guard lock(m_mutex);
    m_calendars = std::move(calendars);
}

void FakeCalendarProvider::setMeetings(std::vector<Meeting> meetings)
{
    const std::lock_guard lock(m_mutex);
    m_meetings = std::move(meetings);
}

void FakeCalendarProvider::failWith(std::exception_ptr error)
{
    const std::lock_guard lock(m_mutex);
    m_error = std::move(error);
}

std::vector<FakeCalendarProvider::Query> FakeCalendarProvider::queries() const
{
    const std::lock_guard lock(m_mutex);
    return m_queries;
}

}
