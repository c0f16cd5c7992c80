import QtQuick
import Tinkra

/// A card whose measures a test changes one at a time.
Rectangle {
    id: root

    property color fill: Theme.surface
    property color ink: Theme.textPrimary
    property real radius_: 16
    property real padding: 16
    property string text: "9:30\u202fAM"
    property real shadowOpacity: 0.04

    width: 160
    height: 90
    color: Theme.bg

    ContinuousCard {
        anchors { fill: parent; margins: 20 - margin }
        margin: 20
        radius: root.radius_
        fill: root.fill
        stroke: Theme.stroke
        shadowOpacity: root.shadowOpacity
        shadowRadius: 10
        shadowOffset: 4
    }
    Text {
        x: 20 + root.padding
        y: 36
        text: root.text
        color: root.ink
        font.pixelSize: 12
    }
}
