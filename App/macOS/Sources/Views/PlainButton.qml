import QtQuick
import QtQuick.Templates as T
import Tinkra

/// What controls without a look of their own share: how they are pressed, and the ring when the keyboard reaches them.
T.AbstractButton {
    id: root

    property real ringRadius: 8
    property color fill: "transparent"
    property color edge: "transparent"

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    opacity: enabled ? 1 : 0.45
    hoverEnabled: true
    focusPolicy: Qt.TabFocus

    Accessible.role: Accessible.Button
    Accessible.name: root.text
    Accessible.focusable: true
    Accessible.onPressAction: root.clicked()

    Keys.onReturnPressed: event => event.isAutoRepeat || root.clicked()
    Keys.onEnterPressed: event => event.isAutoRepeat || root.clicked()

    background: ContinuousCard {
        radius: root.ringRadius
        fill: root.fill
        stroke: root.edge

        Behavior on fill {
            ColorAnimation { duration: Theme.colorChange; easing.type: Easing.OutQuad }
        }
    }

    FocusRing {
        visible: root.visualFocus
        controlRadius: root.ringRadius
    }
}
