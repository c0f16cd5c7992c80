#include "Story.h"

namespace Tinkra {
namespace {

TEST(Snoozing, RingsAtTheStartAndAgainAfterASnooze)
{
    Story s;
    s.givenAMeeting("Stand-up", s.in(minutes(10))).onCalendar("work").monitored();
    s.whenTimePasses(minutes(10));
    s.thenTheBannerShows("Stand-up");

    s.whenSnoozed();
    s.thenTheStatusReads("Snoozed 5 min");
    s.whenTimePasses(minutes(5));
    s.thenTheBannerShows("Stand-up");
}

TEST(Snoozing, IsForgottenWhenTheCalendarChanges)
{
    Story s;
    s.givenAMeeting("Stand-up", s.in(minutes(10))).monitored();
    s.whenTimePasses(minutes(10));
    s.thenTheBannerShows("Stand-up");

    s.whenSnoozed();
    s.whenTheMeetingMovesTo(s.in(hours(2)));
    s.whenTimePasses(minutes(10));
    s.thenNothingRings();
    s.thenTheStatusReads("Next: Stand-up");
}

}
}
