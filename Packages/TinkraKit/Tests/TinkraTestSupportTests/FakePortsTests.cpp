#include "TinkraTestSupport/Builders.h"
#include "TinkraTestSupport/FakeAlarmScheduler.h"
#include "TinkraTestSupport/FakeCalendarProvider.h"
#include "TinkraTestSupport/FakeSettingsStore.h"
#include "TinkraTestSupport/Printing.h"
#include "TinkraTestSupport/TestLoop.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace Tinkra {
namespace {

using Texts = std::vector<Text>;

const auto trouble = std::make_exception_ptr(std::runtime_error("trouble"));

TEST(FakeAlarmScheduler, ReportsWhatItArmedUntilItIsCancelled)
{
    FakeAlarmScheduler scheduler;
    const auto alarm = alarmFor(standup());

    run(scheduler.schedule(alarm));
    EXPECT_EQ(run(scheduler.scheduledAlarmIDs()), Texts{alarm.id});
    EXPECT_EQ(scheduler.armedAlarm(alarm.id), alarm);

    run(scheduler.cancel({alarm.id}));
    EXPECT_TRUE(scheduler.armedIDs().empty());
}

TEST(FakeAlarmScheduler, ReplacesRatherThanDoublesAnAlarm)
{
    FakeAlarmScheduler scheduler;
    auto alarm = alarmFor(standup());
    run(scheduler.schedule(alarm));

    alarm.title = "Renamed";
    run(scheduler.schedule(alarm));

    EXPECT_EQ(scheduler.armedIDs(), Texts{alarm.id});
    EXPECT_EQ(scheduler.armedAlarm(alarm.id)->title, Text("Renamed"));
}

TEST(FakeAlarmScheduler, IgnoresTheCancellingOfWhatItDoesNotKnow)
{
    FakeAlarmScheduler scheduler({"old#1"});

    run(scheduler.cancel({"other#2"}));
    run(scheduler.cancel({}));

    EXPECT_EQ(scheduler.armedIDs(), Texts{"old#1"});
    EXPECT_EQ(scheduler.log().calls(), (std::vector<std::string>{"cancel [other#2]", "cancel []"}));
}

TEST(FakeAlarmScheduler, FailsWhenToldTo)
{
    FakeAlarmScheduler scheduler;
    const auto first = alarmFor(standup(noon, "first"));
    const auto second = alarmFor(standup(noon, "second"));
    scheduler.failFrom(2, trouble);
    run(scheduler.schedule(first));
    EXPECT_THROW(run(scheduler.schedule(second)), std::runtime_error);
    EXPECT_EQ(scheduler.armedIDs(), Texts{first.id});

    scheduler.failOn(first.id, trouble);
    EXPECT_THROW(run(scheduler.schedule(first)), std::runtime_error);
    run(scheduler.schedule(second));

    scheduler.failNever();
    run(scheduler.schedule(first));
    EXPECT_EQ(scheduler.armedIDs(), (Texts{first.id, second.id}));
}

TEST(FakeCalendarProvider, GivesTheMeetingsOfTheCalendarsAskedForThatOverlapTheRange)
{
    auto elsewhere = standup(noon, "elsewhere");
    elsewhere.calendarID = "private";
    FakeCalendarProvider provider(
        {standup(noon - Seconds{900}, "over"), standup(noon - Seconds{899}, "running"),
            standup(noon, "starting"), standup(noon + Seconds{60}, "beyond"), elsewhere});

    const auto found = run(provider.meetings({"work"}, noon, noon + Seconds{60}));

    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].id, Text("running"));
    EXPECT_EQ(found[1].id, Text("starting"));
    EXPECT_EQ(provider.queries().at(0).to, noon + Seconds{60});
}

TEST(FakeCalendarProvider, ThrowsWhenToldTo)
{
    FakeCalendarProvider provider;
    provider.failWith(trouble);

    EXPECT_THROW(run(provider.meetings({}, noon, noon)), std::runtime_error);
    EXPECT_THROW(run(provider.availableCalendars()), std::runtime_error);
    EXPECT_TRUE(run(provider.requestAccess()));

    provider.failWith(nullptr);
    EXPECT_TRUE(run(provider.meetings({}, noon, noon)).empty());
}

TEST(FakeSettingsStore, GivesBackWhatWasSavedLast)
{
    FakeSettingsStore store;
    EXPECT_EQ(store.load(), TinkraConfiguration{});

    store.save(monitoring({"work"}));

    EXPECT_EQ(store.load(), monitoring({"work"}));
    EXPECT_EQ(store.saved().size(), 1U);
}

}
}
