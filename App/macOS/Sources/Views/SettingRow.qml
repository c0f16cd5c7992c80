import QtQuick
import Tinkra

/// A setting: what it is called, what it does, and its control at the end.
Item {
    id: root

    required property string title
    required property string explanation
    property bool first: false
    default property alias control: slot.data

    readonly property real controlWidth: slot.childrenRect.width
    /// Where little room is left for the words, the control goes below them.
    readonly property bool stacked: width - 24 - 24 - controlWidth < Theme.scaled(200)

    implicitHeight: stacked ? words.height + slot.height + 24 : Math.max(words.height, slot.height) + 16

    Hairline {
        anchors { left: parent.left; right: parent.right; leftMargin: 12; rightMargin: 12 }
        visible: !root.first
    }
    Column {
        id: words

        anchors { left: parent.left; leftMargin: 12 }
        y: root.stacked ? 8 : Math.round((root.height - height) / 2)
        width: Math.min(root.width - 24 - (root.stacked ? 0 : root.controlWidth + 24), Theme.scaled(600))

        ThemedText {
            width: parent.width
            size: 14
            line: 20
            text: root.title
            wrapMode: Text.Wrap
            font.weight: Font.Medium
        }
        ThemedText {
            objectName: "explanation"
            width: parent.width
            size: 12
            line: 16
            text: root.explanation
            color: Theme.textSecondary
            wrapMode: Text.Wrap
        }
    }
    Item {
        id: slot

        anchors { right: parent.right; rightMargin: 12 }
        y: root.stacked ? words.y + words.height + 8 : Math.round((root.height - height) / 2)
        width: childrenRect.width
        height: childrenRect.height
    }
}
