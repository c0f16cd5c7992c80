pragma Singleton
import QtQuick
import Tinkra

/// The palette, opaque and in sRGB, and the typefaces.
QtObject {
    readonly property color bg: Qt.rgba(0.957, 0.949, 0.929, 1)
    readonly property color surface: Qt.rgba(1, 1, 1, 1)
    readonly property color surfaceStrong: Qt.rgba(0.929, 0.918, 0.898, 1)
    readonly property color stroke: Qt.rgba(0.886, 0.871, 0.843, 1)
    readonly property color textPrimary: Qt.rgba(0.105, 0.098, 0.09, 1)
    readonly property color textSecondary: Qt.rgba(0.42, 0.404, 0.376, 1)
    readonly property color textTertiary: Qt.rgba(0.604, 0.584, 0.549, 1)
    readonly property color accent: Qt.rgba(0.788, 0.357, 0.294, 1)
    readonly property color accent2: Qt.rgba(0.878, 0.478, 0.373, 1)
    readonly property color positive: Qt.rgba(0.243, 0.706, 0.451, 1)
    readonly property color warning: Qt.rgba(0.851, 0.553, 0.18, 1)

    /// Under the pointer.
    readonly property color hover: Qt.rgba(0.965, 0.957, 0.949, 1)

    /// Where the product itself speaks; everything else is in the desktop's own font, which is the default.
    readonly property string serif: "serif"

    /// In milliseconds; colours change, nothing moves.
    readonly property int colorChange: 120

    /// A height or width that belongs to texts, as large as the user wants texts to be.
    function scaled(points: real): real {
        return Math.round(points * SystemFont.textScale);
    }
}
