import QtQuick
import QtQuick.Templates as T
import Tinkra

/// What both kinds of button share: a symbol before a title in a capsule, and how they are pressed. The capsule is the
/// kind's own.
T.Control {
    id: root

    required property string title
    property string systemImage // empty: the title stands alone
    required property color textColor
    required property color ringColor
    required property int weight

    readonly property bool pressed: mouse.pressed

    signal action()

    implicitWidth: Math.ceil(implicitContentWidth + leftPadding + rightPadding) // whole points: a painted item is cut there
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    opacity: enabled ? 1 : 0.45
    hoverEnabled: true
    focusPolicy: Qt.TabFocus

    Accessible.role: Accessible.Button
    Accessible.name: root.title
    Accessible.focusable: true
    Accessible.onPressAction: root.action()

    Keys.onSpacePressed: event => event.isAutoRepeat || root.action()
    Keys.onReturnPressed: event => event.isAutoRepeat || root.action()
    Keys.onEnterPressed: event => event.isAutoRepeat || root.action()

    contentItem: ButtonLabel {
        title: root.title
        systemImage: root.systemImage
        color: root.textColor
        weight: root.weight
    }

    MouseArea {
        id: mouse

        anchors.fill: parent
        onClicked: root.action()
    }
    Capsule {
        objectName: "ring"
        visible: root.visualFocus
        anchors { fill: parent; margins: -margin }
        margin: 4 // 2 between the button and its ring, 2 for the ring
        strokeInset: -3
        stroke: root.ringColor
        strokeWidth: 2
    }
}
