import QtQuick
import Tinkra

/// A symbol before a title, in the middle of a button.
Item {
    id: root

    required property string title
    required property string systemImage // empty: the title stands alone
    required property color color
    required property int weight

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight

    Row {
        id: row

        x: root.width - width > 1 ? Math.round((root.width - width) / 2) : 0
        spacing: 6

        SymbolImage {
            visible: root.systemImage !== ""
            anchors.verticalCenter: parent.verticalCenter
            width: 16
            height: 16
            name: root.systemImage
            color: root.color
            weight: root.weight
        }
        Text {
            height: Theme.scaled(16)
            objectName: "title"
            text: root.title
            color: root.color
            textFormat: Text.PlainText
            verticalAlignment: Text.AlignVCenter
            font { pixelSize: Theme.scaled(13); weight: root.weight }
        }
    }
}
