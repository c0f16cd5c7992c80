#include "AppWorld.h"

#include <gtest/gtest.h>

namespace Tinkra {
namespace {

using Property = AppModel::Property;

class Notices : public testing::Test, protected AppWorld {
protected:
    void SetUp() override
    {
        launch();
        noticed.clear();
    }
};

TEST_F(Notices, ASyncThatChangesNothingTellsOfTheUpcomingListAlone)
{
    sync();

    EXPECT_EQ(noticed, std::vector{Property::upcoming});
}

TEST_F(Notices, WritesOfCalendarsAlwaysNotify)
{
    loop.run(model->loadCalendars());
    loop.run(model->loadCalendars());

    EXPECT_EQ(noticed, (std::vector{Property::calendars, Property::calendars}));
}

TEST_F(Notices, WritesOfUpcomingAlwaysNotifyOnThePausedRoadToo)
{
    model->setMasterEnabled(false);
    loop.drain();
    sync();

    EXPECT_EQ(notices(Property::upcoming), 2U);
}

TEST_F(Notices, EqualWritesOfTheOthersNotifyNobody)
{
    model->setKeepAwake(true);
    model->setLaunchAtLogin(false);
    loop.drain();
    loop.run(model->refreshPermissions());
    sync();
    loop.run(model->requestPermissions());

    for (const auto property :
        {Property::configuration, Property::calendarPermission, Property::notificationPermission,
            Property::statusMessage, Property::lastSync, Property::launchAtLogin})
        EXPECT_EQ(notices(property), 0U) << static_cast<int>(property);
}

TEST_F(Notices, AChangeNotifiesOnceOfWhatChanged)
{
    pass(seconds(1));
    model->setLeadTime(60);
    EXPECT_EQ(noticed, std::vector{Property::configuration}) << "before the setter returns";
    loop.drain();

    EXPECT_EQ(noticed, (std::vector{Property::configuration, Property::lastSync, Property::upcoming}));
}

TEST_F(Notices, AnObserverReadsTheNewValue)
{
    std::vector<bool> seen;
    const auto watching = model->observe([&](Property property) {
        if (property == Property::configuration)
            seen.push_back(model->configuration().masterEnabled);
    });

    model->setMasterEnabled(false);
    model->setMasterEnabled(true);
    loop.drain();

    EXPECT_EQ(seen, (std::vector{false, true}));
}

TEST_F(Notices, EndWithTheObservation)
{
    observation.reset();

    model->setMasterEnabled(false);
    loop.drain();

    EXPECT_TRUE(noticed.empty());
}

TEST(ChangeNotices, AnObserverMayDropItselfAndOthersMeanwhile)
{
    ChangeNotices<int> notices;
    std::vector<std::string> heard;
    System::Observation first;
    System::Observation second;
    first = notices.observe([&](int) {
        heard.emplace_back("first");
        second.reset();
        first.reset();
    });
    second = notices.observe([&](int) { heard.emplace_back("second"); });

    notices.notify(1);
    notices.notify(2);

    EXPECT_EQ(heard, std::vector<std::string>{"first"});
}

TEST(ChangeNotices, AnObservationMayOutliveTheNotices)
{
    System::Observation observation;
    {
        ChangeNotices<int> notices;
        observation = notices.observe([](int) {});
    }

    observation.reset();

    EXPECT_EQ(observation, nullptr);
}

}
}
