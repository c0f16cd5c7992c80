import QtQuick
import Tinkra

/// What the application is for, in its own voice.
GlassCard {
    id: root

    /// Of the texts and the padding.
    readonly property real neededHeight: words.height + 2 * root.padding

    padding: 20
    fill: Theme.surface

    Column {
        id: words

        anchors { left: parent.left; right: parent.right; leftMargin: 4; rightMargin: 4; verticalCenter: parent.verticalCenter }
        spacing: 8

        ThemedText {
            width: parent.width
            size: 28
            line: 34
            text: "Never miss a\u00a0meeting" // the last word does not stand alone
            Accessible.name: "Never miss a meeting"
            wrapMode: Text.Wrap
            font { family: Theme.serif; weight: Font.DemiBold; letterSpacing: -0.28 }
        }
        ThemedText {
            objectName: "promise"
            width: parent.width
            size: 13
            line: 20
            text: "Calendar Murkel pops down and rings the moment your meeting starts — even over full-screen apps."
            color: Theme.textSecondary
            wrapMode: Text.Wrap
        }
    }
}
