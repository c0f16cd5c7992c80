import QtQuick
import Tinkra

/// What the panel of a ringing alarm shows. Made afresh for every alarm; both flags become true once, when it appears.
Item {
    id: root

    required property string title
    required property string meetingStart // hour and minute, as the user writes them
    property bool popped: false
    property bool bob: false
    property bool castsShadow: true // a screen without a compositor cannot show one
    property bool reducedMotion: false // the mascot stands still, for those whom motion disturbs

    signal snooze()
    signal dismiss()

    /// Where the card is; around it the view is transparent.
    readonly property rect card: Qt.rect(margin, margin, width - 2 * margin, height - 2 * margin)
    readonly property real margin: 10
    readonly property real cardRadius: 22

    property bool answered: false

    /// Only the first answer counts: the banner takes a moment to leave, and people double-click.
    function answer(action: var) {
        if (root.answered)
            return;
        root.answered = true;
        action();
    }

    implicitWidth: 580
    implicitHeight: 104

    LayoutMirroring.enabled: Application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true
    Accessible.role: Accessible.AlertMessage
    Accessible.name: caption.text
    Accessible.description: root.title + ", " + root.meetingStart

    Component.onCompleted: {
        root.popped = true;
        root.bob = true;
    }

    ContinuousCard {
        anchors.fill: parent
        margin: root.margin
        radius: root.cardRadius
        fill: Theme.surface
        stroke: Theme.stroke
        shadowOpacity: root.castsShadow ? 0.18 : 0
        shadowRadius: 28
        shadowOffset: 14
        shadowFades: true
    }
    Item {
        id: row

        anchors {
            fill: parent
            leftMargin: root.margin + 18
            rightMargin: root.margin + 18
            topMargin: root.margin + 14
            bottomMargin: root.margin + 14
        }

        Item {
            id: mascot

            objectName: "mascot.place" // where he stands, whatever his motions do
            anchors { left: parent.left; verticalCenter: parent.verticalCenter }
            width: 56
            height: 56

            BobbingMurkel {
                popped: root.popped || root.reducedMotion
                bob: root.bob && !root.reducedMotion
                sway: root.reducedMotion ? 0.5 : 0 // upright
            }
        }
        Column {
            anchors {
                left: mascot.right
                leftMargin: 12
                right: buttons.left
                rightMargin: 12 // the least that stays between the texts and the buttons
                verticalCenter: parent.verticalCenter
            }
            spacing: 2

            BannerText {
                id: caption

                objectName: "caption"
                height: 14
                text: "Meeting starting"
                color: Theme.textSecondary
                font.pixelSize: 11
            }
            BannerText {
                objectName: "title"
                height: 24
                text: root.title
                color: Theme.textPrimary
                font { pixelSize: 18; family: Theme.serif }
            }
            BannerText {
                objectName: "meetingStart"
                height: 16
                text: root.meetingStart
                color: Theme.accent
                font.pixelSize: 12
            }
        }
        Row {
            id: buttons

            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            spacing: 8

            GhostButton {
                objectName: "snooze"
                anchors.verticalCenter: parent.verticalCenter
                title: "Snooze"
                systemImage: "zzz"
                onAction: root.answer(root.snooze)
            }
            AccentButton {
                objectName: "dismiss"
                anchors.verticalCenter: parent.verticalCenter
                title: "Dismiss"
                systemImage: "checkmark"
                onAction: root.answer(root.dismiss)
            }
        }
    }

    component BannerText: Text {
        anchors { left: parent?.left; right: parent?.right }
        horizontalAlignment: Text.AlignLeft
        verticalAlignment: Text.AlignVCenter
        maximumLineCount: 1
        elide: Text.ElideRight
        textFormat: Text.PlainText
        font.weight: Font.DemiBold
    }
}
