#pragma once

#include "TinkraCore/Models/AlarmSettings.h"
#include "TinkraCore/Models/Meeting.h"
#include "TinkraCore/Models/MonitoringConfig.h"
#include "TinkraCore/Models/ScheduledAlarm.h"

#include <vector>

namespace Tinkra {

/// The rules on which meeting gets an alarm, and when. A pure function of its inputs.
class AlarmEngine {
public:
    /// The alarms that ought to be armed at `now`: those of the meetings in the `monitored` calendars whose
    /// fire time lies strictly after `now`, each identifier once, sorted by fire time; alarms of equal fire
    /// time keep the order of their meetings.
    std::vector<ScheduledAlarm> desiredAlarms(const std::vector<Meeting>& meetings,
        const AlarmSettings& settings, const CalendarIDs& monitored, Instant now) const;
};

}
