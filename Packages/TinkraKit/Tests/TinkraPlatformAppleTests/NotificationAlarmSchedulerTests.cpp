#include "TinkraPlatformApple/NotificationAlarmScheduler.h"

#include "TinkraTestSupport/Builders.h"
#include "TinkraTestSupport/FakeLocalCalendar.h"
#include "TinkraTestSupport/FakeNotificationCenter.h"
#include "TinkraTestSupport/TestLoop.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace Tinkra {
namespace {

using System::DateComponents;
using System::FakeLocalCalendar;
using System::FakeNotificationCenter;
using System::NotificationRequest;
using testing::ElementsAre;
using testing::IsEmpty;

class NotificationAlarmSchedulerTest : public testing::Test {
protected:
    NotificationRequest requestFor(ScheduledAlarm alarm)
    {
        loop.run(scheduler.schedule(std::move(alarm)));
        return center->pending().at(0);
    }

    TestLoop loop;
    std::shared_ptr<FakeNotificationCenter> center = std::make_shared<FakeNotificationCenter>();
    std::shared_ptr<FakeLocalCalendar> calendar = std::make_shared<FakeLocalCalendar>();
    NotificationAlarmScheduler scheduler{center, calendar};
};

TEST_F(NotificationAlarmSchedulerTest, UsesTheAlarmsIdentifierUnchanged)
{
    auto alarm = alarmFor(standup());
    alarm.id = "../../x'; --%n#1";

    EXPECT_EQ(requestFor(alarm).identifier, "../../x'; --%n#1");
}

TEST_F(NotificationAlarmSchedulerTest, SaysThatTheMeetingIsStarting)
{
    const auto content = requestFor(alarmFor(standup(noon, "standup", "Stand-up <b>&amp;"))).content;

    EXPECT_EQ(content.title, "Meeting starting");
    EXPECT_EQ(content.body, "Stand-up <b>&amp;");
    EXPECT_EQ(content.sound, System::NotificationSound::Default);
    EXPECT_EQ(content.interruptionLevel, System::InterruptionLevel::TimeSensitive);
}

TEST_F(NotificationAlarmSchedulerTest, CarriesExactlyFourValuesOfUserInfoWithTheirTypes)
{
    ScheduledAlarm alarm{"id", "meeting", "Stand-up", instantAt(1000.75), instantAt(1300.5), "work"};

    const System::UserInfo expected{
        {"meetingID", "meeting"}, {"title", "Stand-up"}, {"fireDate", 1000.75}, {"meetingStart", 1300.5}};
    EXPECT_EQ(requestFor(alarm).content.userInfo, expected);
}

TEST_F(NotificationAlarmSchedulerTest, FiresOnceAtTheStartOfTheSecondOfLocalTimeThatHoldsTheFireDate)
{
    calendar->setOffset(std::chrono::hours(1));
    auto alarm = alarmFor(standup());
    alarm.fireDate =
        std::chrono::sys_days(std::chrono::year(2024) / 1 / 1) + Seconds(8 * 3600 + 59 * 60 + 30.7);

    const auto trigger = requestFor(alarm).trigger;

    EXPECT_EQ(trigger.components, (DateComponents{2024, 1, 1, 9, 59, 30}));
    EXPECT_FALSE(trigger.repeats);
}

TEST_F(NotificationAlarmSchedulerTest, TakesTheZoneThatIsInForceWhenItSchedules)
{
    loop.run(scheduler.schedule(alarmFor(standup(noon, "before"))));
    calendar->setOffset(std::chrono::hours(2));
    loop.run(scheduler.schedule(alarmFor(standup(noon, "after"))));

    EXPECT_EQ(center->pending().at(0).trigger.components.hour, 12);
    EXPECT_EQ(center->pending().at(1).trigger.components.hour, 14);
}

TEST_F(NotificationAlarmSchedulerTest, SchedulingTheSameAlarmTwiceLeavesOnePendingRequest)
{
    auto alarm = alarmFor(standup());
    loop.run(scheduler.schedule(alarm));
    alarm.title = "Renamed";
    loop.run(scheduler.schedule(alarm));

    ASSERT_EQ(center->pending().size(), 1U);
    EXPECT_EQ(center->pending().front().content.body, "Renamed");
}

TEST_F(NotificationAlarmSchedulerTest, DoesNotAskWhetherTheFireDateHasPassed)
{
    loop.run(scheduler.schedule(alarmFor(standup(instantAt(1)))));

    EXPECT_EQ(center->pending().size(), 1U);
}

TEST_F(NotificationAlarmSchedulerTest, PassesAnErrorOfAddingOnUnchanged)
{
    struct NoSpace : std::runtime_error {
        using std::runtime_error::runtime_error;
    };
    center->failAddingWith(std::make_exception_ptr(NoSpace("no space is left")));

    EXPECT_THROW(loop.run(scheduler.schedule(alarmFor(standup()))), NoSpace);
}

TEST_F(NotificationAlarmSchedulerTest, ListsEveryPendingRequestInTheCentersOrderWhoeverAddedIt)
{
    center->setPending({NotificationRequest{.identifier = "z"}, NotificationRequest{.identifier = "not ours"},
        NotificationRequest{.identifier = "a"}});

    EXPECT_THAT(loop.run(scheduler.scheduledAlarmIDs()), ElementsAre("z", "not ours", "a"));
}

TEST_F(NotificationAlarmSchedulerTest, CancelsAllIdentifiersInOneCall)
{
    center->setPending({NotificationRequest{.identifier = "a"}, NotificationRequest{.identifier = "b"},
        NotificationRequest{.identifier = "c"}});

    loop.run(scheduler.cancel({"a", "c"}));

    EXPECT_THAT(center->log().calls(), ElementsAre("removePending [a, c]"));
    EXPECT_EQ(center->pending().size(), 1U);
}

TEST_F(NotificationAlarmSchedulerTest, CancellingWhatIsNotPendingDoesNothing)
{
    EXPECT_NO_THROW(loop.run(scheduler.cancel({"unknown"})));
    EXPECT_THAT(center->pending(), IsEmpty());
}

TEST_F(NotificationAlarmSchedulerTest, AsksForAlertsSoundsAndBadges)
{
    EXPECT_TRUE(loop.run(scheduler.requestAuthorization()));
    EXPECT_THAT(center->log().calls(), ElementsAre("requestAuthorization 7"));
}

TEST_F(NotificationAlarmSchedulerTest, ARefusalIsFalse)
{
    center->answerRequestsWith(false);

    EXPECT_FALSE(loop.run(scheduler.requestAuthorization()));
}

TEST_F(NotificationAlarmSchedulerTest, AnAuthorizationRequestThatFailsIsFalse)
{
    center->failRequestsWith(std::make_exception_ptr(std::runtime_error("no server")));

    EXPECT_FALSE(loop.run(scheduler.requestAuthorization()));
}

}
}
