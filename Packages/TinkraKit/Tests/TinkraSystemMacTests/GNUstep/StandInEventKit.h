#pragma once

#include "TinkraSystem/EventStore.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

#import <EventKit/EventKit.h>

namespace Tinkra::System {

/// What the stand-in of EventKit holds. It acts as we believe that EventKit does: see macOS's documentation.
struct StandInCalendars {
    EKAuthorizationStatus status = EKAuthorizationStatusNotDetermined;
    bool answer = true; ///< what the user answers when asked
    bool requestFails = false;
    bool isBroken = false; ///< gives nil for every answer
    std::vector<StoredCalendar> calendars;
    std::vector<StoredEvent> events;
    int queryCount = 0;

    /// Those of this process, as the system's are.
    static StandInCalendars& shared();
};

}
