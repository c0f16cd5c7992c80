#include "AppWorld.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tinkra {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Permission = AppModel::Permission;
using Property = AppModel::Property;

class StartUp : public testing::Test, protected AppWorld { };

TEST_F(StartUp, ConstructionReadsTheConfigurationAndDoesNothingElse)
{
    makeModel(monitoring({"work", "home"}));
    loop.drain();

    EXPECT_EQ(model->configuration(), monitoring({"work", "home"}));
    EXPECT_EQ(model->statusMessage(), "Starting up…");
    EXPECT_EQ(model->calendarPermission(), Permission::unknown);
    EXPECT_EQ(model->notificationPermission(), Permission::unknown);
    EXPECT_THAT(model->calendars(), IsEmpty());
    EXPECT_THAT(model->upcoming(), IsEmpty());
    EXPECT_EQ(model->lastSync(), std::nullopt);
    EXPECT_FALSE(model->launchAtLogin());
    EXPECT_THAT(calls->calls(), IsEmpty());
    EXPECT_THAT(center->log().calls(), IsEmpty());
    EXPECT_THAT(folder->written, IsEmpty());
    EXPECT_EQ(clock->sleeperCount(), 0U);
}

TEST_F(StartUp, WithoutAStoredConfigurationItGoesFromStartingUpToNoCalendarsSelected)
{
    makeModel({});
    std::vector<std::string> statuses{model->statusMessage()};
    const auto watching = model->observe([&](Property property) {
        if (property == Property::statusMessage)
            statuses.push_back(model->statusMessage());
    });

    loop.run(model->bootstrap());

    EXPECT_THAT(statuses, ElementsAre("Starting up…", "No calendars selected"));
}

TEST_F(StartUp, ReadsPermissionsThenCalendarsThenSyncsThenFillsTheUpcomingList)
{
    launch();

    // The pass fetches and arms; the list has a query of its own.
    EXPECT_THAT(calls->calls(),
        ElementsAre("availableCalendars", "meetings", "scheduledAlarmIDs", "cancel []", "meetings"));
    EXPECT_THAT(center->log().calls(), ElementsAre("authorizationStatus"));
    EXPECT_EQ(model->calendarPermission(), Permission::granted);
    EXPECT_EQ(model->notificationPermission(), Permission::granted);
    EXPECT_EQ(model->calendars().size(), 1U);
    EXPECT_EQ(model->lastSync(), noon);
}

TEST_F(StartUp, AsksForNoPermission)
{
    eventStore->setAuthorization(System::CalendarAuthorization::NotDetermined);
    center->setAuthorization(System::NotificationAuthorization::NotDetermined);

    launch();

    EXPECT_EQ(calls->count("requestAccess"), 0U);
    EXPECT_EQ(calls->count("requestAuthorization"), 0U);
    EXPECT_EQ(model->calendarPermission(), Permission::unknown);
    EXPECT_EQ(model->notificationPermission(), Permission::unknown);
}

TEST_F(StartUp, WithCalendarAccessDeniedLoadsNoCalendarsAndStillSyncs)
{
    eventStore->setAuthorization(System::CalendarAuthorization::Denied);

    launch();

    EXPECT_EQ(model->calendarPermission(), Permission::denied);
    EXPECT_EQ(calls->count("availableCalendars"), 0U);
    EXPECT_THAT(model->calendars(), IsEmpty());
    EXPECT_EQ(model->lastSync(), noon);
    EXPECT_EQ(model->statusMessage(), "Watching 1 calendar(s)");
}

TEST_F(StartUp, InstallsObserversAndLoopsAfterTheFirstSync)
{
    makeModel();
    calls->hold();
    const auto bootstrap = loop.start(model->bootstrap());

    EXPECT_EQ(eventStore->observerCount(), 0U);
    EXPECT_EQ(workspace->observerCount(), 0U);
    EXPECT_EQ(helper->registrations, 0);
    EXPECT_EQ(clock->sleeperCount(), 0U);

    calls->letAllGo();
    loop.drain();

    EXPECT_TRUE(bootstrap.isDone());
    EXPECT_EQ(eventStore->observerCount(), 1U);
    EXPECT_EQ(workspace->observerCount(), 1U);
    EXPECT_EQ(helper->registrations, 1);
    EXPECT_EQ(clock->sleeperCount(), 2U); // the tick and the keep-awake loop
}

TEST_F(StartUp, TheCoordinatorHearsOfNotificationsBeforePermissionsAreRead)
{
    makeModel();
    center->log().hold();
    const auto bootstrap = loop.start(model->bootstrap());

    EXPECT_FALSE(bootstrap.isDone());
    EXPECT_NE(delegate.lock(), nullptr);

    center->log().letAllGo();
    loop.drain();
}

