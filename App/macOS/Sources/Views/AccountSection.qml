import QtQuick
import Tinkra

// Delegates see the ids around them, which the linter of Qt 6.4 cannot be told.
// qmllint disable unqualified

/// The calendars of one account, under a header that chooses all of them or none.
Column {
    id: root

    required property string account
    required property string countText // "1 of 3"
    required property bool anySelected
    required property bool allSelected
    required property var calendars // roles calendarID, title, colorHex, selected

    signal accountToggled(on: bool)
    signal calendarToggled(calendarID: string)

    PlainButton {
        id: header

        objectName: "header"
        width: root.width
        height: words.implicitHeight + 16 // 8 above and below, for the pointer
        text: root.account
        onClicked: root.accountToggled(!root.allSelected)

        Accessible.role: Accessible.CheckBox
        Accessible.description: root.countText
        Accessible.checkable: true
        Accessible.checked: root.allSelected
        Accessible.checkStateMixed: root.anySelected && !root.allSelected
        Accessible.onToggleAction: clicked()

        ThemedText {
            id: words

            anchors { left: parent.left; leftMargin: 16; right: count.left; rightMargin: 16; verticalCenter: parent.verticalCenter }
            size: 11
            line: 16
            text: root.account
            color: header.hovered || header.pressed ? Theme.textPrimary : Theme.textSecondary
            maximumLineCount: 1
            elide: Text.ElideRight
            font.weight: Font.Medium
        }
        ThemedText {
            id: count

            objectName: "count"
            anchors { right: parent.right; rightMargin: 16; verticalCenter: parent.verticalCenter }
            size: 11
            line: 16
            text: root.countText
            color: words.color
            font.weight: Font.Medium
        }
    }
    GlassCard {
        width: root.width
        padding: 4
        fill: Theme.surface

        Column {
            anchors { left: parent.left; right: parent.right }

            Repeater {
                model: root.calendars

                CalendarRow {
                    required property int index
                    required property string calendarID

                    objectName: "calendar." + calendarID
                    width: parent?.width ?? 0
                    onClicked: root.calendarToggled(calendarID)

                    Hairline {
                        anchors { left: parent.left; right: parent.right; leftMargin: 12; rightMargin: 12 }
                        visible: parent.index > 0
                    }
                }
            }
        }
    }
}
