import QtQuick
import Tinkra

/// A time on one line of a fixed height, in digits of one width.
Item {
    id: root

    required property string text
    required property real size // of the letters, in points as drawn
    required property real line // the height, likewise
    required property color color
    property int weight: Font.Normal

    implicitWidth: digits.implicitWidth
    implicitHeight: Theme.scaled(root.line)

    Accessible.role: Accessible.StaticText
    Accessible.name: root.text

    TabularText {
        id: digits

        anchors { left: parent.left; verticalCenter: parent.verticalCenter }
        width: implicitWidth
        height: implicitHeight
        text: root.text
        color: root.color
        font { family: Application.font.family; pixelSize: Theme.scaled(root.size); weight: root.weight }
    }
}