TEST_F(StartUp, ANotificationInTheForegroundRingsWhateverTheSettings)
{
    auto paused = monitoring();
    paused.masterEnabled = false;
    launch(paused);
    System::NotificationRequest request{.identifier = "standup#1", .content = {}, .trigger = {}};
    request.content.userInfo = {{"title", "Stand-up"}, {"meetingStart", 1.0}};

    loop.run(delegate.lock()->willPresent(request));

    EXPECT_EQ(lastRing(), (AlarmPayload{"standup#1", "Stand-up", instantAt(1)}));
}

TEST_F(StartUp, AResponseToANotificationActivatesTheApplication)
{
    launch();

    loop.run(delegate.lock()->didReceive({"default", {}}));

    EXPECT_EQ(activations, 1);
}

TEST_F(StartUp, ShowsWhetherTheApplicationLaunchesAtLoginWithoutChangingIt)
{
    loginItem->current = System::ServiceStatus::Enabled;

    launch();

    EXPECT_TRUE(model->launchAtLogin());
    EXPECT_EQ(loginItem->registrations + loginItem->unregistrations, 0);
}

TEST_F(StartUp, CalendarsThatCannotBeReadAreNamedAndTheSyncFollows)
{
    provider->failWith(std::make_exception_ptr(std::runtime_error("the store is broken")));
    makeModel();
    std::vector<std::string> statuses;
    const auto watching = model->observe([&](Property property) {
        if (property == Property::statusMessage)
            statuses.push_back(model->statusMessage());
    });

    loop.run(model->bootstrap());

    EXPECT_THAT(statuses,
        ElementsAre("Couldn't read calendars: the store is broken", "Sync failed: the store is broken"));
    EXPECT_EQ(eventStore->observerCount(), 1U) << "a failing start still watches for better times";
}

TEST_F(StartUp, AListThatCannotBeReadLeavesThePreviousCalendars)
{
    launch();
    provider->failWith(std::make_exception_ptr(std::runtime_error("gone")));

    loop.run(model->loadCalendars());

    EXPECT_EQ(model->calendars().size(), 1U);
    EXPECT_EQ(model->statusMessage(), "Couldn't read calendars: gone");
}

class CalendarPermission : public testing::TestWithParam<std::pair<int, Permission>>, protected AppWorld { };

TEST_P(CalendarPermission, FollowsTheStoresAnswer)
{
    const auto [value, permission] = GetParam();
    eventStore->setAuthorization(static_cast<System::CalendarAuthorization>(value));
    makeModel();

    loop.run(model->refreshPermissions());

    EXPECT_EQ(model->calendarPermission(), permission);
}

INSTANTIATE_TEST_SUITE_P(EachValue, CalendarPermission,
    testing::Values(std::pair(0, Permission::unknown), std::pair(1, Permission::denied),
        std::pair(2, Permission::denied), std::pair(3, Permission::granted), std::pair(4, Permission::denied),
        std::pair(99, Permission::denied)));

class NotificationPermission : public testing::TestWithParam<std::pair<int, Permission>>,
                               protected AppWorld { };

TEST_P(NotificationPermission, FollowsTheCentresAnswer)
{
    const auto [value, permission] = GetParam();
    center->setAuthorization(static_cast<System::NotificationAuthorization>(value));
    makeModel();

    loop.run(model->refreshPermissions());

    EXPECT_EQ(model->notificationPermission(), permission);
}

INSTANTIATE_TEST_SUITE_P(EachValue, NotificationPermission,
    testing::Values(std::pair(0, Permission::unknown), std::pair(1, Permission::denied),
        std::pair(2, Permission::granted), std::pair(3, Permission::granted),
        std::pair(4, Permission::denied), std::pair(99, Permission::denied)));

TEST_F(StartUp, TheModelMayGoWhileItStarts)
{
    makeModel();
    const std::weak_ptr<AppModel> weak = model;
    calls->hold();
    model->start(&AppModel::bootstrap);
    loop.drain();

    model.reset();
    calls->letAllGo();
    loop.drain();

    EXPECT_TRUE(weak.expired());
}

TEST_F(StartUp, ObserversAndLoopsGoWithTheModel)
{
    launch();

    quit();

    EXPECT_EQ(eventStore->observerCount(), 0U);
    EXPECT_EQ(workspace->observerCount(), 0U);
    EXPECT_EQ(clock->sleeperCount(), 0U);
    EXPECT_EQ(delegate.lock(), nullptr);
}

}
}
