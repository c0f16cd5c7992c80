import QtQuick
import Tinkra

/// The mascot of the banner: he pops out of his hat's tip and then sways on his feet.
MurkelView {
    id: root

    required property bool popped
    required property bool bob

    /// Between where he stands before (0) and at the far end of his sway (1).
    property real sway: 0

    readonly property SpringMotion pop: SpringMotion {
        response: 0.45
        dampingFraction: 0.55
        to: root.popped ? 1 : 0.2
    }

    size: 56
    hat: Theme.accent
    beard: Qt.rgba(0.965, 0.945, 0.91, 1)
    line: Qt.rgba(0.16, 0.13, 0.12, 1)
    showCheeks: true
    moving: true

    // The first of these comes first; the later ones move what it has made.
    transform: [
        Scale {
            origin { x: root.width / 2; y: 0 }
            xScale: root.pop.value
            yScale: root.pop.value
        },
        Translate {
            y: 1 - 4 * root.sway // from 1 down to 3 up
        },
        Rotation {
            origin { x: root.width / 2; y: root.height }
            angle: 3 - 6 * root.sway
        }
    ]

    readonly property SequentialAnimation swaying: SequentialAnimation {
        running: root.bob && root.visible
        loops: Animation.Infinite

        EaseInOut { target: root; property: "sway"; from: 0; to: 1 }
        EaseInOut { target: root; property: "sway"; from: 1; to: 0 }
    }

    component EaseInOut: NumberAnimation {
        duration: 900
        easing { type: Easing.BezierSpline; bezierCurve: [0.42, 0, 0.58, 1, 1, 1] }
    }
}
