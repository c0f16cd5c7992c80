#pragma once

#include "AppWorld.h"

#include <gtest/gtest.h>

namespace Tinkra {

/// The application, told as a user would tell of it. It is noon; nothing is monitored until the story says
/// so, and the application starts with the first thing that happens.
class Story {
public:
    static Instant in(Seconds duration) { return noon + duration; }

    Story& givenAMeeting(Text title, Instant start);
    Story& onCalendar(Text calendar); ///< the last meeting is; "work" otherwise
    Story& monitored(); ///< the last meeting's calendar is
    Story& givenNoAccess();
    Story& givenTheApplicationRuns();

    void whenTimePasses(Seconds duration);
    void whenTheMachineSleepsFor(Seconds duration);
    void whenSnoozed();
    void whenDismissed();
    void whenPaused();
    void whenResumed();
    void whenTheUserGrantsAccess();
    void whenTheUserPicks(Text calendar);
    void whenTheMeetingMovesTo(Instant start);
    void whenTheCalendarIsRemoved(Text calendar);
    void whenTheLeadTimeBecomes(Seconds leadTime);

    /// It rings, for the first time or again, since this was last asked.
    void thenTheBannerShows(const Text& title);
    void thenNothingRings();
    void thenTheStatusReads(const std::string& status);
    /// As a notification that rings without the application.
    void thenANotificationIsArmedFor(Instant fireDate);
    void thenNoNotificationIsArmed();
    void thenTheMachineIsWokenAt(Instant wake);
    void thenTheMachineIsNotWoken();
    void thenTheMachineIsKeptAwake(bool isKept = true);

private:
    void run();
    void setMeetings();

    AppWorld m_world;
    TinkraConfiguration m_configuration;
    std::vector<Meeting> m_meetings;
    std::size_t m_ringsSeen = 0;
};

}
