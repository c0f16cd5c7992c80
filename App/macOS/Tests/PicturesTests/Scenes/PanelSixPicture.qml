Panel {
    model: SampleModel { }
}
