import QtQuick
import Tinkra

/// A switch that shows what it is told. It asks for the other state when it is pressed, and shows it once it is told so.
PlainButton {
    id: root

    required property bool on

    signal toggled(on: bool)

    readonly property color track: root.on ? Theme.accent : Theme.textTertiary

    implicitWidth: 36
    implicitHeight: 20
    ringRadius: 10
    onClicked: root.toggled(!root.on)

    Accessible.role: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: root.on
    Accessible.onToggleAction: root.toggled(!root.on)

    background: Capsule {
        fill: root.pressed ? Qt.darker(root.track, 1.1) : root.track

        Behavior on fill {
            ColorAnimation { duration: Theme.colorChange; easing.type: Easing.OutQuad }
        }
    }

    Capsule { // a breath of shadow
        x: knob.x - margin
        y: knob.y
        width: knob.width + 2 * margin
        height: knob.height + 2 * margin
        margin: 1
        fill: Qt.rgba(0, 0, 0, 0.12)
    }
    Capsule {
        id: knob

        objectName: "knob"
        x: root.on !== root.mirrored ? root.width - 18 : 2
        y: 2
        width: 16
        height: 16
        fill: root.pressed ? Qt.darker("white", 1.08) : "white"

        Behavior on x {
            NumberAnimation { duration: 160; easing.type: Easing.OutQuad }
        }
    }
}
