Banner {
    title: ""
    meetingStart: "9:30\u202fAM"
}
