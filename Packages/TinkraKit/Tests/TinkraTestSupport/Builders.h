#pragma once

#include "TinkraCore/Models/Meeting.h"
#include "TinkraCore/Models/ScheduledAlarm.h"
#include "TinkraCore/Models/TinkraConfiguration.h"

#include <utility>

namespace Tinkra {

/// The time of most tests: 2023-11-15 12:00:00 UTC.
inline constexpr Instant noon = instantAt(1'700'049'600);

/// A quarter of an hour in the calendar "work".
inline Meeting standup(Instant start = noon, Text id = "standup", Text title = "Stand-up")
{
    return {std::move(id), "work", std::move(title), start, start + Seconds{900}, false};
}

/// One that lasts from `start` for a day.
inline Meeting holiday(Instant start, Text id = "holiday")
{
    return {std::move(id), "work", "Holiday", start, start + Seconds{86'400}, true};
}

/// The alarm of a meeting that rings when it starts.
inline ScheduledAlarm alarmFor(const Meeting& meeting, Seconds leadTime = Seconds{0})
{
    const auto fireDate = meeting.start - leadTime;
    return {alarmID(meeting.id, fireDate), meeting.id, meeting.title, fireDate, meeting.start,
        meeting.calendarID};
}

/// The defaults, with these calendars selected.
inline TinkraConfiguration monitoring(CalendarIDs calendars = {"work"})
{
    TinkraConfiguration configuration;
    configuration.monitoring.selectedCalendarIDs = std::move(calendars);
    return configuration;
}

}
