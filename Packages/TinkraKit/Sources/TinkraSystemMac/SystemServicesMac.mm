#include "TinkraSystem/SystemServices.h"

#include "TinkraSystemMac/AudioDeviceMac.h"
#include "TinkraSystemMac/ClockMac.h"
#include "TinkraSystemMac/DefaultsMac.h"
#include "TinkraSystemMac/EventStoreMac.h"
#include "TinkraSystemMac/HealthChecksMac.h"
#include "TinkraSystemMac/LocalCalendarMac.h"
#include "TinkraSystemMac/NotificationCenterMac.h"
#include "TinkraSystemMac/SoundLibraryMac.h"
#include "TinkraSystemMac/UnbundledNotificationCenter.h"

namespace Tinkra::System {

namespace {

std::shared_ptr<NotificationCenter> notificationCenterOfThisProcess()
{
    if (NSBundle.mainBundle.bundleIdentifier == nil)
        return std::make_shared<UnbundledNotificationCenter>();
    return std::make_shared<NotificationCenterMac>([UNUserNotificationCenter currentNotificationCenter]);
}

/// Launch services start an application once.
class SoleInstance final : public ApplicationInstance {
public:
    bool claim(Executor, ApplicationRequests) override { return true; }
    void release() override { }
};

class NoCommands final : public RunningApplication {
public:
    Task<> testAlarm() override
    {
        throw ApplicationUnreachable("On macOS the test alarm is on the application's page \"Settings\".");
    }
};

}

SystemServices makeSystemServices()
{
    const auto clock = std::make_shared<ClockMac>();
    const auto eventStore = std::make_shared<EventStoreMac>([[EKEventStore alloc] init], clock);
    const auto notificationCenter = notificationCenterOfThisProcess();
    return {
        .eventStore = eventStore,
        .calendarChoice = eventStore, // the system remembers a grant, whoever asked
        .notificationCenter = notificationCenter,
        .defaults = std::make_shared<DefaultsMac>(NSUserDefaults.standardUserDefaults),
        .localCalendar = std::make_shared<LocalCalendarMac>(),
        .clock = clock,
        .healthChecks = std::make_shared<HealthChecksMac>(eventStore, notificationCenter),
        .audioDevice = std::make_shared<AudioDeviceMac>(),
        .soundLibrary = std::make_shared<SoundLibraryMac>(),
        .applicationInstance = std::make_shared<SoleInstance>(),
        .runningApplication = std::make_shared<NoCommands>(),
    };
}

}
