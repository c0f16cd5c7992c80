import Tinkra

SampleWindow {
    section: MainWindowView.Section.Settings
    model: SampleModel { }
}
