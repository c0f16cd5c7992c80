import QtQuick
import Tinkra

/// The ring around a control that the keyboard has reached, 2 outside of it and 2 wide.
ContinuousCard {
    property real controlRadius

    anchors { fill: parent; margins: -4 }
    margin: 4
    radius: controlRadius
    fill: "transparent"
    stroke: Theme.accent
    strokeWidth: 2
    strokeInset: -3
}
