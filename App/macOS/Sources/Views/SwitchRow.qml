import QtQuick
import Tinkra

/// A setting that is on or off.
SettingRow {
    id: root

    required property bool on

    signal toggled(on: bool)

    ToggleSwitch {
        objectName: "switch"
        text: root.title
        on: root.on
        onToggled: on => root.toggled(on)
        Accessible.description: root.explanation
    }
}
