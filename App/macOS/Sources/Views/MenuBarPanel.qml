import QtQuick
import Tinkra

// Delegates see the ids around them, which the linter of Qt 6.4 cannot be told.
// qmllint disable unqualified

/// What drops from the menu bar: the next alarms, the master switch, and three things to do.
FocusScope {
    id: root

    required property var upcoming // the alarms, soonest first; roles title, weekdayTime, fireDate, colorHex
    required property bool masterEnabled
    required property bool anyCalendarSelected
    required property bool accessMissing
    required property double now // in seconds since 1970

    property real cornerRadius: 0 // where nobody else rounds the panel

    signal masterToggled(on: bool)
    signal openRequested()
    signal testRequested()
    signal quitRequested()
    signal closeRequested()

    readonly property int laterRows: 3

    implicitWidth: Theme.scaled(320)
    implicitHeight: parts.height + 32

    LayoutMirroring.enabled: Application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true
    Keys.onEscapePressed: root.closeRequested()

    Accessible.role: Accessible.Pane
    Accessible.name: "Calendar Murkel"

    PanelBackground {
        anchors.fill: parent
        radius: root.cornerRadius
    }
    Column {
        id: parts

        x: 16
        y: 16
        width: root.width - 32
        spacing: 12

        Item {
            width: parent.width
            height: Math.max(Theme.scaled(20), 24)

            MurkelView {
                id: mascot

                anchors { left: parent.left; verticalCenter: parent.verticalCenter }
                size: 22
            }
            ThemedText {
                anchors { left: mascot.right; leftMargin: 8; verticalCenter: parent.verticalCenter }
                size: 16
                line: 20
                text: "Calendar Murkel"
                font.weight: Font.DemiBold
            }
            ToggleSwitch {
                objectName: "master"
                anchors { right: parent.right; verticalCenter: parent.verticalCenter }
                focus: true
                text: "Alarms enabled"
                on: root.masterEnabled
                onToggled: on => root.masterToggled(on)
            }
        }
        Item {
            objectName: "notice"
            width: parent.width
            height: warning.height
            visible: root.accessMissing

            SymbolImage {
                id: triangle

                anchors { left: parent.left; verticalCenter: parent.verticalCenter }
                width: 15
                height: 15
                name: "exclamationmark.triangle.fill"
                color: Theme.warning
            }
            ThemedText {
                id: warning

                anchors { left: triangle.right; leftMargin: 8; right: parent.right }
                size: 12
                line: 16
                text: "Calendar / notification access needed"
                wrapMode: Text.Wrap
                font.weight: Font.Medium
            }
        }
        Repeater {
            id: all

            model: root.upcoming

            Loader {
                id: first

                required property int index
                required property string title
                required property string weekdayTime
                required property double fireDate

                width: parts.width
                active: index === 0
                visible: active
                sourceComponent: NextAlarmCard {
                    objectName: "next"
                    width: parts.width
                    title: first.title
                    weekdayTime: first.weekdayTime
                    fireDate: first.fireDate
                    now: root.now
                }
            }
        }
        MessageCard {
            objectName: "empty"
            width: parent.width
            visible: all.count === 0
            systemImage: "moon.zzz.fill"
            message: root.anyCalendarSelected ? "No upcoming meetings" : "No calendars selected yet"
        }
        Column {
            id: later

            objectName: "later"
            width: parent.width
            topPadding: 4
            spacing: 8
            visible: all.count >= 2

            SectionLabel { text: "Later" }
            Repeater {
                model: root.upcoming

                Loader {
                    id: row

                    required property int index
                    required property string title
                    required property string weekdayTime
                    required property double fireDate
                    required property string colorHex

                    width: parts.width
                    active: index >= 1 && index <= root.laterRows
                    visible: active
                    sourceComponent: UpcomingRow {
                        objectName: "row." + row.index
                        width: parts.width
                        title: row.title
                        weekdayTime: row.weekdayTime
                        fireDate: row.fireDate
                        colorHex: row.colorHex
                        now: root.now
                    }
                }
            }
        }
        Hairline { width: parent.width }
        Item {
            width: parent.width
            height: open.height

            AccentButton {
                id: open

                objectName: "open"
                anchors { left: parent.left; verticalCenter: parent.verticalCenter }
                title: "Open"
                systemImage: "rectangle.expand.vertical"
                onAction: root.openRequested()
            }
            GhostButton {
                objectName: "test"
                anchors { right: power.left; rightMargin: 4; verticalCenter: parent.verticalCenter }
                title: "Test"
                systemImage: "bell"
                onAction: root.testRequested()
            }
            SymbolButton {
                id: power

                objectName: "quit"
                anchors { right: parent.right; rightMargin: -8; verticalCenter: parent.verticalCenter }
                text: "Quit Calendar Murkel"
                systemImage: "power"
                onClicked: root.quitRequested()
            }
        }
    }
}
