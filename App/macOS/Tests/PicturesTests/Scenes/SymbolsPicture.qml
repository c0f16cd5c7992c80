import QtQuick
import Tinkra

/// Every symbol, large and as it stands beside text of the three weights.
Rectangle {
    id: root

    readonly property list<string> names: [
        "bell", "bell.fill", "calendar", "checkmark", "checkmark.circle.fill", "chevron.up.chevron.down", "circle",
        "exclamationmark.triangle.fill", "house", "info.circle", "moon.zzz.fill", "power",
        "rectangle.expand.vertical", "safari", "slider.horizontal.3", "zzz"
    ]

    width: 880
    height: 384
    color: Theme.bg

    component Symbol: SymbolImage {
        y: 20 - height / 2
        height: width
        color: Theme.textPrimary
    }

    Grid {
        anchors.centerIn: parent
        columns: 4
        spacing: 12

        Repeater {
            model: root.names

            Rectangle {
                id: cell

                required property string modelData

                width: 204
                height: 80
                radius: 12
                color: Theme.surface

                Row {
                    x: 16
                    y: 10
                    spacing: 16

                    Symbol { name: cell.modelData; width: 40; weight: Font.Normal }
                    Symbol { name: cell.modelData; width: 20; weight: Font.Normal }
                    Symbol { name: cell.modelData; width: 16; weight: Font.Medium }
                    Symbol { name: cell.modelData; width: 16; weight: Font.DemiBold }
                }
                Text {
                    x: 16
                    y: 56
                    text: cell.modelData
                    color: Theme.textSecondary
                    font.pixelSize: 11
                }
            }
        }
    }
}
