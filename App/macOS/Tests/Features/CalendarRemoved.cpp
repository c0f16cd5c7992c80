#include "Story.h"

namespace Tinkra {
namespace {

TEST(CalendarRemoved, ItsAlarmsGoAndTheSelectionStays)
{
    Story s;
    s.givenAMeeting("Stand-up", s.in(minutes(10))).onCalendar("work").monitored();
    s.givenAMeeting("Dentist", s.in(minutes(20))).onCalendar("home").monitored();

    s.whenTheCalendarIsRemoved("work");
    s.thenTheStatusReads("Next: Dentist");
    s.whenTimePasses(minutes(19));
    s.thenNothingRings();
    s.whenTimePasses(minutes(1));
    s.thenTheBannerShows("Dentist");

    s.whenTimePasses(minutes(5));
    s.thenTheStatusReads("Watching 2 calendar(s)");
}

}
}
