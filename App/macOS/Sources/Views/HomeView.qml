import QtQuick
import Tinkra

// Delegates see the ids around them, which the linter of Qt 6.4 cannot be told.
// qmllint disable unqualified

/// The first page: a greeting, what the application is for, three figures and the upcoming alarms.
Column {
    id: root

    required property string firstName
    required property string nextAlarmText
    required property int calendarsWatched
    required property var upcoming // the alarms, soonest first; roles time, title, colorHex, fireDate
    required property double now // in seconds since 1970

    readonly property real figuresWidth: Theme.scaled(388)
    /// With large letters hero and figures do not fit beside each other.
    readonly property bool stacked: width - figuresWidth - 16 < Theme.scaled(260)

    spacing: 20

    PageHeader {
        objectName: "greeting"
        width: root.width
        title: "Welcome back, " + root.firstName
    }
    Grid {
        width: root.width
        columns: root.stacked ? 1 : 2
        columnSpacing: 16
        rowSpacing: 16

        HeroCard {
            id: hero

            width: root.stacked ? root.width : root.width - root.figuresWidth - 16
            height: Math.max(neededHeight, Theme.scaled(176))
        }
        FiguresCard {
            objectName: "figures"
            width: root.stacked ? root.width : root.figuresWidth
            height: root.stacked ? Theme.scaled(120) : hero.height
            alarmsArmed: list.count
            nextAlarmText: root.nextAlarmText
            calendarsWatched: root.calendarsWatched
        }
    }
    Column {
        width: root.width
        topPadding: 4
        spacing: 8

        SectionLabel { text: "Upcoming" }
        MessageCard {
            objectName: "empty"
            width: root.width
            visible: list.count === 0
            systemImage: root.calendarsWatched === 0 ? "calendar" : "moon.zzz.fill"
            message: root.calendarsWatched === 0
                ? "Pick calendars to start arming alarms."
                : "No upcoming meetings in your monitored calendars."
        }
        GlassCard {
            objectName: "list"
            width: root.width
            visible: list.count > 0
            padding: 4
            fill: Theme.surface

            Column {
                anchors { left: parent.left; right: parent.right }

                Accessible.role: Accessible.List
                Accessible.name: "Upcoming"

                Repeater {
                    id: list

                    model: root.upcoming

                    HomeRow {
                        required property int index

                        objectName: "row." + index
                        width: parent?.width ?? 0
                        now: root.now

                        Hairline {
                            anchors { left: parent.left; right: parent.right; leftMargin: 12; rightMargin: 12 }
                            visible: parent.index > 0
                        }
                    }
                }
            }
        }
    }
}
