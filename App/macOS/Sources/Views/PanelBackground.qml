import QtQuick
import Tinkra

/// The panel's gradient, and its frame where the system draws none.
Item {
    id: root

    required property real radius

    readonly property Gradient light: Gradient {
        GradientStop { position: 0; color: Qt.rgba(0.984, 0.98, 0.969, 1) }
        GradientStop { position: 1; color: Qt.rgba(0.949, 0.939, 0.918, 1) }
    }

    Rectangle {
        anchors.fill: parent
        radius: root.radius
        gradient: root.light
    }
    ContinuousCard {
        anchors.fill: parent
        visible: root.radius > 0
        radius: root.radius
        fill: "transparent"
        stroke: Qt.rgba(0, 0, 0, 0.16)
        strokeWidth: 0.5
        strokeInset: 0.25
    }
}
