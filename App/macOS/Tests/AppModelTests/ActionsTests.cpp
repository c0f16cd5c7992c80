#include "AppWorld.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tinkra {
namespace {

using testing::IsEmpty;
using Permission = AppModel::Permission;

class Actions : public testing::Test, protected AppWorld {
protected:
    void SetUp() override
    {
        launch();
        calls->clear();
    }
};

TEST_F(Actions, SelectingSeveralCalendarsSavesOnceAndSyncsOnce)
{
    model->selectCalendars({"home", "work", "choir"}, true);
    EXPECT_EQ(model->configuration(), monitoring({"home", "work", "choir"}));
    loop.drain();
    EXPECT_EQ(store->saved().size(), 1U);
    EXPECT_EQ(calls->count("scheduledAlarmIDs"), 1U);

    model->selectCalendars({"home", "choir", "unknown"}, false);
    EXPECT_EQ(model->configuration(), monitoring({"work"}));
    EXPECT_EQ(store->saved().size(), 2U);
    loop.drain();
}

TEST_F(Actions, EachSetterChangesItsSettingSavesAtOnceAndSyncsOnce)
{
    const auto before = model->configuration();
    auto expected = before;
    std::size_t changes = 0;
    const auto expectChanged = [&] {
        EXPECT_EQ(model->configuration(), expected);
        EXPECT_EQ(store->saved().size(), ++changes) << "saved before the setter returns";
        EXPECT_EQ(store->saved().back(), expected);
        EXPECT_EQ(calls->count("scheduledAlarmIDs"), changes - 1) << "synced after it";
        loop.drain();
        EXPECT_EQ(calls->count("scheduledAlarmIDs"), changes);
    };

    model->setLeadTime(600);
    expected.settings.leadTime = Seconds{600};
    expectChanged();
    model->setStyle(AlarmStyle::notificationOnly);
    expected.settings.style = AlarmStyle::notificationOnly;
    expectChanged();
    model->setSound("Ping");
    expected.settings.soundName = "Ping";
    expectChanged();
    model->setIgnoreAllDay(false);
    expected.settings.ignoreAllDay = false;
    expectChanged();
    model->setRaiseVolume(false);
    expected.settings.raiseVolume = false;
    expectChanged();
    model->setKeepAwake(false);
    expected.settings.keepAwake = false;
    expectChanged();
    model->toggleCalendar("home");
    expected.monitoring.selectedCalendarIDs.insert("home");
    expectChanged();
    model->setMasterEnabled(false);
    expected.masterEnabled = false;
    expectChanged();
}

TEST_F(Actions, TogglingACalendarTwiceRestoresTheSelectionAndPersistsTwice)
{
    const auto before = model->configuration();

    model->toggleCalendar("home");
    model->toggleCalendar("home");
    loop.drain();

    EXPECT_EQ(model->configuration(), before);
    EXPECT_EQ(store->saved().size(), 2U);
}

TEST_F(Actions, ASettingThatIsSetToItsValueIsStillSavedAndSynced)
{
    model->setKeepAwake(true);
    loop.drain();

    EXPECT_EQ(store->saved().size(), 1U);
    EXPECT_EQ(calls->count("scheduledAlarmIDs"), 1U);
}

TEST_F(Actions, TheMasterSwitchOffReadsPausedAfterTheSync)
{
    model->setMasterEnabled(false);
    loop.drain();

    EXPECT_EQ(model->statusMessage(), "Paused");
}

TEST_F(Actions, TwoQuickChangesStartTwoSyncsThatUseTheConfigurationAsItIsThen)
{
    setMeetings({standup(noon + hours(1))});

    model->setLeadTime(60);
    model->setLeadTime(300);
    loop.drain();

    EXPECT_EQ(calls->count("scheduledAlarmIDs"), 2U);
    EXPECT_EQ(scheduler->armedIDs(), std::vector{alarmFor(standup(noon + hours(1)), minutes(5)).id});
    EXPECT_EQ(model->upcoming().at(0).fireDate, noon + minutes(55));
}

TEST_F(Actions, AMasterSwitchToggledAHundredTimesDuringPassesEndsInItsLastState)
{
    setMeetings({standup(noon + hours(1))});
    for (int i = 0; i < 100; ++i) {
        model->setMasterEnabled(i % 2 == 0);
        if (i % 3 == 0)
            loop.drain();
    }
    loop.drain();
    EXPECT_EQ(model->statusMessage(), "Paused");
    EXPECT_THAT(scheduler->armedIDs(), IsEmpty());
    EXPECT_THAT(model->alarmTaskIDs(), IsEmpty());

    model->setMasterEnabled(true);
    loop.drain();
    EXPECT_EQ(model->statusMessage(), "Next: Stand-up");
    EXPECT_EQ(scheduler->armedIDs().size(), 1U);
}

TEST_F(Actions, TheTestAlarmRingsNowAndSaysSo)
{
    loop.run(model->fireTestAlarm());

    EXPECT_EQ(
        lastRing(), (AlarmPayload{"test#1700049600", "Test meeting — Calendar Murkel is working", noon}));
    EXPECT_EQ(model->statusMessage(), "Test alarm ringing");
}

TEST_F(Actions, TheTestAlarmRingsWhilePausedAndWithTheStyleOfNotificationsAlone)
{
    model->setMasterEnabled(false);
    model->setStyle(AlarmStyle::notificationOnly);
    loop.drain();

    loop.run(model->fireTestAlarm());

    EXPECT_EQ(rings(), 1U);
}

TEST_F(Actions, TestAlarmsShareAnIdentifierWithinASecondAndChangeItWithTheNext)
{
    loop.run(model->fireTestAlarm());
    const auto first = lastRing().id;
    pass(Seconds{0.9});
    loop.run(model->fireTestAlarm());
    EXPECT_EQ(lastRing().id, first);

    pass(Seconds{0.1});
    loop.run(model->fireTestAlarm());
    EXPECT_EQ(lastRing().id, "test#1700049601");
}

TEST_F(Actions, AnAlarmRingsWithTheSoundOfTheSettingsAndRaisesTheVolumeIfWished)
{
    model->setSound("Ping");
    model->setRaiseVolume(false);
    loop.drain();
    desktop.takeLog();

    loop.run(model->fireTestAlarm());

    const auto log = desktop.takeLog();
    EXPECT_THAT(log, testing::Contains("Ping plays"));
    EXPECT_THAT(log, testing::Not(testing::Contains(testing::HasSubstr("volume"))));
}

TEST_F(Actions, AskingForPermissionsReadsThemAgainLoadsCalendarsAndSyncs)
{
    eventStore->setAuthorization(System::CalendarAuthorization::FullAccess);
    calls->clear();

    loop.run(model->requestPermissions());

    EXPECT_THAT(calls->calls(),
        testing::ElementsAre("requestAccess", "requestAuthorization", "availableCalendars", "meetings",
            "scheduledAlarmIDs", "cancel []", "meetings"));
}

TEST_F(Actions, WhatARefusedRequestAnswersIsIgnoredAndTheStatesAreRead)
{
    provider->setAccess(false);
    scheduler->setAuthorization(false);
    eventStore->setAuthorization(System::CalendarAuthorization::Denied);
    center->setAuthorization(System::NotificationAuthorization::Denied);

    loop.run(model->requestPermissions());

    EXPECT_EQ(model->calendarPermission(), Permission::denied);
    EXPECT_EQ(model->notificationPermission(), Permission::denied);
    EXPECT_EQ(calls->count("availableCalendars"), 0U);
    EXPECT_EQ(calls->count("scheduledAlarmIDs"), 1U) << "the sync runs all the same";
}

TEST_F(Actions, TheChangeNoticeSyncsAndReloadsNoCalendars)
{
    provider->setCalendars({});

    calendarsChange();

    EXPECT_EQ(calls->count("scheduledAlarmIDs"), 1U);
    EXPECT_EQ(calls->count("availableCalendars"), 0U);
    EXPECT_EQ(model->calendars().size(), 1U);
}

TEST_F(Actions, ALeadTimeOutOfReachIsClampedWhereItIsUsedAndKeptAsItIs)
{
    setMeetings({standup(noon + hours(1))});

    model->setLeadTime(-1e308);
    loop.drain();

    EXPECT_EQ(store->saved().back().settings.leadTime, Seconds{-1e308});
    EXPECT_EQ(model->upcoming().at(0).fireDate, noon + hours(1) + std::chrono::days(3653));
}

}
}
