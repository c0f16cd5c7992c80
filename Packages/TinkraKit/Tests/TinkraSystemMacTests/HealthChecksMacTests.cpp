#include "TinkraSystemMac/HealthChecksMac.h"

#include "TinkraTestSupport/FakeEventStore.h"
#include "TinkraTestSupport/FakeNotificationCenter.h"
#include "TinkraTestSupport/TestLoop.h"

#include <gtest/gtest.h>

namespace Tinkra::System {
namespace {

using Level = HealthFinding::Level;

class HealthChecksMacTest : public testing::Test {
protected:
    HealthFinding aboutCalendars(CalendarAuthorization authorization)
    {
        eventStore->setAuthorization(authorization);
        return run(checks.run()).at(0);
    }

    HealthFinding aboutNotifications(NotificationAuthorization authorization)
    {
        notificationCenter->setAuthorization(authorization);
        return run(checks.run()).at(1);
    }

    std::shared_ptr<FakeEventStore> eventStore = std::make_shared<FakeEventStore>();
    std::shared_ptr<FakeNotificationCenter> notificationCenter = std::make_shared<FakeNotificationCenter>();
    HealthChecksMac checks{eventStore, notificationCenter};
};

TEST_F(HealthChecksMacTest, AreContentWhenBothPermissionsAreThere)
{
    EXPECT_EQ(aboutCalendars(CalendarAuthorization::FullAccess).level, Level::Ok);
    EXPECT_EQ(aboutNotifications(NotificationAuthorization::Authorized).level, Level::Ok);
}

TEST_F(HealthChecksMacTest, WarnOfPermissionsThatWereNeverAskedFor)
{
    EXPECT_EQ(aboutCalendars(CalendarAuthorization::NotDetermined).level, Level::Warning);
    EXPECT_EQ(aboutNotifications(NotificationAuthorization::NotDetermined).level, Level::Warning);
}

TEST_F(HealthChecksMacTest, FailForEveryKindOfAccessThatDoesNotLetUsRead)
{
    for (const auto authorization :
        {CalendarAuthorization::Denied, CalendarAuthorization::Restricted, CalendarAuthorization::WriteOnly})
        EXPECT_EQ(aboutCalendars(authorization).level, Level::Failure);
}

TEST_F(HealthChecksMacTest, FailWhenNotificationsWereDenied)
{
    EXPECT_EQ(aboutNotifications(NotificationAuthorization::Denied).level, Level::Failure);
}

TEST_F(HealthChecksMacTest, SayHowToMendEverythingThatIsWrong)
{
    for (const auto authorization : {CalendarAuthorization::NotDetermined, CalendarAuthorization::Restricted,
             CalendarAuthorization::Denied, CalendarAuthorization::WriteOnly})
        EXPECT_NE(aboutCalendars(authorization).remedy, "");
    for (const auto authorization : {NotificationAuthorization::NotDetermined,
             NotificationAuthorization::Denied, NotificationAuthorization::Provisional})
        EXPECT_NE(aboutNotifications(authorization).remedy, "");
}

TEST_F(HealthChecksMacTest, LookAtTheServiceOfAlarmsAlone)
{
    notificationCenter->setAuthorization(NotificationAuthorization::Denied);

    EXPECT_EQ(run(checks.notificationService()).subject, "Notifications");
    EXPECT_EQ(run(checks.notificationService()).level, Level::Failure);
}

}
}
