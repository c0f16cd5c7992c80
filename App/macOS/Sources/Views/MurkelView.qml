import QtQuick
import Tinkra

/// The mascot.
MurkelPainting {
    required property real size

    implicitWidth: size
    implicitHeight: size
    hat: Theme.accent
    beard: Qt.rgba(0.965, 0.945, 0.91, 1)
    line: Qt.rgba(0.16, 0.13, 0.12, 1)
    showCheeks: true
}
