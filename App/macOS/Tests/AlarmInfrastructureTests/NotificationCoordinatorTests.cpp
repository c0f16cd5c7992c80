#include "AlarmInfrastructure/NotificationCoordinator.h"

#include "TinkraCore/Models/Coding.h"
#include "TinkraTestSupport/TestClock.h"
#include "TinkraTestSupport/TestLoop.h"

#include <gtest/gtest.h>

#include <optional>

namespace Tinkra {
namespace {

using System::NotificationRequest;
using System::UserInfo;

class NotificationCoordinatorTest : public testing::Test {
protected:
    const Instant now = instantAt(5000);
    TestLoop loop;
    std::shared_ptr<TestClock> clock = std::make_shared<TestClock>(loop, now);
    NotificationCoordinator coordinator{clock};
    std::optional<AlarmPayload> rung;

    void SetUp() override
    {
        coordinator.onForegroundAlarm = [this](AlarmPayload payload) { rung = std::move(payload); };
    }

    std::uint32_t arrive(UserInfo userInfo)
    {
        NotificationRequest request;
        request.identifier = "X";
        request.content.userInfo = std::move(userInfo);
        return loop.run(coordinator.willPresent(std::move(request)));
    }
};

TEST_F(NotificationCoordinatorTest, ARequestBecomesThePayloadOfItsIdentifierTitleAndStart)
{
    EXPECT_EQ(
        arrive({{"title", "T"}, {"meetingStart", 1234.5}, {"meetingID", "m"}, {"fireDate", 1000.0}}), 26U);

    EXPECT_EQ(rung, (AlarmPayload{"X", "T", instantAt(1234.5)}));
}

TEST_F(NotificationCoordinatorTest, AMissingStartMeansNow)
{
    arrive({{"title", "T"}});

    EXPECT_EQ(rung, (AlarmPayload{"X", "T", now}));
}

TEST_F(NotificationCoordinatorTest, AStartThatIsNoNumberMeansNow)
{
    arrive({{"title", "T"}, {"meetingStart", "1234"}});

    EXPECT_EQ(rung, (AlarmPayload{"X", "T", now}));
}

TEST_F(NotificationCoordinatorTest, WithoutAUsableTitleNothingRingsAndTheSystemStillShowsIt)
{
    EXPECT_EQ(arrive({{"title", 42.0}, {"meetingStart", 1.0}}), 26U);
    EXPECT_EQ(arrive({{"meetingStart", 1.0}}), 26U);

    EXPECT_EQ(rung, std::nullopt);
}

TEST_F(NotificationCoordinatorTest, AnEmptyTitleIsUsable)
{
    arrive({{"title", ""}, {"meetingStart", 1.0}});

    EXPECT_EQ(rung, (AlarmPayload{"X", "", instantAt(1)}));
}

TEST_F(NotificationCoordinatorTest, WithoutACallbackOnlyTheOptionsAreGiven)
{
    coordinator.onForegroundAlarm = nullptr;

    EXPECT_EQ(arrive({{"title", "T"}}), 26U);
}

TEST_F(NotificationCoordinatorTest, EveryResponseOpensTheApplication)
{
    int opened = 0;
    coordinator.onOpenApp = [&] { ++opened; };

    loop.run(coordinator.didReceive({"default", {}}));
    loop.run(coordinator.didReceive({"anything", {}}));

    EXPECT_EQ(opened, 2);
    EXPECT_EQ(rung, std::nullopt);
}

TEST_F(NotificationCoordinatorTest, AResponseWithoutACallbackOnlyCompletes)
{
    loop.run(coordinator.didReceive({"default", {}}));

    EXPECT_EQ(rung, std::nullopt);
}

TEST_F(NotificationCoordinatorTest, TheLastCallbackSetCounts)
{
    Text heard;
    coordinator.onForegroundAlarm = [&](const AlarmPayload& payload) { heard = payload.title; };

    arrive({{"title", "T"}});

    EXPECT_EQ(heard, Text{"T"});
    EXPECT_EQ(rung, std::nullopt);
}

TEST(AlarmPayload, DifferingOnlyInTheStartIsUnequal)
{
    const AlarmPayload payload{"X", "T", instantAt(1)};
    const AlarmPayload later{"X", "T", instantAt(2)};

    EXPECT_NE(payload, later);
    EXPECT_NE(std::hash<AlarmPayload>{}(payload), std::hash<AlarmPayload>{}(later));
    EXPECT_EQ(std::hash<AlarmPayload>{}(payload), std::hash<AlarmPayload>{}(AlarmPayload(payload)));
}

TEST(AlarmPayload, SurvivesItsCodedForm)
{
    const AlarmPayload payload{"abc#1001", "Über \"Plan\"", instantAt(1000.25)};

    EXPECT_EQ(decodeAlarmPayload(encode(payload)), payload);
}

TEST(AlarmPayload, IsNotReadFromAnIncompleteOrMistypedDocument)
{
    for (const char* document :
        {"", "[]", "null", R"({"id":"a","title":"t"})", R"({"id":"a","title":"t","meetingStart":null})",
            R"({"id":1,"title":"t","meetingStart":1})", R"({"id":"a","title":"t","meetingStart":"1"})"})
        EXPECT_THROW(decodeAlarmPayload(document), DecodingError) << document;
}

TEST(AlarmPayload, IgnoresUnknownKeys)
{
    EXPECT_EQ(decodeAlarmPayload(R"({"id":"a","title":"t","meetingStart":1,"more":true})"),
        (AlarmPayload{"a", "t", instantAt(1)}));
}

}
}
