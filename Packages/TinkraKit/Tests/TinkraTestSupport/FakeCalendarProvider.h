#pragma once

#include "TinkraCore/Protocols/CalendarProvider.h"
#include "TinkraTestSupport/CallLog.h"

#include <exception>
#include <memory>
#include <mutex>
#include <vector>

namespace Tinkra {

/// Calendars in memory. Calls are logged as "requestAccess", "availableCalendars" and "meetings".
class FakeCalendarProvider final : public CalendarProvider {
public:
    explicit FakeCalendarProvider(
        std::vector<Meeting> meetings = {}, std::shared_ptr<CallLog> log = std::make_shared<CallLog>());

    Task<bool> requestAccess() override;
    Task<std::vector<CalendarRef>> availableCalendars() override;

    /// Those of the meetings that overlap [from, to) and lie in the calendars asked for, as they are when
    /// the call is let go.
    Task<std::vector<Meeting>> meetings(CalendarIDs in, Instant from, Instant to) override;

    void setAccess(bool isGranted);
    void setCalendars(std::vector<CalendarRef> calendars);
    void setMeetings(std::vector<Meeting> meetings);

    /// From now on the calls that may throw do so, until this is called with nothing.
    void failWith(std::exception_ptr error);

    struct Query {
        CalendarIDs in;
        Instant from;
        Instant to;
    };
    /// What `meetings` was asked for, call by call.
    std::vector<Query> queries() const;

    CallLog& log() { return *m_log; }

private:
    std::shared_ptr<CallLog> m_log;
    mutable std::mutex m_mutex; // guards what follows
    bool m_isAccessGranted = true;
    std::vector<CalendarRef> m_calendars;
    std::vector<Meeting> m_meetings;
    std::vector<Query> m_queries;
    std::exception_ptr m_error;
};

}
