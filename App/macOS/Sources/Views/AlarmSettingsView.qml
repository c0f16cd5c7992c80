import QtQuick
import Tinkra

// Delegates see the ids around them, which the linter of Qt 6.4 cannot be told.
// qmllint disable unqualified

/// The page of the alarm settings. It shows what is stored; what is chosen goes out as a signal.
Column {
    id: root

    required property double leadTime // in seconds
    required property string alarmStyle // a value of styleOptions
    required property string soundName // as stored
    required property bool ignoreAllDay
    required property bool raiseVolume
    required property bool keepAwake
    required property bool launchAtLogin

    signal leadTimeChosen(seconds: real)
    signal styleChosen(style: string)
    signal soundChosen(name: string)
    signal ignoreAllDayToggled(on: bool)
    signal raiseVolumeToggled(on: bool)
    signal keepAwakeToggled(on: bool)
    signal launchAtLoginToggled(on: bool)
    signal testRequested()

    readonly property var leadOptions: [
        { label: "At start", seconds: 0 },
        { label: "1 min", seconds: 60 },
        { label: "2 min", seconds: 120 },
        { label: "5 min", seconds: 300 },
        { label: "10 min", seconds: 600 },
        { label: "15 min", seconds: 900 },
    ]
    readonly property var styleOptions: [
        { label: "Notification", style: "notificationOnly" },
        { label: "Notification + banner", style: "notificationAndWindow" },
    ]
    readonly property list<string> sounds: ["Glass", "Funk", "Sosumi", "Ping", "Hero", "Submarine"]

    PageHeader {
        width: root.width
        title: "Settings"
        explanation: "How Tinkra rings when a monitored meeting begins."
    }
    Item { width: 1; height: 20 }
    GlassCard {
        width: root.width
        padding: 4
        fill: Theme.surface

        Column {
            anchors { left: parent.left; right: parent.right }

            SettingRow {
                objectName: "ringTime"
                width: parent.width
                first: true
                title: "Ring time"
                explanation: "How far before the meeting the alarm fires."

                SegmentedControl {
                    objectName: "control"
                    label: "Ring time"
                    segments: root.leadOptions.map(option => option.label)
                    current: root.leadOptions.findIndex(option => option.seconds === root.leadTime)
                    onChosen: index => root.leadTimeChosen(root.leadOptions[index].seconds)
                }
            }
            SettingRow {
                objectName: "alarmStyle"
                width: parent.width
                title: "Alarm style"
                explanation: "Notification only, or also drop a banner over everything (incl. full-screen apps) while Tinkra is running."

                SegmentedControl {
                    objectName: "control"
                    label: "Alarm style"
                    segments: root.styleOptions.map(option => option.label)
                    current: root.styleOptions.findIndex(option => option.style === root.alarmStyle)
                    onChosen: index => root.styleChosen(root.styleOptions[index].style)
                }
            }
            SettingRow {
                objectName: "alarmSound"
                width: parent.width
                title: "Alarm sound"
                explanation: "Used by the full alarm window."

                Row {
                    spacing: 8

                    ThemedText {
                        anchors.verticalCenter: parent.verticalCenter
                        size: 13
                        line: 20
                        text: "Preview"
                        color: Theme.textSecondary
                    }
                    Picker {
                        objectName: "control"
                        label: "Preview"
                        choices: root.sounds
                        choice: root.soundName === "default" || root.soundName === "" ? "Glass" : root.soundName
                        onChosen: choice => root.soundChosen(choice)
                    }
                }
            }
            SwitchRow {
                objectName: "ignoreAllDay"
                width: parent.width
                title: "Ignore all-day events"
                explanation: "Don't ring for all-day calendar entries."
                on: root.ignoreAllDay
                onToggled: on => root.ignoreAllDayToggled(on)
            }
            SwitchRow {
                objectName: "raiseVolume"
                width: parent.width
                title: "Raise volume when ringing"
                explanation: "Unmute and turn the volume up so a quiet or muted Mac is still heard. Restored after you dismiss."
                on: root.raiseVolume
                onToggled: on => root.raiseVolumeToggled(on)
            }
            SwitchRow {
                objectName: "keepAwake"
                width: parent.width
                title: "Keep Mac awake before meetings"
                explanation: "Stops the Mac from idle-sleeping in the minutes before an alarm so it doesn't miss one. (Can't wake a Mac that's already asleep.)"
                on: root.keepAwake
                onToggled: on => root.keepAwakeToggled(on)
            }
            SwitchRow {
                objectName: "launchAtLogin"
                width: parent.width
                title: "Launch at login"
                explanation: "Keep Tinkra in the menu bar so it arms alarms for new meetings even when you haven't opened it."
                on: root.launchAtLogin
                onToggled: on => root.launchAtLoginToggled(on)
            }
        }
    }
    Item { width: 1; height: 16 }
    Item {
        width: root.width
        height: note.height

        SymbolImage {
            id: info

            anchors { left: parent.left; top: parent.top }
            width: 16
            height: 16
            name: "info.circle"
            color: Theme.textSecondary
        }
        ThemedText {
            id: note

            anchors { left: info.right; leftMargin: 8; right: parent.right }
            size: 12
            line: 16
            text: "Alarms ring at the meeting time even if Tinkra is quit. The full alarm window only appears while Tinkra is running."
            color: Theme.textSecondary
            wrapMode: Text.Wrap
        }
    }
    Item { width: 1; height: 16 }
    GhostButton {
        objectName: "test"
        anchors.left: parent.left
        title: "Ring a test alarm"
        systemImage: "bell"
        onAction: root.testRequested()
    }
}
