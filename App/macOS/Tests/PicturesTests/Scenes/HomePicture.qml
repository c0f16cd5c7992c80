import Tinkra

SampleWindow {
    section: MainWindowView.Section.Home
    model: SampleModel { }
}
