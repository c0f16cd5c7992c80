import QtQuick
import Tinkra

/// A page in the sidebar.
PlainButton {
    id: root

    required property string title
    required property string systemImage
    required property bool selected

    implicitHeight: Theme.scaled(16) + 44
    text: root.title
    ringRadius: 11
    fill: root.selected ? Theme.surface
        : root.pressed ? Theme.stroke
        : root.hovered ? Theme.surfaceStrong
        : "transparent"
    edge: root.selected ? Theme.stroke : "transparent"

    readonly property color textColor: root.selected || root.pressed ? Theme.textPrimary : Theme.textSecondary

    Accessible.role: Accessible.PageTab
    Accessible.selectable: true
    Accessible.selected: root.selected

    contentItem: Item {
        Column {
            anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter }
            spacing: 4

            SymbolImage {
                objectName: "symbol"
                anchors.horizontalCenter: parent.horizontalCenter
                width: 20
                height: 20
                name: root.systemImage
                color: root.selected ? Theme.accent : root.textColor
                weight: root.selected ? Font.DemiBold : Font.Medium
            }
            ThemedText {
                width: parent.width
                size: 12
                line: 16
                text: root.title
                color: root.textColor
                horizontalAlignment: Text.AlignHCenter
                elide: Text.ElideRight
                font.weight: root.selected ? Font.DemiBold : Font.Medium
            }
        }
    }
}
