import QtQuick
import Tinkra

/// An upcoming alarm in the panel.
Item {
    id: root

    required property string title
    required property string weekdayTime // of the meeting's start
    required property double fireDate // in seconds since 1970
    required property string colorHex
    required property double now

    implicitHeight: words.height + 16

    Accessible.role: Accessible.ListItem
    Accessible.name: `${root.title}, ${root.weekdayTime}, ${relative.text}`

    ContinuousCard {
        anchors.fill: parent
        radius: 11
        fill: Theme.surface
    }
    ColorDot {
        id: dot

        objectName: "dot"
        anchors { left: parent.left; leftMargin: 12; verticalCenter: parent.verticalCenter }
        hex: root.colorHex
        size: 10
    }
    Column {
        id: words

        anchors { left: dot.right; right: relative.left; leftMargin: 12; rightMargin: 12; verticalCenter: parent.verticalCenter }
        spacing: 2

        ThemedText {
            objectName: "title"
            width: parent.width
            size: 14
            line: 18
            text: root.title
            maximumLineCount: 1
            elide: Text.ElideRight
            font.weight: Font.DemiBold
        }
        ThemedText {
            objectName: "time"
            width: parent.width
            size: 12
            line: 16
            text: root.weekdayTime
            color: Theme.textSecondary
            elide: Text.ElideRight
        }
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
