#include "TinkraCore/MonitoringService.h"

#include "TinkraTestSupport/Builders.h"
#include "TinkraTestSupport/FakeAlarmScheduler.h"
#include "TinkraTestSupport/FakeCalendarProvider.h"
#include "TinkraTestSupport/Printing.h"
#include "TinkraTestSupport/TestLoop.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

namespace Tinkra {
namespace {

using Calls = std::vector<std::string>;
using Texts = std::vector<Text>;

constexpr Seconds day{86'400};
const auto trouble = std::make_exception_ptr(std::runtime_error("trouble"));

const auto early = alarmFor(standup(noon + Seconds{60}, "early"));
const auto middle = alarmFor(standup(noon + Seconds{120}, "middle"));
const auto late = alarmFor(standup(noon + Seconds{180}, "late"));

struct World {
    explicit World(TinkraConfiguration configuration = monitoring(), Texts armed = {})
        : scheduler(std::make_shared<FakeAlarmScheduler>(std::move(armed), log))
        , service(provider, scheduler, std::move(configuration), 30 * day, loop.executor())
    {
        provider->setMeetings({standup(late.fireDate, "late"), standup(early.fireDate, "early"),
            standup(middle.fireDate, "middle")});
    }

    ReconcileResult sync(Instant now = noon) { return loop.run(service.sync(now)); }

    TestLoop loop;
    std::shared_ptr<CallLog> log = std::make_shared<CallLog>();
    std::shared_ptr<FakeCalendarProvider> provider =
        std::make_shared<FakeCalendarProvider>(std::vector<Meeting>{}, log);
    std::shared_ptr<FakeAlarmScheduler> scheduler;
    MonitoringService service;
};

TEST(MonitoringService, DoesNothingWhenItIsMade)
{
    World world;
    world.loop.drain();

    EXPECT_TRUE(world.log->calls().empty());
}

TEST(MonitoringService, CallsThePortsInAFixedOrder)
{
    World world(monitoring(), {"old#1", middle.id});

    world.sync();

    EXPECT_EQ(world.log->calls(),
        (Calls{"meetings", "scheduledAlarmIDs", "cancel [old#1]", "schedule " + early.id.utf8(),
            "schedule " + late.id.utf8()}));
}

TEST(MonitoringService, ArmsOneAlarmAtATime)
{
    World world;
    world.log->hold();
    const auto pass = world.loop.start(world.service.sync(noon));

    for (const auto& call :
        {std::string("meetings"), std::string("scheduledAlarmIDs"), std::string("cancel []"),
            "schedule " + early.id.utf8(), "schedule " + middle.id.utf8(), "schedule " + late.id.utf8()}) {
        EXPECT_FALSE(pass.isDone());
        EXPECT_EQ(world.log->waiting(), Calls{call});
        world.log->letGo();
        world.loop.drain();
    }

    EXPECT_TRUE(pass.isDone());
}

TEST(MonitoringService, ReportsWhatItAddedAndRemoved)
{
    World world(monitoring(), {"old#1", middle.id, "old#2"});

    EXPECT_EQ(world.sync(), (ReconcileResult{.toAdd = {early, late}, .toRemove = {"old#1", "old#2"}}));
    EXPECT_EQ(world.scheduler->armedIDs(), (Texts{middle.id, early.id, late.id}));
}

TEST(MonitoringService, AsksForTheSelectedCalendarsFromNowToTheHorizon)
{
    World world(monitoring({"work", "home"}));

    world.sync(noon + Seconds{0.5});

    const auto queries = world.provider->queries();
    ASSERT_EQ(queries.size(), 1U);
    EXPECT_EQ(queries[0].in, (CalendarIDs{"work", "home"}));
    EXPECT_EQ(queries[0].from, noon + Seconds{0.5});
    EXPECT_EQ(queries[0].to, noon + Seconds{0.5} + 30 * day);
}

TEST(MonitoringService, CancelsEverythingWhenTheMasterSwitchIsOff)
{
    auto configuration = monitoring();
    configuration.masterEnabled = false;
    World world(configuration, {"b#2", "not ours", early.id});

    EXPECT_EQ(world.sync(), (ReconcileResult{.toAdd = {}, .toRemove = {"b#2", "not ours", early.id}}));

    EXPECT_EQ(
        world.log->calls(), (Calls{"scheduledAlarmIDs", "cancel [b#2, not ours, " + early.id.utf8() + "]"}));
    EXPECT_TRUE(world.scheduler->armedIDs().empty());
}

TEST(MonitoringService, CancelsEverythingWhenNoCalendarIsSelected)
{
    World world(monitoring({}), {"b#2", "a#1"});

    EXPECT_EQ(world.sync(), (ReconcileResult{.toAdd = {}, .toRemove = {"b#2", "a#1"}}));

    EXPECT_EQ(world.log->calls(), (Calls{"scheduledAlarmIDs", "cancel [b#2, a#1]"}));
}

TEST(MonitoringService, CallsCancelEvenWhenThereIsNothingToClear)
{
    World world(monitoring({}));

    EXPECT_TRUE(world.sync().isNoOp());

    EXPECT_EQ(world.log->calls(), (Calls{"scheduledAlarmIDs", "cancel []"}));
}

TEST(MonitoringService, CancelsAnEmptyListAndArmsNothingWhenNothingChanged)
{
    World world;
    world.sync();
    world.log->clear();

    EXPECT_TRUE(world.sync().isNoOp());

    EXPECT_EQ(world.log->calls(), (Calls{"meetings", "scheduledAlarmIDs", "cancel []"}));
}

TEST(MonitoringService, LeavesARenamedMeetingAsItIsArmed)
{
    World world;
    world.sync();
    world.provider->setMeetings({standup(early.fireDate, "early", "Renamed"),
        standup(middle.fireDate, "middle"), standup(late.fireDate, "late")});

    EXPECT_TRUE(world.sync().isNoOp());
    EXPECT_EQ(world.scheduler->armedAlarm(early.id)->title, Text("Stand-up"));
}

TEST(MonitoringService, ArmsAMeetingOnceItComesWithinTheHorizon)
{
    World world;
    world.provider->setMeetings({standup(noon + 31 * day)});

    EXPECT_TRUE(world.sync().isNoOp());
    EXPECT_EQ(world.sync(noon + 1.5 * day).toAdd.size(), 1U);
}

TEST(MonitoringService, RemovesRequestsThatAreNotOurs)
{
    World world(monitoring(), {"test notification"});

    EXPECT_EQ(world.sync().toRemove, Texts{"test notification"});
}

TEST(MonitoringService, NeverAsksForPermissionsOrCalendars)
{
    World world(monitoring(), {"old#1"});
    world.sync();
    world.loop.run(world.service.updateConfiguration(monitoring({})));
    world.sync();

    for (const auto* call : {"requestAccess", "availableCalendars", "requestAuthorization"})
        EXPECT_EQ(world.log->count(call), 0U) << call;
}

TEST(MonitoringService, GivesItsConfigurationBackAndReplacesItWhole)
{
    World world;
    EXPECT_EQ(world.loop.run(world.service.configuration()), monitoring());

    auto other = monitoring({"home"});
    other.settings.leadTime = Seconds{600};
    world.loop.run(world.service.updateConfiguration(other));

    EXPECT_EQ(world.loop.run(world.service.configuration()), other);
    EXPECT_TRUE(world.log->calls().empty()) << "an update starts no pass";
}

// --- Failures ---

TEST(MonitoringService, EndsThePassWithoutTouchingAnAlarmWhenTheProviderThrows)
{
    World world(monitoring(), {"old#1"});
    world.provider->failWith(trouble);

    EXPECT_THROW(world.sync(), std::runtime_error);

    EXPECT_EQ(world.log->calls(), Calls{"meetings"});
    EXPECT_EQ(world.scheduler->armedIDs(), Texts{"old#1"});
    EXPECT_EQ(world.loop.run(world.service.configuration()), monitoring());
}

TEST(MonitoringService, EndsThePassAtTheAlarmThatCannotBeArmed)
{
    World world(monitoring(), {"old#1"});
    world.scheduler->failOn(middle.id, trouble);

    EXPECT_THROW(world.sync(), std::runtime_error);

    EXPECT_EQ(world.log->calls(),
        (Calls{"meetings", "scheduledAlarmIDs", "cancel [old#1]", "schedule " + early.id.utf8(),
            "schedule " + middle.id.utf8()}));
    EXPECT_EQ(world.scheduler->armedIDs(), Texts{early.id});
}

TEST(MonitoringService, AddsWhatIsMissingInThePassAfterAFailure)
{
    World world;
    world.scheduler->failOn(middle.id, trouble);
    EXPECT_THROW(world.sync(), std::runtime_error);

    world.scheduler->failNever();

    EXPECT_EQ(world.sync().toAdd, (std::vector<ScheduledAlarm>{middle, late}));
}

class Refusal : public std::exception { };

TEST(MonitoringService, PassesTheErrorOfAPortOnUnchanged)
{
    World world;

    world.provider->failWith(std::make_exception_ptr(Refusal()));
    EXPECT_THROW(world.sync(), Refusal);

    world.provider->failWith(nullptr);
    world.scheduler->failFrom(1, std::make_exception_ptr(5));
    EXPECT_THROW(world.sync(), int);
}

TEST(MonitoringService, RetriesAfterEachOfFivePassesThatFailAtTheFirstOfTenAlarms)
{
    World world;
    std::vector<Meeting> meetings;
    for (int i = 0; i < 10; ++i)
        meetings.push_back(standup(noon + Seconds{60.0 * (i + 1)}, std::to_string(i)));
    const auto armedBefore = alarmFor(meetings.back());
    world.provider->setMeetings({meetings.back()});
    world.sync();
    world.provider->setMeetings(meetings);
    world.scheduler->failOn(alarmFor(meetings.front()).id, trouble);

    for (int pass = 0; pass < 5; ++pass) {
        world.log->clear();
        EXPECT_THROW(world.sync(), std::runtime_error);
        EXPECT_EQ(world.log->calls().back(), "schedule " + alarmFor(meetings.front()).id.utf8());
        EXPECT_EQ(world.scheduler->armedIDs(), Texts{armedBefore.id});
    }
    world.scheduler->failNever();
    EXPECT_EQ(world.sync().toAdd.size(), 9U);
    EXPECT_EQ(world.scheduler->armedIDs().size(), 10U);
}

// --- Overlapping operations ---

TEST(MonitoringService, AppliesALeadTimeThatArrivesDuringTheFetch)
{
    World world;
    world.log->hold();
    const auto pass = world.loop.start(world.service.sync(noon));
    ASSERT_EQ(world.log->waiting(), Calls{"meetings"});

    auto changed = monitoring();
    changed.settings.leadTime = Seconds{30};
    EXPECT_TRUE(world.loop.start(world.service.updateConfiguration(changed)).isDone());
    world.log->letAllGo();
    world.loop.drain();

    const auto added = pass.result().toAdd;
    ASSERT_EQ(added.size(), 3U);
    EXPECT_EQ(added[0].fireDate, early.fireDate - Seconds{30});
}

TEST(MonitoringService, AppliesASelectionThatArrivesDuringTheFetchToWhatTheOldOneFetched)
{
    World world(monitoring({"work", "home"}));
    auto atHome = standup(noon + Seconds{60}, "home");
    atHome.calendarID = "home";
    world.provider->setMeetings({standup(early.fireDate, "early"), atHome});
    world.log->hold();
    const auto pass = world.loop.start(world.service.sync(noon));

    world.loop.start(world.service.updateConfiguration(monitoring({"home", "third"})));
    world.log->letAllGo();
    world.loop.drain();

    EXPECT_EQ(pass.result().toAdd, std::vector<ScheduledAlarm>{alarmFor(atHome)});
    EXPECT_EQ(world.provider->queries()[0].in, (CalendarIDs{"work", "home"}));
}

TEST(MonitoringService, GoesOnWithAnActivePassThoughTheMasterSwitchIsTurnedOffDuringTheFetch)
{
    World world;
    world.log->hold();
    const auto pass = world.loop.start(world.service.sync(noon));

    auto off = monitoring();
    off.masterEnabled = false;
    world.loop.start(world.service.updateConfiguration(off));
    world.log->letAllGo();
    world.loop.drain();

    EXPECT_EQ(pass.result().toAdd.size(), 3U);
    EXPECT_EQ(world.sync().toRemove.size(), 3U) << "the pass that follows the update clears";
}

TEST(MonitoringService, DoesNotReadTheSettingsAgainOnceTheAlarmsAreComputed)
{
    World world;
    world.log->hold();
    const auto pass = world.loop.start(world.service.sync(noon));
    world.log->letGo();
    world.loop.drain();
    ASSERT_EQ(world.log->waiting(), Calls{"scheduledAlarmIDs"});

    auto changed = monitoring();
    changed.settings.leadTime = Seconds{30};
    world.loop.start(world.service.updateConfiguration(changed));
    world.log->letAllGo();
    world.loop.drain();

    EXPECT_EQ(pass.result().toAdd, (std::vector<ScheduledAlarm>{early, middle, late}));
}

TEST(MonitoringService, AnswersForItsConfigurationWhileAPassWaits)
{
    World world;
    world.log->hold();
    const auto pass = world.loop.start(world.service.sync(noon));

    EXPECT_EQ(world.loop.run(world.service.configuration()), monitoring());

    EXPECT_FALSE(pass.isDone());
    world.log->letAllGo();
    world.loop.drain();
}

TEST(MonitoringService, LetsTwoOverlappingPassesArmTheSameAlarmsOnce)
{
    World world(monitoring(), {"old#1"});
    world.log->hold();
    const auto first = world.loop.start(world.service.sync(noon));
    const auto second = world.loop.start(world.service.sync(noon));

    for (int call = 0; call < 4;
         ++call) { // both fetch, and both read what is armed, before either changes it
        world.log->letGo();
        world.loop.drain();
    }
    EXPECT_EQ(world.log->waiting(), (Calls{"cancel [old#1]", "cancel [old#1]"}));
    world.log->letAllGo();
    world.loop.drain();

    EXPECT_EQ(first.result(), second.result());
    EXPECT_EQ(world.scheduler->armedIDs(), (Texts{early.id, middle.id, late.id}));
    EXPECT_TRUE(world.sync().isNoOp());
}

TEST(MonitoringService, LetsALaterPassEndBeforeAnEarlierOne)
{
    World world;
    world.log->hold();
    const auto first = world.loop.start(world.service.sync(noon));
    world.log->letGo();
    world.loop.drain(); // the first pass waits for the identifiers that are armed
    const auto second = world.loop.start(world.service.sync(noon));

    while (!second.isDone()) {
        world.log->letGo(1);
        world.loop.drain();
    }

    EXPECT_FALSE(first.isDone());
    world.log->letAllGo();
    world.loop.drain();
    EXPECT_TRUE(first.result().isNoOp()) << "it read the identifiers after the second pass had armed them";
}

TEST(MonitoringService, RunsAPassToItsEndThoughAnOverlappingOneFails)
{
    World world;
    world.log->hold();
    const auto failing = world.loop.start(world.service.sync(noon));
    const auto other = world.loop.start(world.service.sync(noon));
    world.provider->failWith(trouble);
    world.log->letGo();
    world.loop.drain();
    world.provider->failWith(nullptr);

    world.log->letAllGo();
    world.loop.drain();

    EXPECT_THROW(failing.result(), std::runtime_error);
    EXPECT_EQ(other.result().toAdd.size(), 3U);
}

}
}
