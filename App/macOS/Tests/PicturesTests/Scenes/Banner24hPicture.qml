Banner {
    title: "Wochenplanung Vertrieb"
    meetingStart: "14:05"
}
