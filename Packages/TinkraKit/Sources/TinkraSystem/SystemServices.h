#pragma once

#include "TinkraConcurrency/Clock.h"
#include "TinkraSystem/ApplicationInstance.h"
#include "TinkraSystem/AudioDevice.h"
#include "TinkraSystem/Defaults.h"
#include "TinkraSystem/EventStore.h"
#include "TinkraSystem/HealthChecks.h"
#include "TinkraSystem/LocalCalendar.h"
#include "TinkraSystem/NotificationCenter.h"
#include "TinkraSystem/SoundLibrary.h"

#include <memory>

namespace Tinkra::System {

/// Everything that a program of ours asks of its operating system.
struct SystemServices {
    std::shared_ptr<EventStore> eventStore;
    /// The same calendars, for showing them to their owner so that he can choose: asking it for access is
    /// never remembered as a grant.
    std::shared_ptr<EventStore> calendarChoice;
    std::shared_ptr<NotificationCenter> notificationCenter;
    std::shared_ptr<Defaults> defaults;
    std::shared_ptr<LocalCalendar> localCalendar;
    std::shared_ptr<Clock> clock;
    std::shared_ptr<HealthChecks> healthChecks;
    std::shared_ptr<AudioDevice> audioDevice;
    std::shared_ptr<SoundLibrary> soundLibrary;
    std::shared_ptr<ApplicationInstance> applicationInstance; ///< of the application itself
    std::shared_ptr<RunningApplication> runningApplication; ///< for the other programs
};

/// The live services of the machine, one set per process. The library of the operating system that a program
/// is linked with defines it.
SystemServices makeSystemServices();

}
