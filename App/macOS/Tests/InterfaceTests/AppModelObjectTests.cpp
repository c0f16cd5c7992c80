#include "AppWorld.h"
#include "Interface/AppModelObject.h"
#include "Interface/QtText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tinkra {
namespace {

using testing::ElementsAre;

class Interface : public testing::Test, protected AppWorld {
protected:
    void SetUp() override
    {
        provider->setCalendars(
            {{.id = "work", .title = "Work", .accountName = "Office", .colorHex = "#3366CC"},
                {.id = "choir", .title = "Choir", .accountName = "Home", .colorHex = {}},
                {.id = "allotment", .title = "Allotment", .accountName = "Home", .colorHex = {}}});
        workspace->userName = "Kraira Velden";
    }

    void open()
    {
        launch();
        object = std::make_unique<AppModelObject>(
            model, workspace, TimeStyle{.locale = "en_GB", .timeZone = "UTC"});
    }

    static std::string text(QObject* rows, int row, const char* role)
    {
        const auto* list = qobject_cast<QAbstractItemModel*>(rows);
        return list->data(list->index(row, 0), list->roleNames().key(role)).toString().toStdString();
    }

    static int count(QObject* rows) { return qobject_cast<QAbstractItemModel*>(rows)->rowCount(); }

    QObject* calendarsOf(int account) const
    {
        const auto* list = qobject_cast<QAbstractItemModel*>(object->accounts);
        return list->data(list->index(account, 0), AccountsModel::Calendars).value<QObject*>();
    }

