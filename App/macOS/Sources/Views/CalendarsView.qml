import QtQuick
import Tinkra

// Delegates see the ids around them, which the linter of Qt 6.4 cannot be told.
// qmllint disable unqualified

/// The page where calendars are chosen.
Column {
    id: root

    required property var accounts // roles account, countText, anySelected, allSelected, calendars
    required property bool accessGranted

    signal calendarToggled(calendarID: string)
    signal accountToggled(account: string, on: bool)

    PageHeader {
        width: root.width
        title: "Calendars"
        explanation: "Choose which calendars should arm alarms. Toggle whole accounts or individual calendars."
    }
    Item {
        width: 1
        height: list.count > 0 ? 12 : 20 // headers bring 8 of their own
    }
    MessageCard {
        objectName: "empty"
        width: root.width
        visible: list.count === 0
        systemImage: "calendar"
        message: root.accessGranted
            ? "No calendars found on this Mac."
            : "Grant calendar access to see your calendars."
    }
    Column {
        width: root.width
        spacing: 12

        Repeater {
            id: list

            model: root.accounts

            AccountSection {
                objectName: "account." + account
                width: root.width
                onCalendarToggled: calendarID => root.calendarToggled(calendarID)
                onAccountToggled: on => root.accountToggled(account, on)
            }
        }
    }
}
