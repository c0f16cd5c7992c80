import QtQuick
import Tinkra

/// The mascot and his glyph at every size they are used in, on paper, white, dark and dusk.
Column {
    id: root

    component Figure: MurkelView {
        y: 200 - height
    }
    component Glyph: MurkelGlyph {
        y: 200 - height
    }
    component Sheet: Item {
        id: sheet

        required property color ground
        required property color ink

        width: 800
        height: 232

        Rectangle {
            anchors.fill: parent
            color: sheet.ground
        }
        Row {
            x: 20
            y: 16
            spacing: 24

            Figure { size: 200 }
            Figure { size: 56 }
            Figure { size: 44 }
            Figure { size: 22 }
            Figure { size: 18 }
            Glyph { size: 120; color: sheet.ink }
            Glyph { size: 44; color: sheet.ink }
            Glyph { size: 22; color: sheet.ink }
            Glyph { size: 18; color: sheet.ink }
        }
    }

    Sheet { ground: "white"; ink: Theme.textPrimary }
    Sheet { ground: Theme.bg; ink: Theme.textPrimary }
    Sheet { ground: "#26241f"; ink: Theme.bg }
    Sheet { ground: "#8b8fb5"; ink: "white" }
}
