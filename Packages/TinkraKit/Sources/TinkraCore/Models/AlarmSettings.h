#pragma once

#include "TinkraConcurrency/Instant.h"
#include "TinkraCore/Models/AlarmStyle.h"
#include "TinkraCore/Models/Text.h"

namespace Tinkra {

/// The user's alarm preferences. A fresh value holds the defaults.
struct AlarmSettings {
    Seconds leadTime{0}; ///< how long before a meeting's start its alarm fires; any value, not clamped here
    AlarmStyle style = AlarmStyle::notificationAndWindow;
    bool ignoreAllDay = true; ///< all-day meetings get no alarm
    Text soundName = "default";
    Seconds snoozeInterval{300};
    bool raiseVolume = true; ///< ringing may unmute and raise the output volume
    bool keepAwake = true; ///< the machine is kept from idle sleep ahead of alarms

    friend bool operator==(const AlarmSettings&, const AlarmSettings&) = default;
};

}
