import Tinkra

SampleWindow {
    section: MainWindowView.Section.Home
    model: SampleModel { alarmCount: 0; calendarsWatched: 0 }
}
