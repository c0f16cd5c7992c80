import QtQml.Models
import QtQuick
import Tinkra

/// A test double of the application: what it shows is set, what the user asks for is remembered.
ViewModel {
    id: root

    property var asked: []

    readonly property ListModel alarmList: ListModel { }
    readonly property ListModel accountList: ListModel { }

    Component.onCompleted: {
        accountList.append({ account: "Cloud", countText: "1 of 2", anySelected: true, allSelected: false, calendars: [
            { calendarID: "home", title: "Home", colorHex: "", selected: true },
            { calendarID: "family", title: "Family", colorHex: "#3366CC", selected: false }] });
        accountList.append({ account: "Office", countText: "1 of 1", anySelected: true, allSelected: true, calendars: [
            { calendarID: "work", title: "Work", colorHex: "#3366CC", selected: true }] });
    }

    firstName: "Kraira"
    nextAlarmText: "—"
    calendarsWatched: 2
    calendarPermission: ViewModel.Granted
    upcoming: alarmList
    accounts: accountList
    alarmStyle: "notificationAndWindow"
    soundName: "default"

    function note(text: string) {
        asked = asked.concat(text);
    }

    function addAlarms(count: int) {
        for (let i = 0; i < count; ++i)
            alarmList.append({ title: "Meeting " + i, time: "9:3" + i, fireDate: 1000000728 + 60 * i, colorHex: "#3366CC" });
    }

    onSetMasterEnabled: on => note("master " + on)
    onToggleCalendar: id => note("calendar " + id)
    onSelectAccount: (account, on) => note("account " + account + " " + on)
    onSetLeadTime: seconds => note("lead " + seconds)
    onSetStyle: style => note("style " + style)
    onSetSound: name => note("sound " + name)
    onSetIgnoreAllDay: on => note("ignoreAllDay " + on)
    onSetRaiseVolume: on => note("raiseVolume " + on)
    onSetKeepAwake: on => note("keepAwake " + on)
    onSetLaunchAtLogin: on => note("launchAtLogin " + on)
    onRequestPermissions: note("permissions")
    onOpenPrivacySettings: note("privacy")
    onOpenWebsite: note("website")
    onFireTestAlarm: note("test")
    onCloseWindow: note("close")
    onQuit: note("quit")
}
