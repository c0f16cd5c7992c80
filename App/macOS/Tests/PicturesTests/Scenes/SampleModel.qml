import QtQml.Models
import QtQuick
import Tinkra

/// A morning with six alarms, seen at 9:17:52.
ViewModel {
    id: root

    readonly property double now: 1795165072
    property int alarmCount: 6

    readonly property var alarms: [
        { title: "Design review with Anouk", time: "9:30\u202fAM", weekdayTime: "Fri 9:30\u202fAM", fireDate: 728, colorHex: "#3478F6" },
        { title: "Stand-up", time: "10:15\u202fAM", weekdayTime: "Fri 10:15\u202fAM", fireDate: 3428, colorHex: "#3478F6" },
        { title: "Lunch with Kasimir", time: "12:30\u202fPM", weekdayTime: "Fri 12:30\u202fPM", fireDate: 11528, colorHex: "#E8883A" },
        { title: "Interview: platform engineer", time: "3:00\u202fPM", weekdayTime: "Fri 3:00\u202fPM", fireDate: 20528, colorHex: "#8E5BD0" },
        { title: "Week in review", time: "4:30\u202fPM", weekdayTime: "Fri 4:30\u202fPM", fireDate: 25928, colorHex: "#3478F6" },
        { title: "Quarterly planning: roadmap, hiring and the budget for the northern region", time: "9:05\u202fAM", weekdayTime: "Mon 9:05\u202fAM", fireDate: 258428, colorHex: "#4FA35A" },
    ]

    firstName: "Kraira"
    nextAlarmText: alarmCount > 0 ? "09:30" : "—"
    calendarsWatched: 4
    calendarPermission: ViewModel.Granted
    notificationPermission: ViewModel.Granted
    alarmStyle: "notificationAndWindow"
    soundName: "default"
    upcoming: ListModel { id: alarmList }
    accounts: ListModel { id: accountList }

    function calendar(title: string, colorHex: string, selected: bool): var {
        return { calendarID: title, title: title, colorHex: colorHex, selected: selected };
    }

    Component.onCompleted: {
        accountList.append({ account: "Cloud", countText: "1 of 3", anySelected: true, allSelected: false, calendars: [
            calendar("Home", "#E8883A", false), calendar("Family", "#D9538C", true), calendar("Birthdays", "#8A8F98", false)] });
        accountList.append({ account: "kraira@northwind.example", countText: "3 of 4", anySelected: true, allSelected: false, calendars: [
            calendar("Work", "#3478F6", true), calendar("Interviews", "#8E5BD0", true), calendar("Team holidays", "#E0B83E", false),
            calendar("Planning", "#4FA35A", true)] });
        accountList.append({ account: "On this Mac", countText: "0 of 2", anySelected: false, allSelected: false, calendars: [
            calendar("Allotment", "#2BA39B", false), calendar("Choir", "", false)] });
        for (const alarm of alarms.slice(0, alarmCount))
            alarmList.append(Object.assign({}, alarm, { fireDate: now + alarm.fireDate }));
    }
}
