#include "Story.h"

namespace Tinkra {
namespace {

TEST(PermissionGranted, AfterItWasMissingTheFirstPickedCalendarRings)
{
    Story s;
    s.givenAMeeting("Stand-up", s.in(minutes(10))).onCalendar("work");
    s.givenNoAccess().givenTheApplicationRuns();
    s.thenTheStatusReads("No calendars selected");

    s.whenTheUserGrantsAccess();
    s.whenTheUserPicks("work");
    s.thenTheStatusReads("Next: Stand-up");

    s.whenTimePasses(minutes(10));
    s.thenTheBannerShows("Stand-up");
}

}
}
