import Tinkra

Panel {
    model: SampleModel { alarmCount: 0; calendarsWatched: 0; calendarPermission: ViewModel.Unknown }
}
