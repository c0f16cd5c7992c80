import QtQuick
import Tinkra

/// The panel as it drops from a menu bar.
MenuBarPanel {
    id: root

    required property SampleModel model

    width: implicitWidth
    height: implicitHeight
    upcoming: root.model.upcoming
    masterEnabled: root.model.masterEnabled
    anyCalendarSelected: root.model.calendarsWatched > 0
    accessMissing: root.model.calendarPermission !== ViewModel.Granted
    now: root.model.now
    cornerRadius: 12
}
