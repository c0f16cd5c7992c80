import QtQuick
import Tinkra

/// A symbol that is pressed, in an area of 32 x 32.
PlainButton {
    id: root

    required property string systemImage

    padding: 7

    contentItem: SymbolImage {
        implicitWidth: 18
        implicitHeight: 18
        name: root.systemImage
        color: root.hovered || root.pressed ? Theme.textPrimary : Theme.textSecondary
        weight: Font.Medium
        opacity: root.pressed ? 0.7 : 1
    }
}
