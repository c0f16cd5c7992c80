#include "Story.h"

namespace Tinkra {
namespace {

TEST(WakingFromSleep, RingsWhatFellDueInTheLastFiveMinutes)
{
    Story s;
    s.givenAMeeting("Early", s.in(minutes(30))).monitored();
    s.givenAMeeting("Stand-up", s.in(minutes(58)));

    s.whenTheMachineSleepsFor(hours(1));
    s.thenTheBannerShows("Stand-up");
    s.whenDismissed();
    s.whenTimePasses(minutes(10));
    s.thenNothingRings();
}

TEST(WakingFromSleep, InTimeRingsAtTheFireTime)
{
    Story s;
    s.givenAMeeting("Stand-up", s.in(hours(1))).monitored();
    s.thenTheMachineIsWokenAt(s.in(minutes(59)));

    s.whenTheMachineSleepsFor(minutes(59));
    s.thenNothingRings();
    s.thenTheMachineIsKeptAwake();
    s.whenTimePasses(minutes(1));
    s.thenTheBannerShows("Stand-up");
}

}
}
