import QtQuick
import Tinkra

/// A link out of the application: a symbol above its words.
PlainButton {
    id: root

    required property string systemImage

    padding: 4

    readonly property color textColor: root.hovered || root.pressed ? Theme.textPrimary : Theme.textSecondary

    Accessible.role: Accessible.Link

    HoverHandler { cursorShape: Qt.PointingHandCursor }

    contentItem: Column {
        spacing: 4
        opacity: root.pressed ? 0.7 : 1

        SymbolImage {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 16
            height: 16
            name: root.systemImage
            color: root.textColor
        }
        ThemedText {
            width: parent.width
            size: 11
            line: 14
            text: root.text
            color: root.textColor
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            font.weight: Font.Medium
        }
    }
}
