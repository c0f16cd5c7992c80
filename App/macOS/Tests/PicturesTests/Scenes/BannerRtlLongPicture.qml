Banner {
    title: "סקירת עיצוב עם הצוות ועם כל מי שעוד רוצה להצטרף לפגישה"
    meetingStart: "9:30\u202fAM"
}
