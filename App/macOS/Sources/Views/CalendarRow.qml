import QtQuick
import Tinkra

/// A calendar, to be chosen or not by pressing it anywhere.
PlainButton {
    id: root

    required property string title
    required property string colorHex
    required property bool selected

    implicitHeight: Theme.scaled(20) + 20
    text: root.title
    ringRadius: 11
    fill: root.pressed ? Theme.surfaceStrong : root.hovered ? Theme.hover : "transparent"

    Accessible.role: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: root.selected
    Accessible.onToggleAction: root.clicked()

    ColorDot {
        id: dot

        objectName: "dot"
        anchors { left: parent.left; leftMargin: 12; verticalCenter: parent.verticalCenter }
        hex: root.colorHex
        size: 12
    }
    ThemedText {
        objectName: "title"
        anchors { left: dot.right; leftMargin: 12; right: mark.left; rightMargin: 16; verticalCenter: parent.verticalCenter }
        size: 14
        line: 20
        text: root.title
        maximumLineCount: 1
        elide: Text.ElideRight
        font.weight: Font.Medium
    }
    SymbolImage {
        id: mark

        objectName: "mark"
        anchors { right: parent.right; rightMargin: 12; verticalCenter: parent.verticalCenter }
        width: 20
        height: 20
        name: root.selected ? "checkmark.circle.fill" : "circle"
        color: root.selected ? Theme.accent : Theme.textTertiary
    }
}
