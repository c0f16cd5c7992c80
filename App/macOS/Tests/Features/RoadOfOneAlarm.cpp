#include "Story.h"

namespace Tinkra {
namespace {

TEST(RoadOfOneAlarm, FromTheCalendarToTheBannerAndAway)
{
    Story s;
    s.givenAMeeting("Stand-up", s.in(minutes(20))).onCalendar("work").monitored();
    s.thenTheStatusReads("Next: Stand-up");
    s.thenANotificationIsArmedFor(s.in(minutes(20)));
    s.thenTheMachineIsWokenAt(s.in(minutes(19)));
    s.thenTheMachineIsKeptAwake(false);

    s.whenTimePasses(minutes(12));
    s.thenTheMachineIsKeptAwake();
    s.thenNothingRings();

    s.whenTimePasses(minutes(8));
    s.thenTheBannerShows("Stand-up");

    s.whenDismissed();
    s.whenTimePasses(minutes(10));
    s.thenNothingRings();
    s.thenTheMachineIsKeptAwake(false);
    s.thenTheStatusReads("Watching 1 calendar(s)");
}

TEST(RoadOfOneAlarm, AMeetingThatMovesRingsAtItsNewTimeAlone)
{
    Story s;
    s.givenAMeeting("Stand-up", s.in(minutes(10))).monitored();

    s.whenTheMeetingMovesTo(s.in(minutes(30)));
    s.thenANotificationIsArmedFor(s.in(minutes(30)));
    s.whenTimePasses(minutes(29));
    s.thenNothingRings();

    s.whenTimePasses(minutes(1));
    s.thenTheBannerShows("Stand-up");
}

TEST(RoadOfOneAlarm, AMeetingOfACalendarThatNobodyPickedRingsNever)
{
    Story s;
    s.givenAMeeting("Stand-up", s.in(minutes(10))).monitored();
    s.givenAMeeting("Dentist", s.in(minutes(5))).onCalendar("home");

    s.whenTimePasses(minutes(9));
    s.thenNothingRings();
    s.whenTimePasses(minutes(1));
    s.thenTheBannerShows("Stand-up");
}

}
}
