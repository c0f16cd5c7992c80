import QtQuick
import Tinkra

// Delegates see the ids around them, which the linter of Qt 6.4 cannot be told.
// qmllint disable unqualified

/// The rail of the main window: the product's name, its pages, and a footer of quick controls.
FocusScope {
    id: root

    required property var sections // title, symbol
    required property int current
    required property bool masterEnabled

    signal chosen(index: int)
    signal websiteRequested()
    signal testRequested()
    signal masterToggled(on: bool)

    implicitWidth: Theme.scaled(120)

    Column {
        x: 8
        y: 20
        width: root.width - 16
        spacing: 20

        Item {
            width: parent.width
            height: Math.max(brand.height, 40)

            MurkelView {
                id: mascot

                anchors { left: parent.left; leftMargin: 2; verticalCenter: parent.verticalCenter }
                size: 32
            }
            ThemedText {
                id: brand

                anchors { left: mascot.right; leftMargin: 8; right: parent.right; verticalCenter: parent.verticalCenter }
                size: 13
                line: 16
                text: "Calendar Murkel"
                wrapMode: Text.WordWrap
                font.weight: Font.DemiBold
            }
        }
        Column {
            width: parent.width
            spacing: 4

            Accessible.role: Accessible.PageTabList
            Accessible.name: "Pages"

            Repeater {
                id: items

                model: root.sections

                SidebarItem {
                    id: item

                    required property int index
                    required property var modelData

                    objectName: "section." + index
                    width: parent?.width ?? 0
                    focus: index === 0
                    title: modelData.title
                    systemImage: modelData.symbol
                    selected: index === root.current
                    onClicked: root.chosen(index)
                    Keys.onUpPressed: items.itemAt(index - 1)?.forceActiveFocus(Qt.TabFocusReason)
                    Keys.onDownPressed: items.itemAt(index + 1)?.forceActiveFocus(Qt.TabFocusReason)
                }
            }
        }
    }
    Column {
        anchors { left: parent.left; leftMargin: 8; bottom: parent.bottom; bottomMargin: 16 }
        width: root.width - 16
        spacing: 12

        LinkButton {
            objectName: "website"
            width: parent.width
            text: "Calendar Murkel on the web"
            systemImage: "safari"
            onClicked: root.websiteRequested()
        }
        GhostButton {
            objectName: "test"
            width: parent.width
            title: "Test it"
            systemImage: "bell.fill"
            onAction: root.testRequested()
        }
        Column {
            width: parent.width
            spacing: 8

            ThemedText {
                id: enabledLabel

                width: parent.width
                size: 11
                line: 16
                text: "Alarms enabled"
                color: Theme.textSecondary
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                font.weight: Font.Medium
                Accessible.ignored: true
            }
            ToggleSwitch {
                objectName: "master"
                anchors.horizontalCenter: parent.horizontalCenter
                text: enabledLabel.text
                on: root.masterEnabled
                onToggled: on => root.masterToggled(on)
            }
        }
    }
    Hairline {
        anchors.right: parent.right
        height: parent.height
    }
}
