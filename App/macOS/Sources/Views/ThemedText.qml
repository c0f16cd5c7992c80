import QtQuick
import Tinkra

/// A text on lines of a fixed height, so that rows add up; its letters stand in the middle of their line.
Text {
    id: root

    required property real size // of the letters, in points as drawn
    required property real line // from one line to the next, likewise

    readonly property FontMetrics metrics: FontMetrics { font: root.font }
    readonly property real leading: root.lineHeight - root.metrics.height

    lineHeight: Theme.scaled(root.line)
    lineHeightMode: Text.FixedHeight
    topPadding: Math.round(leading / 2)
    // A line that is lower than its letters would make the last one higher.
    bottomPadding: Math.min(0, leading) - topPadding
    horizontalAlignment: Text.AlignLeft
    color: Theme.textPrimary
    textFormat: Text.PlainText
    font.pixelSize: Theme.scaled(root.size)
}
