#include "TinkraCore/AlarmEngine.h"

#include <algorithm>
#include <unordered_set>

namespace Tinkra {

std::vector<ScheduledAlarm> AlarmEngine::desiredAlarms(const std::vector<Meeting>& meetings,
    const AlarmSettings& settings, const CalendarIDs& monitored, Instant now) const
{
    std::vector<ScheduledAlarm> alarms;
    alarms.reserve(meetings.size());
    for (const auto& meeting : meetings) {
        if (!monitored.contains(meeting.calendarID))
            continue;
        if (settings.ignoreAllDay && meeting.isAllDay)
            continue;
        const auto fireDate = meeting.start - settings.leadTime;
        if (!(fireDate > now))
            continue;
        alarms.push_back({alarmID(meeting.id, fireDate), meeting.id, meeting.title, fireDate, meeting.start,
            meeting.calendarID});
    }

    std::unordered_set<Text> seen;
    std::erase_if(alarms, [&seen](const ScheduledAlarm& alarm) { return !seen.insert(alarm.id).second; });

    std::ranges::stable_sort(alarms, {}, &ScheduledAlarm::fireDate);
    return alarms;
}

}
