import QtQuick
import Tinkra

/// Between the rows of a card, or between parts of a window.
Rectangle {
    implicitWidth: 1
    implicitHeight: 1
    color: Theme.stroke
}
