import QtQuick
import Tinkra

/// The button of the main action.
CapsuleButton {
    id: root

    readonly property color shade: root.pressed ? Qt.rgba(0, 0, 0, 0.12)
        : root.hovered ? Qt.rgba(1, 1, 1, 0.1)
        : "transparent"

    textColor: "white"
    ringColor: Theme.accent
    weight: Font.DemiBold
    horizontalPadding: 16
    verticalPadding: 9

    background: Capsule {
        fill: Qt.tint(Theme.accent, root.shade)
        fillEnd: Qt.tint(Theme.accent2, root.shade)
        mirrored: root.mirrored
    }
}