    std::unique_ptr<AppModelObject> object;
};

TEST_F(Interface, GreetsByTheFirstName)
{
    open();
    EXPECT_EQ(object->firstName, QStringLiteral("Kraira"));
}

TEST_F(Interface, GreetsThereWhoHasNoName)
{
    workspace->userName = "";
    open();
    EXPECT_EQ(object->firstName, QStringLiteral("there"));
}

TEST_F(Interface, ShowsTheStartOfTheNextMeetingAndNotWhenItRings)
{
    setMeetings({standup(noon + hours(21) + minutes(5))}); // five past nine
    open();
    object->setLeadTime(600);
    loop.drain();
    EXPECT_EQ(object->nextAlarmText, QStringLiteral("09:05"));
    EXPECT_EQ(text(object->upcoming, 0, "time"), "09:05");
    EXPECT_THAT(object->fireDates, ElementsAre(secondsSince1970(noon + hours(20) + minutes(55))));
}

TEST_F(Interface, ShowsADashWhenNothingIsUpcoming)
{
    open();
    EXPECT_EQ(object->nextAlarmText, QStringLiteral("—"));
    EXPECT_EQ(count(object->upcoming), 0);
}

TEST_F(Interface, ShowsTwentyFiveOfThirtyAlarms)
{
    std::vector<Meeting> meetings;
    for (int i = 1; i <= 30; ++i)
        meetings.push_back(standup(noon + hours(i), "meeting" + std::to_string(i)));
    setMeetings(std::move(meetings));
    open();
    EXPECT_EQ(count(object->upcoming), 25);
}

TEST_F(Interface, ShowsAlarmsInTheColoursOfTheirCalendars)
{
    setMeetings({standup(noon + hours(1))});
    open();
    EXPECT_EQ(text(object->upcoming, 0, "title"), "Stand-up");
    EXPECT_EQ(text(object->upcoming, 0, "weekdayTime"), "Wed 13:00");
    EXPECT_EQ(text(object->upcoming, 0, "colorHex"), "#3366CC");
}

TEST_F(Interface, ShowsNoColourForACalendarThatIsGone)
{
    setMeetings({standup(noon + hours(1))});
    provider->setCalendars({});
    open();
    EXPECT_EQ(text(object->upcoming, 0, "colorHex"), "");
}

TEST_F(Interface, CountsTheSelectedCalendarsOfEachAccount)
{
    open();
    ASSERT_EQ(count(object->accounts), 2);
    EXPECT_EQ(text(object->accounts, 0, "account"), "Home");
    EXPECT_EQ(text(object->accounts, 0, "countText"), "0 of 2");
    EXPECT_EQ(text(object->accounts, 1, "countText"), "1 of 1");
    EXPECT_EQ(text(calendarsOf(0), 0, "title"), "Allotment");
    EXPECT_EQ(object->calendarsWatched, 1);
}

TEST_F(Interface, ChoosingACalendarKeepsTheRowsAndChangesTheirMarks)
{
    open();
    auto* home = calendarsOf(0);
    int resets = 0;
    QObject::connect(&*qobject_cast<QAbstractItemModel*>(object->accounts), &QAbstractItemModel::modelReset,
        home, [&resets] { ++resets; });
    object->toggleCalendar(QStringLiteral("choir"));
    EXPECT_EQ(text(home, 1, "selected"), "true");
    EXPECT_EQ(text(object->accounts, 0, "countText"), "1 of 2");
    EXPECT_EQ(resets, 0);
    loop.drain();
}

TEST_F(Interface, ChoosingAWholeAccountSavesOnceAndSyncsOnce)
{
    open();
    calls->clear();
    object->selectAccount(QStringLiteral("Home"), true);
    loop.drain();
    EXPECT_EQ(text(object->accounts, 0, "allSelected"), "true");
    EXPECT_EQ(store->saved().size(), 1U);
    EXPECT_EQ(calls->count("scheduledAlarmIDs"), 1U);
    object->selectAccount(QStringLiteral("Home"), false);
    EXPECT_EQ(text(object->accounts, 0, "anySelected"), "false");
    EXPECT_EQ(object->calendarsWatched, 1);
    loop.drain();
}

TEST_F(Interface, DoesWhatTheUserAsksForAndShowsIt)
{
    open();
    object->setMasterEnabled(false);
    object->setStyle(QStringLiteral("notificationOnly"));
    object->setStyle(QStringLiteral("no style"));
    object->setSound(QStringLiteral("Ping"));
    object->setIgnoreAllDay(false);
    object->setRaiseVolume(false);
    object->setKeepAwake(false);
    object->setLaunchAtLogin(true);
    loop.drain();
    EXPECT_FALSE(object->masterEnabled);
    EXPECT_EQ(object->alarmStyle, QStringLiteral("notificationOnly"));
    EXPECT_EQ(object->soundName, QStringLiteral("Ping"));
    EXPECT_FALSE(object->ignoreAllDay);
    EXPECT_FALSE(object->raiseVolume);
    EXPECT_FALSE(object->keepAwake);
    EXPECT_TRUE(object->launchAtLogin);
    EXPECT_FALSE(model->configuration().settings.raiseVolume);
}

TEST_F(Interface, TellsOnlyOfRealChanges)
{
    open();
    int changes = 0;
    QObject::connect(object.get(), &ViewModel::leadTimeChanged, object.get(), [&changes] { ++changes; });
    object->setSound(QStringLiteral("Ping"));
    EXPECT_EQ(changes, 0);
    object->setLeadTime(300);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(object->leadTime, 300);
    loop.drain();
}

TEST_F(Interface, RingsATestAlarm)
{
    open();
    object->fireTestAlarm();
    loop.drain();
    EXPECT_EQ(rings(), 1U);
}

TEST_F(Interface, FollowsThePermissionAfterTheUserHasRefused)
{
    eventStore->setAuthorization(System::CalendarAuthorization::NotDetermined);
    open();
    EXPECT_EQ(object->calendarPermission, ViewModel::Permission::Unknown);
    eventStore->setAuthorization(System::CalendarAuthorization::Denied);
    object->requestPermissions();
    loop.drain();
    EXPECT_EQ(object->calendarPermission, ViewModel::Permission::Denied);
}

TEST_F(Interface, OpensThePrivacySettingsAndTheProductsPage)
{
    open();
    object->openPrivacySettings();
    object->openWebsite();
    ASSERT_EQ(workspace->opened.size(), 2U);
    EXPECT_EQ(
        workspace->opened[0], "x-apple.systempreferences:com.apple.preference.security?Privacy_Calendars");
    EXPECT_TRUE(workspace->opened[1].starts_with("https://"));
}

}
}
