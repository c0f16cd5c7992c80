#pragma once

#include "AlarmInfrastructure/AlarmPresenter.h"
#include "AlarmInfrastructure/NotificationCoordinator.h"
#include "AppModel/AlarmTask.h"
#include "AppModel/AppServices.h"
#include "AppModel/CalendarsByAccount.h"
#include "AppModel/ChangeNotices.h"
#include "SleepGuard.h"
#include "WakeFromSleep.h"

#include "TinkraConcurrency/TaskHandle.h"
#include "TinkraCore/AlarmEngine.h"
#include "TinkraCore/MonitoringService.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Tinkra {

/// The application's one central object: the state that views show, and the only place where what a user does
/// becomes a configuration, a synchronisation and an alarm.
///
/// Lives in a `shared_ptr`, on the main executor alone. Tasks and observers hold it weakly. Whoever awaits
/// one of its operations holds it until the operation ends.
class AppModel : public std::enable_shared_from_this<AppModel> {
public:
    enum class Permission { unknown, granted, denied };

    /// What views are told of. `calendars` and `upcoming` are told of with every write, the others with
    /// changes alone.
    enum class Property {
        configuration,
        calendars,
        upcoming,
        calendarPermission,
        notificationPermission,
        statusMessage,
        lastSync,
        launchAtLogin,
    };

    /// Belongs to keeping awake and is not consulted: see `keepAwakeWindow`.
    static constexpr Seconds keepAwakeLead{300};

    static constexpr Seconds keepAwakeWindow{480}; ///< an alarm this near keeps the machine awake
    static constexpr Seconds keepAwakePeriod{30}; ///< between two looks at what is near
    static constexpr Seconds tickPeriod{300}; ///< between two synchronisations of the tick
    static constexpr Seconds alarmHorizon = std::chrono::days(30); ///< notifications are armed so far ahead
    static constexpr Seconds upcomingHorizon = std::chrono::days(14);
    static constexpr std::size_t upcomingLimit = 25;
    static constexpr Seconds timerWindow = std::chrono::days(1); ///< alarms in the application so far ahead
    static constexpr Seconds missedAlarmGrace{300}; ///< an alarm that is later does not ring

    /// Loads the configuration; asks for nothing and starts nothing.
    explicit AppModel(AppServices services);
    AppModel(const AppModel&) = delete;
    AppModel& operator=(const AppModel&) = delete;
    ~AppModel();

    const TinkraConfiguration& configuration() const { return m_configuration; }
    const std::vector<CalendarRef>& calendars() const { return m_calendars; }
    /// The next alarms, 25 at most, in the order of their fire dates.
    const std::vector<ScheduledAlarm>& upcoming() const { return m_upcoming; }
    Permission calendarPermission() const { return m_calendarPermission; }
    Permission notificationPermission() const { return m_notificationPermission; }
    const std::string& statusMessage() const { return m_statusMessage; }
    const std::optional<Instant>& lastSync() const { return m_lastSync; } ///< of the last that succeeded
    bool launchAtLogin() const { return m_launchAtLogin; }
    std::vector<AccountCalendars> calendarsByAccount() const;

    /// `changed` is called after each change, on the main executor, until the result is dropped.
    [[nodiscard]] System::Observation observe(std::function<void(Property)> changed);

    /// Starts the application up; once.
    Task<> bootstrap();
    Task<> syncNow();
    Task<> requestPermissions();
    Task<> refreshPermissions(); ///< reads, and never prompts
    Task<> loadCalendars();
    Task<> fireTestAlarm();

    /// Starts one of the operations above, for callers that do not wait for it. Safe to use from any thread.
    static void start(Executor mainExecutor, std::weak_ptr<AppModel> model, Task<> (AppModel::*operation)());
    void start(Task<> (AppModel::*operation)())
    {
        start(m_services.mainExecutor, weak_from_this(), operation);
    }

