#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace Tinkra {

/// What the main window and the panel show, as properties, and what the user asks for, as signals. It decides
/// nothing: whoever makes it keeps the properties in step and answers the signals.
class ViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString firstName MEMBER firstName NOTIFY firstNameChanged FINAL)
    Q_PROPERTY(QObject* upcoming MEMBER upcoming NOTIFY upcomingChanged FINAL)
    Q_PROPERTY(QList<double> fireDates MEMBER fireDates NOTIFY fireDatesChanged FINAL)
    Q_PROPERTY(QString nextAlarmText MEMBER nextAlarmText NOTIFY nextAlarmTextChanged FINAL)
    Q_PROPERTY(QObject* accounts MEMBER accounts NOTIFY accountsChanged FINAL)
    Q_PROPERTY(int calendarsWatched MEMBER calendarsWatched NOTIFY calendarsWatchedChanged FINAL)
    Q_PROPERTY(Permission calendarPermission MEMBER calendarPermission NOTIFY calendarPermissionChanged FINAL)
    Q_PROPERTY(Permission notificationPermission MEMBER notificationPermission NOTIFY
            notificationPermissionChanged FINAL)
    Q_PROPERTY(QString notice MEMBER notice NOTIFY noticeChanged FINAL)
    Q_PROPERTY(bool masterEnabled MEMBER masterEnabled NOTIFY masterEnabledChanged FINAL)
    Q_PROPERTY(double leadTime MEMBER leadTime NOTIFY leadTimeChanged FINAL)
    Q_PROPERTY(QString alarmStyle MEMBER alarmStyle NOTIFY alarmStyleChanged FINAL)
    Q_PROPERTY(QString soundName MEMBER soundName NOTIFY soundNameChanged FINAL)
    Q_PROPERTY(bool ignoreAllDay MEMBER ignoreAllDay NOTIFY ignoreAllDayChanged FINAL)
    Q_PROPERTY(bool raiseVolume MEMBER raiseVolume NOTIFY raiseVolumeChanged FINAL)
    Q_PROPERTY(bool keepAwake MEMBER keepAwake NOTIFY keepAwakeChanged FINAL)
    Q_PROPERTY(bool launchAtLogin MEMBER launchAtLogin NOTIFY launchAtLoginChanged FINAL)

public:
    enum class Permission { Unknown, Granted, Denied };
    Q_ENUM(Permission)

    using QObject::QObject;

    QString firstName; ///< of the greeting
    QObject* upcoming = nullptr; ///< the alarms, soonest first; a list model with the roles time,
                                 ///< weekdayTime, title, colorHex, fireDate
    QList<double> fireDates; ///< of the alarms, in seconds since 1970
    QString nextAlarmText; ///< the figure
    QObject* accounts =
        nullptr; ///< a list model with the roles account, countText, anySelected, allSelected, calendars
    int calendarsWatched = 0; ///< identifiers that are selected, of calendars that exist or not
    Permission calendarPermission = Permission::Unknown;
    Permission notificationPermission = Permission::Unknown;
    QString notice; ///< a sentence for the main window about this desktop; mostly empty
    bool masterEnabled = true;
    double leadTime = 0; ///< seconds
    QString alarmStyle; ///< "notificationOnly", "notificationAndWindow"
    QString soundName; ///< as stored
    bool ignoreAllDay = true;
    bool raiseVolume = true;
    bool keepAwake = true;
    bool launchAtLogin = false;

Q_SIGNALS:
    void firstNameChanged();
    void upcomingChanged();
    void fireDatesChanged();
    void nextAlarmTextChanged();
    void accountsChanged();
    void calendarsWatchedChanged();
    void calendarPermissionChanged();
    void notificationPermissionChanged();
    void noticeChanged();
    void masterEnabledChanged();
    void leadTimeChanged();
    void alarmStyleChanged();
    void soundNameChanged();
    void ignoreAllDayChanged();
    void raiseVolumeChanged();
    void keepAwakeChanged();
    void launchAtLoginChanged();

    // What the user asks for.
    void setMasterEnabled(bool on);
    void toggleCalendar(const QString& id);
    void selectAccount(const QString& account, bool on); ///< all its calendars, or none
    void setLeadTime(double seconds);
    void setStyle(const QString& style);
    void setSound(const QString& name);
    void setIgnoreAllDay(bool on);
    void setRaiseVolume(bool on);
    void setKeepAwake(bool on);
    void setLaunchAtLogin(bool on);
    void requestPermissions();
    void openPrivacySettings();
    void openWebsite();
    void fireTestAlarm();
    void showMain();
    void closeWindow(); ///< the one that the user is in
    void quit();
};

}
