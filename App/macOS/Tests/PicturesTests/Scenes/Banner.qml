import QtQuick
import Tinkra

/// The banner on a white page, at rest: its mascot popped, in the middle of his sway.
Rectangle {
    id: root

    required property string title
    required property string meetingStart

    width: 600
    height: 124
    color: "white"

    AlarmBannerView {
        anchors.centerIn: parent
        title: root.title
        meetingStart: root.meetingStart
        reducedMotion: true
    }
}