    // Each saves the configuration at once and starts a synchronisation.
    void setMasterEnabled(bool on);
    void toggleCalendar(const Text& id);
    /// Selects or clears them all at once: one save, one synchronisation.
    void selectCalendars(const std::vector<Text>& ids, bool on);
    void setLeadTime(double seconds);
    void setStyle(AlarmStyle style);
    void setSound(Text name);
    void setIgnoreAllDay(bool on);
    void setRaiseVolume(bool on);
    void setKeepAwake(bool on);

    void setLaunchAtLogin(bool on);

    /// Rings now, whatever the master switch and the style say: callers decide.
    void presentAlarm(AlarmPayload payload);

    /// Takes down what rings, so that the volume comes back: before the application quits.
    void dismissAlarm() { m_presenter.dismiss(); }

    /// The alarms and snoozes that the application itself rings, those included that have had their turn
    /// since the list was last made.
    std::vector<Text> alarmTaskIDs() const;

private:
    using WeakModel = std::weak_ptr<AppModel>;

    template <typename Edit> void change(Edit edit);
    void persistAndSync();
    void updateStatus();
    template <typename Value> void publish(Value& property, Value value, Property name);
    template <typename Value> void publishAlways(Value& property, Value value, Property name);
    void observeCalendarChanges();

    // AppModelRefresh.cpp
    Task<> refreshUpcoming();
    void publishUpcoming(std::vector<ScheduledAlarm> alarms);
    void startTicking();
    static Task<> tick(WeakModel model, std::shared_ptr<Clock> clock, std::stop_token stop);

    // AppModelAlarms.cpp
    void rescheduleAlarmWindows();
    bool ringsInApplication() const;
    void keep(AlarmTask task);
    void ringDueAlarms();
    void timerWentOff(const Text& id);
    void takeTurn(AlarmTask& task);
    AlarmTask* alarmTask(const Text& id);
    void snooze(AlarmPayload payload);
    static Task<> ringAt(
        WeakModel model, std::shared_ptr<Clock> clock, Instant ringDate, Text id, std::stop_token stop);
    static Task<> ringAfter(
        WeakModel model, std::shared_ptr<Clock> clock, Seconds interval, Text id, std::stop_token stop);

    // AppModelWake.cpp
    void startKeepAwakeEvaluator();
    static Task<> keepEvaluating(WeakModel model, std::shared_ptr<Clock> clock, std::stop_token stop);
    void evaluateKeepAwake();
    void scheduleNextWake();
    void observeSystemWake();
    void handleDidWake();
    bool hasRungSinceWake(const Text& id);

    AppServices m_services;
    TinkraConfiguration m_configuration;
    MonitoringService m_service;
    AlarmEngine m_engine;
    AlarmPresenter m_presenter;
    std::shared_ptr<NotificationCoordinator> m_notifications;

    std::vector<CalendarRef> m_calendars;
    std::vector<ScheduledAlarm> m_upcoming;
    Permission m_calendarPermission = Permission::unknown;
    Permission m_notificationPermission = Permission::unknown;
    std::string m_statusMessage = "Starting up…";
    std::optional<Instant> m_lastSync;
    bool m_launchAtLogin = false;
    ChangeNotices<Property> m_notices;

    System::Observation m_calendarObserver;
    TaskHandle m_tickTask;
    std::vector<AlarmTask> m_alarmTasks; ///< in the order in which they were started; one for each identifier
    SleepGuard m_sleepGuard;
    WakeFromSleep m_wakeFromSleep;
    TaskHandle m_keepAwakeTask;
    System::Observation m_wakeObserver;
};

template <typename Value> void AppModel::publish(Value& property, Value value, Property name)
{
    if (property != value)
        publishAlways(property, std::move(value), name);
}

template <typename Value> void AppModel::publishAlways(Value& property, Value value, Property name)
{
    property = std::move(value);
    m_notices.notify(name);
}

}
