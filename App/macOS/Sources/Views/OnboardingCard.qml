import QtQuick
import Tinkra

/// Asks for the access that the application needs, and shows the way when it was refused.
GlassCard {
    id: root

    required property bool denied

    signal grantRequested()
    signal settingsRequested()

    padding: 20
    fill: Theme.surface

    Item {
        anchors { left: parent.left; right: parent.right }
        implicitHeight: Math.max(words.height, mascot.height, button.height)

        MurkelView {
            id: mascot

            anchors { left: parent.left; verticalCenter: parent.verticalCenter }
            size: 44
        }
        Column {
            id: words

            anchors { left: mascot.right; leftMargin: 16; verticalCenter: parent.verticalCenter }
            width: Math.min(parent.width - mascot.width - 32 - button.width, Theme.scaled(440))
            spacing: 4

            ThemedText {
                objectName: "title"
                width: parent.width
                size: 18
                line: 24
                text: "Connect your calendar"
                wrapMode: Text.Wrap
                font.weight: Font.DemiBold
            }
            ThemedText {
                objectName: "message"
                width: parent.width
                size: 13
                line: 20
                text: root.denied
                    ? "Access was denied. Enable Calendars + Notifications for Calendar Murkel in System Settings → Privacy."
                    : "Calendar Murkel needs read access to your calendars and permission to send alarm notifications."
                color: Theme.textSecondary
                wrapMode: Text.Wrap
            }
        }
        AccentButton {
            id: button

            objectName: "button"
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            title: root.denied ? "Open Settings" : "Grant access"
            onAction: root.denied ? root.settingsRequested() : root.grantRequested()
        }
    }
}
