#include "Session.h"

#include "PrintableText.h"

#include "TinkraPlatformApple/EventKitCalendarProvider.h"
#include "TinkraPlatformApple/NotificationAlarmScheduler.h"
#include "TinkraPlatformApple/UserDefaultsSettingsStore.h"

#include <ostream>
#include <utility>

namespace Tinkra::CommandLine {

Session::Session(System::SystemServices servicesOfMachine, Executor itsExecutor, std::ostream& standardOut,
    std::ostream& standardError)
    : services(std::move(servicesOfMachine))
    , executor(std::move(itsExecutor))
    , out(standardOut)
    , error(standardError)
    , provider(std::make_shared<EventKitCalendarProvider>(services.eventStore))
    , chooser(std::make_shared<EventKitCalendarProvider>(services.calendarChoice))
    , scheduler(
          std::make_shared<NotificationAlarmScheduler>(services.notificationCenter, services.localCalendar))
    , settings(std::make_shared<UserDefaultsSettingsStore>(services.defaults, configurationKey))
{
}

void Session::complain(const std::string& sentence) const
{
    error << "tinkra: " << printable(sentence) << '\n';
}

}
