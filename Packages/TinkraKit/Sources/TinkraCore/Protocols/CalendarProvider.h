#pragma once

#include "TinkraConcurrency/Task.h"
#include "TinkraCore/Models/CalendarRef.h"
#include "TinkraCore/Models/Meeting.h"
#include "TinkraCore/Models/MonitoringConfig.h"

#include <vector>

namespace Tinkra {

/// Where meetings come from. Callable from any executor, calls may overlap.
class CalendarProvider {
public:
    virtual ~CalendarProvider() = default;

    /// Asks the user for access to calendars; true when it is granted. Does not throw.
    virtual Task<bool> requestAccess() = 0;

    /// Every calendar that the user could monitor. May throw.
    virtual Task<std::vector<CalendarRef>> availableCalendars() = 0;

    /// The meetings of the calendars `in` that the store reports for the range, in any order, an
    /// occurrence possibly twice, each with an identifier that is the same in every call. May throw.
    virtual Task<std::vector<Meeting>> meetings(CalendarIDs in, Instant from, Instant to) = 0;
};

}
