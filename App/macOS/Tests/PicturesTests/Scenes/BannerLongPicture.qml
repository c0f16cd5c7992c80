Banner {
    title: "Quarterly planning: roadmap, staffing and everything left over"
    meetingStart: "2:05\u202fPM"
}
