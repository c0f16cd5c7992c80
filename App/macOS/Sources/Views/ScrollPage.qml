import QtQuick
import QtQuick.Templates as T
import Tinkra

/// A page that scrolls: by wheel, by touch, by keys, and to whatever the keyboard reaches.
Flickable {
    id: root

    property real padding: 28
    property real spacing: 20
    property real contentLimit: 960 // wider windows leave the rest empty
    default property alias parts: column.data

    readonly property real end: Math.max(0, contentHeight - height)

    function scrollTo(y: real) {
        root.contentY = Math.max(0, Math.min(y, root.end));
    }

    /// Scrolls no further than it takes to show the item and a little around it.
    function reveal(item: Item) {
        if (!root.holds(item))
            return;
        const top = item.mapToItem(column, 0, 0).y + root.padding;
        const bottom = top + item.height;
        if (top - 16 < root.contentY)
            root.scrollTo(top - 16);
        else if (bottom + 16 > root.contentY + root.height)
            root.scrollTo(bottom + 16 - root.height);
    }

    function holds(item: Item): bool {
        for (let at = item; at; at = at.parent) {
            if (at === column)
                return true;
        }
        return false;
    }

    readonly property Item focused: Window.activeFocusItem

    onFocusedChanged: root.reveal(root.focused)
    onEndChanged: root.scrollTo(root.contentY)

    contentWidth: width
    contentHeight: column.height + 2 * root.padding
    boundsBehavior: Flickable.StopAtBounds
    interactive: !mouse.hovered // a mouse presses and a finger drags
    clip: true

    Keys.onPressed: event => {
        const page = root.height - 2 * root.padding;
        const ways = {
            [Qt.Key_PageDown]: root.contentY + page,
            [Qt.Key_PageUp]: root.contentY - page,
            [Qt.Key_End]: root.end,
            [Qt.Key_Home]: 0,
            [Qt.Key_Down]: root.contentY + 40,
            [Qt.Key_Up]: root.contentY - 40,
        };
        if (event.key in ways) {
            root.scrollTo(ways[event.key]);
            event.accepted = true;
        }
    }

    HoverHandler {
        id: mouse

        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
    }
    WheelHandler {
        target: null
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        onWheel: event => root.scrollTo(root.contentY - (event.pixelDelta.y || event.angleDelta.y / 2))
    }
    Column {
        id: column

        x: root.LayoutMirroring.enabled ? root.width - root.padding - width : root.padding
        y: root.padding
        width: Math.min(root.width - 2 * root.padding, root.contentLimit)
        spacing: root.spacing
    }
    T.ScrollBar.vertical: T.ScrollBar {
        id: bar

        implicitWidth: 10
        padding: 2
        visible: root.end > 0
        minimumSize: 0.1

        contentItem: Rectangle {
            implicitWidth: 6
            radius: 3
            color: Theme.textPrimary
            opacity: bar.pressed ? 0.5 : bar.hovered || bar.active ? 0.35 : 0.15

            Behavior on opacity {
                NumberAnimation { duration: Theme.colorChange }
            }
        }
    }
}
