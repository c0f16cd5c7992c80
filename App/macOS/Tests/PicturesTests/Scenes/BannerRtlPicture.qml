Banner {
    title: "סקירת עיצוב עם אידה"
    meetingStart: "9:30\u202fAM"
}
