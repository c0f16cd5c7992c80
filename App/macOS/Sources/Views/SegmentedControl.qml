import QtQuick
import QtQuick.Templates as T
import Tinkra

// Delegates see the ids around them, which the linter of Qt 6.4 cannot be told.
// qmllint disable unqualified

/// One of a few, all in sight. It shows what it is told; an index without a segment shows none.
T.Control {
    id: root

    required property string label
    required property list<string> segments
    required property int current

    signal chosen(index: int)

    /// Arrow keys go on from the one that is shown, or from the first.
    function step(by: int) {
        const next = root.current < 0 ? 0 : root.current + by;
        if (next >= 0 && next < items.count && next !== root.current)
            root.chosen(next);
    }

    readonly property int onward: root.mirrored ? -1 : 1

    implicitWidth: row.width + 4
    implicitHeight: Theme.scaled(16) + 14
    opacity: enabled ? 1 : 0.45
    focusPolicy: Qt.TabFocus

    Accessible.role: Accessible.Grouping
    Accessible.name: root.label
    Accessible.focusable: true

    Keys.onLeftPressed: root.step(-root.onward)
    Keys.onRightPressed: root.step(root.onward)
    Keys.onUpPressed: root.step(-1)
    Keys.onDownPressed: root.step(1)
    Keys.onPressed: event => {
        if (event.key !== Qt.Key_Home && event.key !== Qt.Key_End)
            return;
        event.accepted = true;
        const end = event.key === Qt.Key_Home ? 0 : items.count - 1;
        if (end !== root.current)
            root.chosen(end);
    }

    background: Rectangle {
        radius: 10
        color: Theme.surfaceStrong
    }

    Row {
        id: row

        x: 2
        y: 2
        height: root.height - 4

        Repeater {
            id: items

            model: root.segments

            Segment {
                required property int index
                required property string modelData

                objectName: "segment." + index
                title: modelData
                selected: index === root.current
                height: row.height
                onPressedOnce: {
                    if (index !== root.current)
                        root.chosen(index);
                }
            }
        }
    }
    FocusRing {
        visible: root.visualFocus
        controlRadius: 10
    }

    component Segment: Item {
        id: segment

        required property string title
        required property bool selected

        signal pressedOnce()

        implicitWidth: words.implicitWidth + 24
        Accessible.role: Accessible.RadioButton
        Accessible.name: segment.title
        Accessible.checkable: true
        Accessible.checked: segment.selected
        Accessible.onPressAction: segment.pressedOnce()
        Accessible.onToggleAction: segment.pressedOnce()

        ContinuousCard {
            anchors { fill: parent; margins: -margin }
            margin: 4
            visible: segment.selected
            radius: 8
            fill: Theme.surface
            stroke: Qt.rgba(0, 0, 0, 0.06)
            shadowOpacity: 0.1
            shadowRadius: 1
            shadowOffset: 1
        }
        Rectangle {
            anchors.fill: parent
            visible: mouse.pressed && !segment.selected
            radius: 8
            color: Qt.rgba(0, 0, 0, 0.06)
        }
        ThemedText {
            id: words

            anchors.centerIn: parent
            text: segment.title
            size: 12
            line: 16
            color: segment.selected || hover.hovered ? Theme.textPrimary : Theme.textSecondary
            font.weight: Font.Medium
        }
        HoverHandler { id: hover }
        MouseArea {
            id: mouse

            anchors.fill: parent
            onClicked: segment.pressedOnce()
        }
    }
}
