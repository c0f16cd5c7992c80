import QtQuick
import Tinkra

/// A small caption above a group.
Text {
    lineHeight: 16
    lineHeightMode: Text.FixedHeight
    color: Theme.textTertiary
    textFormat: Text.PlainText
    font { pixelSize: 11; weight: Font.DemiBold; letterSpacing: 1.2 }
}
