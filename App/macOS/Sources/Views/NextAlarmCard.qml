import QtQuick
import Tinkra

/// The alarm that comes next, in the panel.
GlassCard {
    id: root

    required property string title
    required property string weekdayTime // of the meeting's start
    required property double fireDate // in seconds since 1970
    required property double now

    padding: 16
    fill: Theme.surface

    Accessible.role: Accessible.Grouping
    Accessible.name: `${label.text}: ${root.title}, ${root.weekdayTime}, ${countdown.text}`

    Column {
        anchors { left: parent.left; right: parent.right }

        SectionLabel {
            id: label

            text: "Next alarm"
        }
        Item { width: 1; height: 4 }
        ThemedText {
            objectName: "title"
            width: parent.width
            size: 16
            line: 20
            text: root.title
            wrapMode: Text.Wrap
            maximumLineCount: 2
            elide: Text.ElideRight
            font.weight: Font.Bold
        }
        Item { width: 1; height: 8 }
        Item {
            width: parent.width
            height: when.height

            SymbolImage {
                id: symbol

                anchors { left: parent.left; verticalCenter: parent.verticalCenter }
                width: 15
                height: 15
                name: "calendar"
                color: Theme.textSecondary
            }
            TabularLabel {
                id: when

                objectName: "time"
                anchors { left: symbol.right; leftMargin: 6 }
                size: 12
                line: 16
                text: root.weekdayTime
                color: Theme.textSecondary
            }
            TabularLabel {
                id: countdown

                objectName: "relative"
                anchors { left: when.right; leftMargin: 12 }
                size: 13
                line: 16
                text: RelativeTime.text(root.fireDate, root.now)
                color: Theme.textPrimary
                weight: Font.DemiBold
            }
        }
    }
}
