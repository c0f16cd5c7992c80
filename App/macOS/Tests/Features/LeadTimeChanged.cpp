#include "Story.h"

namespace Tinkra {
namespace {

TEST(LeadTimeChanged, WhileArmedMovesTheAlarmAndLeavesNoneBehind)
{
    Story s;
    s.givenAMeeting("Stand-up", s.in(minutes(30))).monitored();
    s.thenANotificationIsArmedFor(s.in(minutes(30)));

    s.whenTheLeadTimeBecomes(minutes(10));
    s.thenANotificationIsArmedFor(s.in(minutes(20)));
    s.thenTheMachineIsWokenAt(s.in(minutes(19)));
    s.whenTimePasses(minutes(20));
    s.thenTheBannerShows("Stand-up");

    s.whenTimePasses(minutes(30));
    s.thenNothingRings();
}

TEST(LeadTimeChanged, PastTheNewFireTimeRingsNothingMore)
{
    Story s;
    s.givenAMeeting("Stand-up", s.in(minutes(8))).monitored();

    s.whenTheLeadTimeBecomes(minutes(10));
    s.thenTheStatusReads("Watching 1 calendar(s)");
    s.whenTimePasses(minutes(10));
    s.thenNothingRings();
}

}
}
