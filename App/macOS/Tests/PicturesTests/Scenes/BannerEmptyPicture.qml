Banner {
    title: ""
    meetingStart: "9:30 AM"
}
