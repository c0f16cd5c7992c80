#pragma once

#include "TinkraConcurrency/Instant.h"
#include "TinkraCore/Models/Text.h"

namespace Tinkra {

/// One alarm to be armed.
struct ScheduledAlarm {
    Text id; ///< `alarmID(meetingID, fireDate)`: the only thing that reconciliation compares
    Text meetingID;
    Text title;
    Instant fireDate; ///< the meeting's start minus the lead time
    Instant meetingStart;
    Text calendarID;

    friend bool operator==(const ScheduledAlarm&, const ScheduledAlarm&) = default;
};

/// The meeting's identifier, "#", and the fire time in whole seconds since 1970, halves rounded away
/// from zero, in decimal. The rounded value must fit a signed 64-bit integer; anything else is a broken
/// assumption and ends the program.
Text alarmID(const Text& meetingID, Instant fireDate);

}

template <> struct std::hash<Tinkra::ScheduledAlarm> {
    std::size_t operator()(const Tinkra::ScheduledAlarm& alarm) const;
};
