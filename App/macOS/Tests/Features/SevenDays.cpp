#include "AppWorld.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>

namespace Tinkra {
namespace {

/// A meeting every hour, and each hour something else happens around it. What rings in the application is
/// counted meeting by meeting.
class SevenDays : public testing::Test, protected AppWorld {
protected:
    static constexpr int hourCount = 7 * 24;

    static Instant startOf(int hour) { return noon + hours(hour); }
    static Text titleOf(int hour) { return Text{"Meeting " + std::to_string(hour)}; }

    void SetUp() override
    {
        for (int hour = 1; hour <= hourCount; ++hour)
            m_meetings.push_back(standup(startOf(hour), titleOf(hour), titleOf(hour)));
        setMeetings(m_meetings);
        auto configuration = monitoring();
        configuration.settings.snoozeInterval = minutes(1);
        launch(configuration);
    }

    /// Ten minutes before the meeting until ten minutes after it.
    void live(int hour)
    {
        switch (hour % 7) {
        case 0:
            return punctual(hour);
        case 1:
            return snoozed(hour);
        case 2:
            return movedAtTheLastMoment(hour);
        case 3:
            return sleptOverForTwoMinutes(hour);
        case 4:
            return sleptOverForTooLong(hour);
        case 5:
            return pausedBefore(hour);
        default:
            return sleptOverWithoutANotice(hour);
        }
    }

    /// The hour's meeting, and no other, has rung so often since this was last asked.
    void expectRings(int hour, std::size_t count)
    {
        ASSERT_EQ(rings() - m_seen, count) << "hour " << hour;
        for (; m_seen < rings(); ++m_seen)
            ASSERT_EQ(desktop.banners.at(m_seen).payload.title, titleOf(hour));
        if (count > 0 && isRinging())
            pressDismiss();
    }

    static std::ptrdiff_t openDescriptors()
    {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    }

private:
    void punctual(int hour)
    {
        pass(minutes(10));
        expectRings(hour, 1);
        pass(minutes(10));
    }

    void snoozed(int hour)
    {
        pass(minutes(10));
        ASSERT_EQ(rings() - m_seen, 1U);
        pressSnooze();
        pass(minutes(1));
        expectRings(hour, 2);
        pass(minutes(9));
    }

    void movedAtTheLastMoment(int hour)
    {
        pass(minutes(10) - seconds(1));
        m_meetings.at(static_cast<std::size_t>(hour) - 1).start += seconds(90);
        setMeetings(m_meetings);
        calendarsChange();
        pass(seconds(90));
        expectRings(hour, 0);
        pass(seconds(1));
        expectRings(hour, 1);
        pass(minutes(10) - seconds(90));
    }

    void sleptOverForTwoMinutes(int hour)
    {
        clock->suspendMachine(minutes(12));
        wakeMachine();
        pass(Seconds{0});
        expectRings(hour, 1);
        pass(minutes(8));
    }

    void sleptOverForTooLong(int hour)
    {
        clock->suspendMachine(minutes(16));
        wakeMachine();
        pass(minutes(4));
        expectRings(hour, 0);
    }

    void pausedBefore(int hour)
    {
        model->setMasterEnabled(false);
        pass(minutes(5));
        model->setMasterEnabled(true);
        pass(minutes(5));
        sync();
        expectRings(hour, 1);
        pass(minutes(10));
    }

    void sleptOverWithoutANotice(int hour)
    {
        clock->suspendMachine(minutes(11));
        pass(seconds(2));
        wakeMachine(); // late
        expectRings(hour, 1);
        pass(minutes(9) - seconds(2));
    }

    std::vector<Meeting> m_meetings;
    std::size_t m_seen = 0;
};

TEST_F(SevenDays, NoAlarmIsMissedOrDoubledAndNothingGrows)
{
    const auto descriptors = openDescriptors();
    for (int hour = 1; hour <= hourCount; ++hour) {
        pass(hour == 1 ? minutes(50) : minutes(40));
        expectRings(hour, 0);
        live(hour);
        expectRings(hour, 0);
        ASSERT_FALSE(HasFatalFailure());

        // The alarms of one day ahead, those that had their turn since the last refresh, and the two loops.
        ASSERT_LE(model->alarmTaskIDs().size(), 26U);
        ASSERT_LE(clock->sleeperCount(), 26U + 2U);
        ASSERT_LE(model->upcoming().size(), 25U);
        ASSERT_LE(power->held.size(), 1U);
    }

    pass(hours(1));
    EXPECT_EQ(model->statusMessage(), "Watching 1 calendar(s)");
    EXPECT_TRUE(model->alarmTaskIDs().empty());
    EXPECT_EQ(clock->sleeperCount(), 2U);
    EXPECT_EQ(desktop.sounds->playing, 0);
    EXPECT_FALSE(isKeptAwake());
    EXPECT_EQ(wakeFile(), "0");
    EXPECT_EQ(eventStore->observerCount(), 1U);
    EXPECT_EQ(openDescriptors(), descriptors);
}

}
}
