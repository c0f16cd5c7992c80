import QtQuick
import Tinkra

/// Every component in every look that does not need a pointer.
Rectangle {
    id: root

    width: 640
    height: 330
    color: Theme.bg

    // Set later: the linter takes `onDark: true` for the handler of a signal.
    component OnDark: GhostButton {
        Component.onCompleted: onDark = true
    }

    Column {
        x: 28
        y: 28
        spacing: 20

        Row {
            spacing: 16

            AccentButton { title: "Dismiss"; systemImage: "checkmark" }
            AccentButton { title: "Open" }
            AccentButton { title: "Dismiss"; systemImage: "checkmark"; enabled: false }
            Item {
                width: focused.width
                height: focused.height

                AccentButton { id: focused; title: "Focused"; systemImage: "checkmark" }
            }
        }
        Row {
            spacing: 16

            GhostButton { title: "Snooze"; systemImage: "zzz" }
            GhostButton { title: "Test" }
            GhostButton { title: "Snooze"; systemImage: "zzz"; enabled: false }
        }
        Rectangle {
            width: 360
            height: 56
            radius: 12
            color: "#2a2928"

            Row {
                anchors.centerIn: parent
                spacing: 16

                OnDark { title: "Snooze"; systemImage: "zzz" }
                OnDark { title: "Test" }
                OnDark { title: "Snooze"; systemImage: "zzz"; enabled: false }
            }
        }
        Row {
            spacing: 20

            GlassCard {
                padding: 16
                fill: Theme.surface

                Column {
                    spacing: 8

                    SectionLabel { text: "Next alarm" }
                    Text {
                        text: "Design review with Ida"
                        color: Theme.textPrimary
                        font { pixelSize: 16; weight: Font.Bold }
                    }
                    Row {
                        spacing: 6

                        SymbolImage { width: 16; height: 16; name: "calendar"; color: Theme.textSecondary }
                        Text { text: "Fri 9:30\u202fAM"; color: Theme.textSecondary; font.pixelSize: 12 }
                    }
                }
            }
            GlassCard {
                padding: 20
                fill: Theme.surfaceStrong

                Grid {
                    columns: 4
                    spacing: 12

                    Repeater {
                        model: ["#3478F6", "#C95B4B", "34C759", "", "#FFF", "#FFFFFF", "#000000", "#FFCC00"]

                        ColorDot {
                            required property string modelData
                            required property int index

                            hex: modelData
                            size: index < 4 ? 10 : 12
                        }
                    }
                }
            }
        }
    }

    Connections {
        target: root.Window.window

        function onActiveChanged() {
            focused.forceActiveFocus(Qt.TabFocusReason);
        }
    }
}
