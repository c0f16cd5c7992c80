import QtQuick
import Tinkra

/// A card around whatever is put into it. It is as large as its content asks for, unless it is told another size; the
/// content then takes what the padding leaves.
Item {
    id: root

    required property real padding
    required property color fill
    default property alias content: holder.data

    implicitWidth: holder.childrenRect.width + 2 * root.padding
    implicitHeight: holder.childrenRect.height + 2 * root.padding

    ContinuousCard {
        anchors { fill: parent; margins: -margin }
        margin: 30 // three times the shadow's radius: there it ends
        radius: 16
        fill: root.fill
        stroke: Theme.stroke
        shadowOpacity: 0.04
        shadowRadius: 10
        shadowOffset: 4
    }
    Item {
        id: holder

        anchors { fill: parent; margins: root.padding }
    }
}
