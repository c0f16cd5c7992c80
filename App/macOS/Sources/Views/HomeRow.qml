import QtQuick
import Tinkra

/// An upcoming alarm on the home page.
Item {
    id: root

    required property string time // of the meeting's start
    required property string title
    required property string colorHex
    required property double fireDate // in seconds since 1970
    required property double now

    implicitHeight: Theme.scaled(20) + 24

    Accessible.role: Accessible.ListItem
    Accessible.name: `${root.time}, ${root.title}, ${relative.text}`

    TabularLabel {
        id: clock

        objectName: "time"
        anchors { left: parent.left; leftMargin: 12; verticalCenter: parent.verticalCenter }
        width: Math.max(Theme.scaled(72), implicitWidth + 12)
        size: 13
        line: 20
        text: root.time
        color: Theme.textSecondary
        Accessible.ignored: true
    }
    ColorDot {
        id: dot

        objectName: "dot"
        anchors { left: clock.right; verticalCenter: parent.verticalCenter }
        hex: root.colorHex
        size: 10
    }
    ThemedText {
        objectName: "title"
        anchors { left: dot.right; leftMargin: 12; right: relative.left; rightMargin: 16; verticalCenter: parent.verticalCenter }
        size: 14
        line: 20
        text: root.title
        maximumLineCount: 1
        elide: Text.ElideRight
        font.weight: Font.Medium
        Accessible.ignored: true
    }
    TabularLabel {
        id: relative

        objectName: "relative"
        anchors { right: parent.right; rightMargin: 12; verticalCenter: parent.verticalCenter }
        size: 12
        line: 16
        text: RelativeTime.text(root.fireDate, root.now)
        color: Theme.textSecondary
        weight: Font.Medium
        Accessible.ignored: true
    }
}
