import QtQuick
import QtQml.Models
import QtQuick.Templates as T
import Tinkra

// Delegates see the ids around them, which the linter of Qt 6.4 cannot be told.
// qmllint disable unqualified

/// One of several, the others in a list that opens.
T.ComboBox {
    id: root

    required property string label
    required property list<string> choices
    required property string choice

    signal chosen(choice: string)

    model: root.choices
    currentIndex: root.choices.indexOf(root.choice)
    displayText: root.choice
    implicitWidth: 132
    implicitHeight: Theme.scaled(20) + 10
    leftPadding: root.mirrored ? 28 : 12
    rightPadding: root.mirrored ? 12 : 28
    topPadding: 5
    bottomPadding: 5
    opacity: enabled ? 1 : 0.45
    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    onActivated: index => {
        if (root.choices[index] !== root.choice)
            root.chosen(root.choices[index]);
    }

    Accessible.name: root.label
    Accessible.role: Accessible.ComboBox

    // On release, for the release of return also closes an open list.
    Keys.onReleased: event => {
        if (root.popup.visible || (event.key !== Qt.Key_Return && event.key !== Qt.Key_Enter))
            return;
        root.popup.open();
        event.accepted = true;
    }

    background: ContinuousCard {
        radius: 8
        fill: root.down ? Theme.surfaceStrong : root.hovered ? Theme.hover : Theme.surface
        stroke: Theme.stroke
    }
    contentItem: ThemedText {
        size: 13
        line: 20
        text: root.displayText
        font.weight: Font.Medium
        elide: Text.ElideRight
    }
    indicator: SymbolImage {
        x: root.mirrored ? 8 : root.width - width - 8
        y: (root.height - height) / 2
        width: 13
        height: 13
        name: "chevron.up.chevron.down"
        weight: Font.Medium
        color: Theme.textPrimary
    }
    delegate: T.ItemDelegate {
        id: item

        required property int index
        required property string modelData

        width: ListView.view.width
        implicitHeight: Theme.scaled(20) + 8
        hoverEnabled: true
        highlighted: root.highlightedIndex === index
        text: modelData

        background: ContinuousCard {
            radius: 6
            fill: item.down ? Theme.stroke : item.highlighted ? Theme.surfaceStrong : "transparent"
        }
        SymbolImage {
            anchors { left: parent.left; leftMargin: 8; verticalCenter: parent.verticalCenter }
            width: 13
            height: 13
            visible: item.modelData === root.choice
            name: "checkmark"
            weight: Font.DemiBold
            color: Theme.accent
        }
        ThemedText {
            id: words

            anchors { left: parent.left; leftMargin: 28; rightMargin: 8; right: parent.right; verticalCenter: parent.verticalCenter }
            size: 13
            line: 20
            text: item.modelData
            elide: Text.ElideRight
        }
    }
    popup: T.Popup {
        y: root.height + 4
        width: root.width
        implicitHeight: contentItem.implicitHeight + 8
        padding: 4
        margins: 8
        closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent

        background: ContinuousCard {
            radius: 10
            fill: Theme.surface
            stroke: Theme.stroke
        }
        contentItem: ListView {
            implicitHeight: contentHeight
            model: root.popup.visible ? root.delegateModel : null // qmllint disable
            currentIndex: root.highlightedIndex
            clip: true
        }
    }

    FocusRing {
        visible: root.visualFocus
        controlRadius: 8
    }
}
