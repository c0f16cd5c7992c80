import QtQuick
import Tinkra

/// The banner's mascot on his way: small, past his size, and at both ends of his sway.
Rectangle {
    id: root

    width: 440
    height: 100
    color: "white"

    component Pose: Item {
        id: pose

        required property int milliseconds // since he popped
        required property real sway

        width: 72
        height: 72

        BobbingMurkel {
            id: mascot

            x: 8
            y: 8
            popped: false
            bob: false
            sway: pose.sway

            Component.onCompleted: {
                popped = true;
                pop.pause();
                pop.currentTime = pose.milliseconds;
            }
        }
    }

    Row {
        anchors.centerIn: parent
        spacing: 12

        Pose { milliseconds: 40; sway: 0 }
        Pose { milliseconds: 120; sway: 0 }
        Pose { milliseconds: 270; sway: 0.25 }
        Pose { milliseconds: 2000; sway: 0 }
        Pose { milliseconds: 2000; sway: 1 }
    }
}
