import QtQuick
import Tinkra

// Delegates see the ids around them, which the linter of Qt 6.4 cannot be told.
// qmllint disable unqualified

/// The three figures of the home page.
GlassCard {
    id: root

    required property int alarmsArmed
    required property string nextAlarmText
    required property int calendarsWatched

    padding: 20
    fill: Theme.surface

    Item {
        id: columns

        anchors { left: parent.left; right: parent.right; leftMargin: -root.padding; rightMargin: -root.padding; verticalCenter: parent.verticalCenter }
        implicitHeight: Math.max(row.height, Theme.scaled(72))

        Row {
            id: row

            anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter }

            Figure { objectName: "armed"; value: String(root.alarmsArmed); label: "alarms armed" }
            Figure { objectName: "next"; value: root.nextAlarmText; label: "next alarm" }
            Figure { objectName: "watched"; value: String(root.calendarsWatched); label: "calendars watched" }
        }
        Repeater {
            model: 2

            Hairline {
                required property int index

                x: Math.round((index + 1) * columns.width / 3)
                anchors.verticalCenter: parent.verticalCenter
                height: Theme.scaled(72)
            }
        }
    }

    component Figure: Column {
        id: figure

        required property string value
        required property string label

        width: columns.width / 3
        leftPadding: 4
        rightPadding: 4
        spacing: 4

        Accessible.role: Accessible.StaticText
        Accessible.name: figure.value + " " + figure.label

        ThemedText {
            objectName: "value"
            width: figure.width - 8
            size: 30
            line: 36
            text: figure.value
            horizontalAlignment: Text.AlignHCenter
            font { family: Theme.serif; weight: Font.DemiBold }
            Accessible.ignored: true
        }
        ThemedText {
            objectName: "label"
            width: figure.width - 8
            size: 12
            line: 16
            text: figure.label
            color: Theme.textSecondary
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }
}
