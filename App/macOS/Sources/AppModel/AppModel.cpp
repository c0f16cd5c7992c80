#include "AppModel/AppModel.h"

#include "AppModel/StatusText.h"
#include "ErrorText.h"
#include "LaunchAtLogin.h"

#include <cstdint>
#include <utility>

namespace Tinkra {

namespace {

AppModel::Permission permissionFor(System::CalendarAuthorization authorization)
{
    switch (authorization) {
    case System::CalendarAuthorization::NotDetermined:
        return AppModel::Permission::unknown;
    case System::CalendarAuthorization::FullAccess:
        return AppModel::Permission::granted;
    default:
        return AppModel::Permission::denied;
    }
}

AppModel::Permission permissionFor(System::NotificationAuthorization authorization)
{
    switch (authorization) {
    case System::NotificationAuthorization::NotDetermined:
        return AppModel::Permission::unknown;
    case System::NotificationAuthorization::Authorized:
    case System::NotificationAuthorization::Provisional:
        return AppModel::Permission::granted;
    default:
        return AppModel::Permission::denied;
    }
}

}

AppModel::AppModel(AppServices services)
    : m_services(std::move(services))
    , m_configuration(m_services.store->load())
    , m_service(m_services.provider, m_services.scheduler, m_configuration, alarmHorizon,
          m_services.serviceExecutor)
    , m_presenter(std::move(m_services.presenter))
    , m_notifications(std::make_shared<NotificationCoordinator>(m_services.clock))
    , m_sleepGuard(m_services.powerAssertions)
    , m_wakeFromSleep(m_services.sharedFolder, m_services.wakeHelper, m_services.workspace, m_services.clock)
{
}

AppModel::~AppModel() = default;

std::vector<AccountCalendars> AppModel::calendarsByAccount() const
{
    return Tinkra::calendarsByAccount(m_calendars);
}

System::Observation AppModel::observe(std::function<void(Property)> changed)
{
    return m_notices.observe(std::move(changed));
}

Task<> AppModel::bootstrap()
{
    m_services.setNotificationDelegate(m_notifications);
    m_notifications->onForegroundAlarm = [weak = weak_from_this()](AlarmPayload payload) {
        if (const auto self = weak.lock())
            self->presentAlarm(std::move(payload));
    };
    m_notifications->onOpenApp = m_services.activateApplication;
    publish(m_launchAtLogin, LaunchAtLogin::isEnabled(*m_services.loginItem), Property::launchAtLogin);

    co_await refreshPermissions();
    if (m_calendarPermission == Permission::granted)
        co_await loadCalendars();
    co_await syncNow();

    observeCalendarChanges();
    startTicking();
    startKeepAwakeEvaluator();
    m_wakeFromSleep.registerHelper();
    observeSystemWake();
}

Task<> AppModel::requestPermissions()
{
    co_await m_services.provider->requestAccess();
    co_await m_services.scheduler->requestAuthorization();
    co_await refreshPermissions();
    if (m_calendarPermission == Permission::granted)
        co_await loadCalendars();
    co_await syncNow();
}

Task<> AppModel::refreshPermissions()
{
    const auto calendars = m_services.eventStore->authorizationStatus();
    publish(m_calendarPermission, permissionFor(calendars), Property::calendarPermission);
    const auto notifications = co_await m_services.notificationCenter->authorizationStatus();
    publish(m_notificationPermission, permissionFor(notifications), Property::notificationPermission);
}

Task<> AppModel::loadCalendars()
{
    try {
        publishAlways(m_calendars, co_await m_services.provider->availableCalendars(), Property::calendars);
    } catch (...) {
        publish(m_statusMessage, "Couldn't read calendars: " + currentErrorText(), Property::statusMessage);
    }
}

Task<> AppModel::fireTestAlarm()
{
    const auto now = m_services.clock->now();
    const auto seconds = static_cast<std::int64_t>(secondsSince1970(now));
    presentAlarm({
        .id = "test#" + std::to_string(seconds),
        .title = "Test meeting — Calendar Murkel is working",
        .meetingStart = now,
    });
    publish(m_statusMessage, std::string("Test alarm ringing"), Property::statusMessage);
    co_return;
}

namespace {

Task<> runIfThere(std::weak_ptr<AppModel> model, Task<> (AppModel::*operation)())
{
    if (const auto self = model.lock())
        co_await (self.get()->*operation)();
}

}

void AppModel::start(Executor mainExecutor, std::weak_ptr<AppModel> model, Task<> (AppModel::*operation)())
{
    // Nobody owns it: it goes on when the handle is dropped.
    static_cast<void>(
        spawn(std::move(mainExecutor), [model = std::move(model), operation](const std::stop_token&) {
            return runIfThere(model, operation);
        }));
}

void AppModel::setMasterEnabled(bool on)
{
    change([on](TinkraConfiguration& next) { next.masterEnabled = on; });
}

void AppModel::toggleCalendar(const Text& id)
{
    change([&id](TinkraConfiguration& next) {
        auto& selected = next.monitoring.selectedCalendarIDs;
        if (selected.erase(id) == 0)
            selected.insert(id);
    });
}

void AppModel::selectCalendars(const std::vector<Text>& ids, bool on)
{
    change([&ids, on](TinkraConfiguration& next) {
        auto& selected = next.monitoring.selectedCalendarIDs;
        for (const auto& id : ids) {
            if (on)
                selected.insert(id);
            else
                selected.erase(id);
        }
    });
}

void AppModel::setLeadTime(double seconds)
{
    change([seconds](TinkraConfiguration& next) { next.settings.leadTime = Seconds{seconds}; });
}

void AppModel::setStyle(AlarmStyle style)
{
    change([style](TinkraConfiguration& next) { next.settings.style = style; });
}

void AppModel::setSound(Text name)
{
    change([&name](TinkraConfiguration& next) { next.settings.soundName = std::move(name); });
}

void AppModel::setIgnoreAllDay(bool on)
{
    change([on](TinkraConfiguration& next) { next.settings.ignoreAllDay = on; });
}

void AppModel::setRaiseVolume(bool on)
{
    change([on](TinkraConfiguration& next) { next.settings.raiseVolume = on; });
}

void AppModel::setKeepAwake(bool on)
{
    change([on](TinkraConfiguration& next) { next.settings.keepAwake = on; });
}

void AppModel::setLaunchAtLogin(bool on)
{
    LaunchAtLogin::set(*m_services.loginItem, on);
    publish(m_launchAtLogin, LaunchAtLogin::isEnabled(*m_services.loginItem), Property::launchAtLogin);
}

template <typename Edit> void AppModel::change(Edit edit)
{
    auto next = m_configuration;
    edit(next);
    publish(m_configuration, std::move(next), Property::configuration);
    persistAndSync();
}

void AppModel::persistAndSync()
{
    m_services.store->save(m_configuration);
    start(&AppModel::syncNow);
}

void AppModel::updateStatus()
{
    publish(m_statusMessage, statusText(m_configuration, m_upcoming), Property::statusMessage);
}

void AppModel::observeCalendarChanges()
{
    if (m_calendarObserver)
        return;
    m_calendarObserver =
        m_services.eventStore->observeChanges([executor = m_services.mainExecutor, weak = weak_from_this()] {
            start(executor, weak, &AppModel::syncNow);
        });
}

}
