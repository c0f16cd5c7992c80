Banner {
    title: "Design review with Ida"
    meetingStart: "9:30\u202fAM"
}
