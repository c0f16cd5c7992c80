Panel {
    model: SampleModel { alarmCount: 0 }
}
