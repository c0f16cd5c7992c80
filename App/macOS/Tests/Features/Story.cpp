#include "Story.h"

#include <algorithm>

namespace Tinkra {

Story& Story::givenAMeeting(Text title, Instant start)
{
    const Text id{"meeting " + std::to_string(m_meetings.size())};
    m_meetings.push_back(standup(start, id, std::move(title)));
    return *this;
}

Story& Story::onCalendar(Text calendar)
{
    m_meetings.back().calendarID = std::move(calendar);
    return *this;
}

Story& Story::monitored()
{
    m_configuration.monitoring.selectedCalendarIDs.insert(m_meetings.back().calendarID);
    return *this;
}

Story& Story::givenNoAccess()
{
    m_world.eventStore->setAuthorization(System::CalendarAuthorization::NotDetermined);
    m_world.center->setAuthorization(System::NotificationAuthorization::Denied);
    return *this;
}

Story& Story::givenTheApplicationRuns()
{
    run();
    return *this;
}

void Story::run()
{
    if (m_world.model)
        return;
    setMeetings();
    m_world.launch(m_configuration);
}

void Story::setMeetings()
{
    m_world.setMeetings(m_meetings);
}

void Story::whenTimePasses(Seconds duration)
{
    run();
    m_world.pass(duration);
}

void Story::whenTheMachineSleepsFor(Seconds duration)
{
    run();
    m_world.clock->suspendMachine(duration);
    m_world.wakeMachine();
    m_world.pass(Seconds{0});
}

void Story::whenSnoozed()
{
    m_world.pressSnooze();
}

void Story::whenDismissed()
{
    m_world.pressDismiss();
    EXPECT_FALSE(m_world.isRinging());
}

void Story::whenPaused()
{
    run();
    m_world.model->setMasterEnabled(false);
    m_world.loop.drain();
}

void Story::whenResumed()
{
    m_world.model->setMasterEnabled(true);
    m_world.loop.drain();
}

void Story::whenTheUserGrantsAccess()
{
    run();
    m_world.eventStore->setAuthorization(System::CalendarAuthorization::FullAccess);
    m_world.center->setAuthorization(System::NotificationAuthorization::Authorized);
    m_world.loop.run(m_world.model->requestPermissions());
}

void Story::whenTheUserPicks(Text calendar)
{
    run();
    m_world.model->toggleCalendar(calendar);
    m_world.loop.drain();
}

void Story::whenTheMeetingMovesTo(Instant start)
{
    run();
    m_meetings.back().start = start;
    m_meetings.back().end = start + minutes(15);
    setMeetings();
    m_world.calendarsChange();
}

void Story::whenTheCalendarIsRemoved(Text calendar)
{
    run();
    std::erase_if(m_meetings, [&](const Meeting& meeting) { return meeting.calendarID == calendar; });
    setMeetings();
    m_world.calendarsChange();
}

void Story::whenTheLeadTimeBecomes(Seconds leadTime)
{
    run();
    m_world.model->setLeadTime(leadTime.count());
    m_world.loop.drain();
}

void Story::thenTheBannerShows(const Text& title)
{
    ASSERT_EQ(m_world.rings(), ++m_ringsSeen);
    EXPECT_EQ(m_world.lastRing().title, title);
    EXPECT_TRUE(m_world.isRinging());
}

void Story::thenNothingRings()
{
    run();
    EXPECT_EQ(m_world.rings(), m_ringsSeen);
}

void Story::thenTheStatusReads(const std::string& status)
{
    run();
    EXPECT_EQ(m_world.model->statusMessage(), status);
}

void Story::thenANotificationIsArmedFor(Instant fireDate)
{
    run();
    const auto ids = m_world.scheduler->armedIDs();
    EXPECT_TRUE(std::ranges::any_of(ids, [&](const Text& id) {
        const auto alarm = m_world.scheduler->armedAlarm(id);
        return alarm && alarm->fireDate == fireDate;
    }));
}

void Story::thenNoNotificationIsArmed()
{
    run();
    EXPECT_TRUE(m_world.scheduler->armedIDs().empty());
}

void Story::thenTheMachineIsWokenAt(Instant wake)
{
    run();
    EXPECT_EQ(m_world.wakeFile(), std::to_string(static_cast<std::int64_t>(secondsSince1970(wake))));
}

void Story::thenTheMachineIsNotWoken()
{
    run();
    EXPECT_EQ(m_world.wakeFile(), "0");
}

void Story::thenTheMachineIsKeptAwake(bool isKept)
{
    run();
    EXPECT_EQ(m_world.isKeptAwake(), isKept);
}

}
