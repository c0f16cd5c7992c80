import QtQuick
import Tinkra

/// A card that says one thing, where there is nothing to list.
GlassCard {
    id: root

    required property string systemImage
    required property string message

    padding: 16
    fill: Theme.surface

    Item {
        anchors { left: parent.left; right: parent.right }
        implicitHeight: Math.max(words.implicitHeight, 20)

        SymbolImage {
            anchors { left: parent.left; verticalCenter: parent.verticalCenter }
            width: 20
            height: 20
            name: root.systemImage
            color: Theme.accent
        }
        ThemedText {
            id: words

            objectName: "message"
            anchors { left: parent.left; leftMargin: 32; right: parent.right; verticalCenter: parent.verticalCenter }
            size: 13
            line: 20
            text: root.message
            color: Theme.textSecondary
            wrapMode: Text.Wrap
        }
    }
}
