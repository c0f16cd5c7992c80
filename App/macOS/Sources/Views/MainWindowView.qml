import QtQuick
import Tinkra

// Delegates see the ids around them, which the linter of Qt 6.4 cannot be told.
// qmllint disable unqualified

/// The main window: a sidebar, and the page that is chosen there.
FocusScope {
    id: root

    required property ViewModel model
    required property double now // in seconds since 1970

    enum Section { Home, Calendars, Settings }

    property int section: MainWindowView.Section.Home

    readonly property var sections: [
        { title: "Home", symbol: "house", page: home },
        { title: "Calendars", symbol: "calendar", page: calendars },
        { title: "Settings", symbol: "slider.horizontal.3", page: settings },
    ]
    readonly property size smallest: Qt.size(sidebar.implicitWidth + 760, 560)

    function show(section: int) {
        if (root.section === section)
            return;
        root.section = section;
        detail.contentY = 0;
        appearing.restart();
    }

    implicitWidth: 880
    implicitHeight: 640

    LayoutMirroring.enabled: Application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true

    Accessible.role: Accessible.Pane
    Accessible.name: "Calendar Murkel"

    Shortcut { sequence: "Ctrl+1"; onActivated: root.show(MainWindowView.Section.Home) }
    Shortcut { sequence: "Ctrl+2"; onActivated: root.show(MainWindowView.Section.Calendars) }
    Shortcut { sequence: "Ctrl+3"; onActivated: root.show(MainWindowView.Section.Settings) }
    Shortcut { sequence: "Ctrl+W"; onActivated: root.model.closeWindow() }
    Shortcut { sequence: "Ctrl+Q"; onActivated: root.model.quit() }

    Rectangle {
        anchors.fill: parent
        color: Theme.bg
    }
    Sidebar {
        id: sidebar

        anchors { left: parent.left; top: parent.top; bottom: parent.bottom }
        focus: true
        sections: root.sections
        current: root.section
        masterEnabled: root.model.masterEnabled
        onChosen: index => root.show(index)
        onWebsiteRequested: root.model.openWebsite()
        onTestRequested: root.model.fireTestAlarm()
        onMasterToggled: on => root.model.setMasterEnabled(on)
    }
    ScrollPage {
        id: detail

        objectName: "detail"
        anchors { left: sidebar.right; right: parent.right; top: parent.top; bottom: parent.bottom }

        MessageCard {
            objectName: "notice"
            width: parent.width
            visible: root.model.notice !== ""
            systemImage: "info.circle"
            message: root.model.notice
        }
        OnboardingCard {
            objectName: "onboarding"
            width: parent.width
            visible: root.model.calendarPermission !== ViewModel.Granted
            denied: root.model.calendarPermission === ViewModel.Denied
            onGrantRequested: root.model.requestPermissions()
            onSettingsRequested: root.model.openPrivacySettings()
        }
        Loader {
            id: page

            objectName: "page"
            width: parent.width
            sourceComponent: root.sections[root.section].page
        }
    }
    NumberAnimation {
        id: appearing

        target: page
        property: "opacity"
        from: 0
        to: 1
        duration: Theme.colorChange
        easing.type: Easing.OutQuad
    }

    Component {
        id: home

        HomeView {
            firstName: root.model.firstName
            nextAlarmText: root.model.nextAlarmText
            calendarsWatched: root.model.calendarsWatched
            upcoming: root.model.upcoming
            now: root.now
        }
    }
    Component {
        id: calendars

        CalendarsView {
            accounts: root.model.accounts
            accessGranted: root.model.calendarPermission === ViewModel.Granted
            onCalendarToggled: calendarID => root.model.toggleCalendar(calendarID)
            onAccountToggled: (account, on) => root.model.selectAccount(account, on)
        }
    }
    Component {
        id: settings

        AlarmSettingsView {
            leadTime: root.model.leadTime
            alarmStyle: root.model.alarmStyle
            soundName: root.model.soundName
            ignoreAllDay: root.model.ignoreAllDay
            raiseVolume: root.model.raiseVolume
            keepAwake: root.model.keepAwake
            launchAtLogin: root.model.launchAtLogin
            onLeadTimeChosen: seconds => root.model.setLeadTime(seconds)
            onStyleChosen: style => root.model.setStyle(style)
            onSoundChosen: name => root.model.setSound(name)
            onIgnoreAllDayToggled: on => root.model.setIgnoreAllDay(on)
            onRaiseVolumeToggled: on => root.model.setRaiseVolume(on)
            onKeepAwakeToggled: on => root.model.setKeepAwake(on)
            onLaunchAtLoginToggled: on => root.model.setLaunchAtLogin(on)
            onTestRequested: root.model.fireTestAlarm()
        }
    }
}
