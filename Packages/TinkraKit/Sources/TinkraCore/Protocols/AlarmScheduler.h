#pragma once

#include "TinkraConcurrency/Task.h"
#include "TinkraCore/Models/ScheduledAlarm.h"

#include <vector>

namespace Tinkra {

/// Where alarms are armed so that they ring without the application. Armed alarms outlive the process and
/// are the only record of what is armed. Callable from any executor, calls may overlap.
class AlarmScheduler {
public:
    virtual ~AlarmScheduler() = default;

    /// Asks the user for permission to arm alarms; true when it is granted. Does not throw.
    virtual Task<bool> requestAuthorization() = 0;

    /// The identifiers of every alarm that is armed now. Does not throw.
    virtual Task<std::vector<Text>> scheduledAlarmIDs() = 0;

    /// Arms one alarm; one that is armed already under the same identifier is replaced. May throw.
    virtual Task<> schedule(ScheduledAlarm alarm) = 0;

    /// Cancels the alarms of these identifiers; unknown ones and an empty list are fine. Does not throw.
    virtual Task<> cancel(std::vector<Text> ids) = 0;
};

}
