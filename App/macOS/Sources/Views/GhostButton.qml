import QtQuick
import Tinkra

/// The button of a secondary action.
CapsuleButton {
    id: root

    property bool onDark: false

    textColor: root.onDark ? Qt.rgba(1, 1, 1, 0.92) : Theme.textPrimary
    ringColor: root.onDark ? Qt.rgba(1, 1, 1, 0.92) : Theme.accent
    weight: Font.Medium
    horizontalPadding: 14
    verticalPadding: 8

    background: Capsule {
        readonly property color onLight: root.pressed ? Theme.surfaceStrong
            : root.hovered ? Qt.rgba(0.965, 0.957, 0.949, 1)
            : Theme.surface
        readonly property color overDark: Qt.rgba(1, 1, 1, root.pressed ? 0.1 : root.hovered ? 0.2 : 0.14)

        fill: root.onDark ? overDark : onLight
        stroke: root.onDark ? Qt.rgba(1, 1, 1, 0.22) : Theme.stroke
        strokeInset: 0.5
    }
}
