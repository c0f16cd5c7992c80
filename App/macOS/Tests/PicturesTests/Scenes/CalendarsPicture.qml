import Tinkra

SampleWindow {
    section: MainWindowView.Section.Calendars
    model: SampleModel { }
}
