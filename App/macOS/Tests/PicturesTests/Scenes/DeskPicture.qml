import QtQuick
import Tinkra

/// The banner over a desktop at dusk.
Rectangle {
    width: 720
    height: 220
    gradient: Gradient {
        GradientStop { position: 0; color: "#3b5a80" }
        GradientStop { position: 0.55; color: "#8b8fb5" }
        GradientStop { position: 1; color: "#dba79a" }
    }

    AlarmBannerView {
        anchors.centerIn: parent
        title: "Design review with Ida"
        meetingStart: "9:30\u202fAM"
        reducedMotion: true
    }
}
