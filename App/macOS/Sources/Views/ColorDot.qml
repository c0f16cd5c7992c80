import QtQuick
import Tinkra

/// The colour of a calendar.
Item {
    id: root

    property string hex // empty or no colour: the accent
    required property real size

    readonly property color color: HexColor.parse(root.hex, Theme.accent)

    implicitWidth: root.size
    implicitHeight: root.size

    Capsule {
        anchors { fill: parent; margins: -margin }
        margin: 1 // half of the outline lies outside of the dot
        fill: root.color
        stroke: Qt.rgba(0, 0, 0, 0.1)
        strokeWidth: 0.5
    }
}
