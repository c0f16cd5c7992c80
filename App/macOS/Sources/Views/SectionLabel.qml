import QtQuick
import Tinkra

/// A small caption above a group.
ThemedText {
    size: 11
    line: 16
    color: Theme.textTertiary
    font { weight: Font.DemiBold; letterSpacing: 1.2 }
}
