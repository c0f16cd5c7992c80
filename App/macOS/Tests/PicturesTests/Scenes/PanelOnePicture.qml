Panel {
    model: SampleModel { alarmCount: 1 }
}
