#include "TinkraCore/Models/CalendarRef.h"
#include "TinkraCore/Models/Meeting.h"
#include "TinkraCore/Models/ScheduledAlarm.h"

#include <cstddef>

namespace {

/// Every field takes part, in the order of declaration.
template <typename... Fields> std::size_t hashOf(const Fields&... fields)
{
    std::size_t hash = 0;
    const auto combine = [&hash](std::size_t field) {
        // The golden ratio spreads neighbouring values; the shifts keep the order of the fields visible.
        hash ^= field + 0x9e3779b97f4a7c15U + (hash << 6U) + (hash >> 2U);
    };
    (combine(std::hash<Fields>{}(fields)), ...);
    return hash;
}

}

std::size_t std::hash<Tinkra::CalendarRef>::operator()(const Tinkra::CalendarRef& calendar) const
{
    return hashOf(calendar.id, calendar.title, calendar.accountName, calendar.colorHex);
}

std::size_t std::hash<Tinkra::Meeting>::operator()(const Tinkra::Meeting& meeting) const
{
    return hashOf(meeting.id, meeting.calendarID, meeting.title, Tinkra::secondsSince1970(meeting.start),
        Tinkra::secondsSince1970(meeting.end), meeting.isAllDay);
}

std::size_t std::hash<Tinkra::ScheduledAlarm>::operator()(const Tinkra::ScheduledAlarm& alarm) const
{
    return hashOf(alarm.id, alarm.meetingID, alarm.title, Tinkra::secondsSince1970(alarm.fireDate),
        Tinkra::secondsSince1970(alarm.meetingStart), alarm.calendarID);
}
