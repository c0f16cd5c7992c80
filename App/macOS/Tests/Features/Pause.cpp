#include "Story.h"

namespace Tinkra {
namespace {

TEST(Pausing, SilencesEverythingAndResumingBringsItBack)
{
    Story s;
    s.givenAMeeting("Stand-up", s.in(minutes(10))).monitored();
    s.givenAMeeting("Review", s.in(hours(2)));

    s.whenPaused();
    s.thenTheStatusReads("Paused");
    s.thenNoNotificationIsArmed();
    s.thenTheMachineIsNotWoken();
    s.whenTimePasses(minutes(30));
    s.thenNothingRings();

    s.whenResumed();
    s.thenTheStatusReads("Next: Review");
    s.thenTheMachineIsWokenAt(s.in(hours(2) - minutes(1)));
    s.whenTimePasses(hours(2) - minutes(30));
    s.thenTheBannerShows("Review");
}

TEST(Pausing, AMomentBeforeTheAlarmSilencesIt)
{
    Story s;
    s.givenAMeeting("Stand-up", s.in(minutes(10))).monitored();
    s.whenTimePasses(minutes(10) - Seconds{0.001});

    s.whenPaused();
    s.whenTimePasses(minutes(1));
    s.thenNothingRings();
}

}
}
