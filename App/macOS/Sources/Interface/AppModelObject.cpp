#include "Interface/AppModelObject.h"

#include "AppLinks.h"
#include "Interface/QtText.h"
#include "ViewSupport/FirstName.h"

namespace Tinkra {

namespace {

/// Opens the calendar page of the privacy settings; a desktop without one opens what comes nearest.
constexpr std::string_view kPrivacySettings =
    "x-apple.systempreferences:com.apple.preference.security?Privacy_Calendars";

ViewModel::Permission toView(AppModel::Permission permission)
{
    switch (permission) {
    case AppModel::Permission::granted:
        return ViewModel::Permission::Granted;
    case AppModel::Permission::denied:
        return ViewModel::Permission::Denied;
    case AppModel::Permission::unknown:
        break;
    }
    return ViewModel::Permission::Unknown;
}

}

AppModelObject::AppModelObject(
    std::shared_ptr<AppModel> model, std::shared_ptr<System::Workspace> workspace, TimeStyle style)
    : m_model(std::move(model))
    , m_workspace(std::move(workspace))
    , m_style(std::move(style))
    , m_upcoming(m_style)
{
    firstName = QString::fromStdString(Tinkra::firstName(m_workspace->fullUserName()));
    upcoming = &m_upcoming;
    accounts = &m_accounts;
    using Property = AppModel::Property;
    for (const auto property : {Property::configuration, Property::calendars, Property::upcoming,
             Property::calendarPermission, Property::notificationPermission, Property::launchAtLogin})
        follow(property);
    m_observation = m_model->observe([this](AppModel::Property property) { follow(property); });
    connectActions();
}

void AppModelObject::connectActions()
{
    auto& model = *m_model;
    connect(this, &ViewModel::setMasterEnabled, this, [&model](bool on) { model.setMasterEnabled(on); });
    connect(this, &ViewModel::toggleCalendar, this,
        [&model](const QString& id) { model.toggleCalendar(fromQt(id)); });
    connect(this, &ViewModel::selectAccount, this, [this](const QString& account, bool on) {
        m_model->selectCalendars(m_accounts.calendarIDs(fromQt(account)), on);
    });
    connect(this, &ViewModel::setLeadTime, this, [&model](double seconds) { model.setLeadTime(seconds); });
    connect(this, &ViewModel::setStyle, this, [&model](const QString& raw) {
        if (const auto style = alarmStyleFromRawValue(raw.toStdString()))
            model.setStyle(*style);
    });
    connect(
        this, &ViewModel::setSound, this, [&model](const QString& name) { model.setSound(fromQt(name)); });
    connect(this, &ViewModel::setIgnoreAllDay, this, [&model](bool on) { model.setIgnoreAllDay(on); });
    connect(this, &ViewModel::setRaiseVolume, this, [&model](bool on) { model.setRaiseVolume(on); });
    connect(this, &ViewModel::setKeepAwake, this, [&model](bool on) { model.setKeepAwake(on); });
    connect(this, &ViewModel::setLaunchAtLogin, this, [&model](bool on) { model.setLaunchAtLogin(on); });
    connect(
        this, &ViewModel::requestPermissions, this, [&model] { model.start(&AppModel::requestPermissions); });
    connect(this, &ViewModel::fireTestAlarm, this, [&model] { model.start(&AppModel::fireTestAlarm); });
    connect(this, &ViewModel::openPrivacySettings, this, [this] { m_workspace->open(kPrivacySettings); });
    connect(this, &ViewModel::openWebsite, this, [this] { m_workspace->open(AppLinks::website()); });
}

void AppModelObject::follow(AppModel::Property property)
{
    switch (property) {
    case AppModel::Property::configuration:
        showConfiguration();
        showAccounts();
        return;
    case AppModel::Property::calendars:
        showAccounts();
        showAlarms(); // in the calendars' colours
        return;
    case AppModel::Property::upcoming:
        showAlarms();
        return;
    case AppModel::Property::calendarPermission:
        set(calendarPermission, toView(m_model->calendarPermission()), &ViewModel::calendarPermissionChanged);
        return;
    case AppModel::Property::notificationPermission:
        set(notificationPermission, toView(m_model->notificationPermission()),
            &ViewModel::notificationPermissionChanged);
        return;
    case AppModel::Property::launchAtLogin:
        set(launchAtLogin, m_model->launchAtLogin(), &ViewModel::launchAtLoginChanged);
        return;
    case AppModel::Property::statusMessage:
    case AppModel::Property::lastSync:
        return; // no view shows them
    }
}

void AppModelObject::showAlarms()
{
    const auto& alarms = m_model->upcoming();
    m_upcoming.show(alarms, m_model->calendars());
    QList<double> dates;
    for (const auto& alarm : alarms)
        dates.append(secondsSince1970(alarm.fireDate));
    set(fireDates, dates, &ViewModel::fireDatesChanged);
    const auto next = alarms.empty() ? std::nullopt : std::optional(alarms.front().meetingStart);
    set(nextAlarmText, QString::fromStdString(Tinkra::nextAlarmText(next, m_style)),
        &ViewModel::nextAlarmTextChanged);
}

void AppModelObject::showAccounts()
{
    m_accounts.show(m_model->calendarsByAccount(), m_model->configuration().monitoring);
}

void AppModelObject::showConfiguration()
{
    const auto& [master, settings, monitoring] = m_model->configuration();
    set(masterEnabled, master, &ViewModel::masterEnabledChanged);
    set(calendarsWatched, static_cast<int>(monitoring.selectedCalendarIDs.size()),
        &ViewModel::calendarsWatchedChanged);
    set(leadTime, settings.leadTime.count(), &ViewModel::leadTimeChanged);
    set(alarmStyle, QString::fromStdString(std::string(rawValue(settings.style))),
        &ViewModel::alarmStyleChanged);
    set(soundName, toQt(settings.soundName), &ViewModel::soundNameChanged);
    set(ignoreAllDay, settings.ignoreAllDay, &ViewModel::ignoreAllDayChanged);
    set(raiseVolume, settings.raiseVolume, &ViewModel::raiseVolumeChanged);
    set(keepAwake, settings.keepAwake, &ViewModel::keepAwakeChanged);
}

}
