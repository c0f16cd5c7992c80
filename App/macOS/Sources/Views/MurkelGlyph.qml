import QtQuick
import Tinkra

/// The mascot in one colour, for where he is small.
MurkelGlyphPainting {
    required property real size

    implicitWidth: size
    implicitHeight: size
    color: Theme.textPrimary
}
