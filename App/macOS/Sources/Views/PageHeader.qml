import QtQuick
import Tinkra

/// The title of a page, and perhaps what the page is for.
Column {
    id: root

    required property string title
    property string explanation

    spacing: 4

    ThemedText {
        objectName: "title"
        width: root.width
        size: 24
        line: 28
        text: root.title
        wrapMode: Text.Wrap
        font { weight: Font.Bold; letterSpacing: -0.24 }

        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    ThemedText {
        objectName: "explanation"
        width: root.width
        visible: root.explanation !== ""
        size: 13
        line: 20
        text: root.explanation
        color: Theme.textSecondary
        wrapMode: Text.Wrap
    }
}
