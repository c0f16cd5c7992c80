#include "TinkraSystemContractTests/NotificationCenterContract.h"

#include "StandInUserNotifications.h"

#include "TinkraSystemMac/NotificationCenterMac.h"
#include "TinkraSystemMac/NotificationDelegateMac.h"
#include "TinkraSystemMac/NotificationRequestMac.h"

#include <Block.h>

namespace Tinkra::System {
namespace {

struct OfUserNotifications {
    OfUserNotifications() { StandInNotifications::shared() = {}; }

    std::shared_ptr<NotificationCenter> center =
        std::make_shared<NotificationCenterMac>([UNUserNotificationCenter currentNotificationCenter]);
};

INSTANTIATE_TYPED_TEST_SUITE_P(Mac, NotificationCenterContract, OfUserNotifications);

class NotificationCenterMacTest : public testing::Test {
protected:
    OfUserNotifications kind;
    TestLoop loop;
};

TEST_F(NotificationCenterMacTest, AsksForTheOptionsAsTheyAre)
{
    loop.runInRealTime(kind.center->requestAuthorization(BadgeOption | SoundOption | AlertOption));

    EXPECT_EQ(StandInNotifications::shared().askedFor, 7U);
}

TEST_F(NotificationCenterMacTest, ThrowsWhenARequestForAuthorisationEndsWithAnErrorEvenIfItIsGranted)
{
    StandInNotifications::shared().requestFails = true;

    EXPECT_ANY_THROW(loop.runInRealTime(kind.center->requestAuthorization(AlertOption)));
}

TEST_F(NotificationCenterMacTest, ThrowsTheSystemsSentenceWhenARequestIsNotTaken)
{
    StandInNotifications::shared().addingFailsWith = "Notifications are not allowed for this application";

    try {
        loop.runInRealTime(kind.center->add(request("one")));
        FAIL() << "nothing was thrown";
    } catch (const std::exception& error) {
        EXPECT_STREQ(error.what(), "Notifications are not allowed for this application");
    }
}

TEST_F(NotificationCenterMacTest, GivesEachStatusOfTheSystemItsOwn)
{
    for (const int status : {0, 1, 2, 3}) {
        StandInNotifications::shared().status = static_cast<UNAuthorizationStatus>(status);
        EXPECT_EQ(static_cast<int>(loop.runInRealTime(kind.center->authorizationStatus())), status);
    }
    StandInNotifications::shared().status = static_cast<UNAuthorizationStatus>(99);
    EXPECT_EQ(loop.runInRealTime(kind.center->authorizationStatus()), NotificationAuthorization::Denied);
}

TEST(NotificationRequestMac, SetsWhatTheRequestSaysAndNothingElse)
{
    UNNotificationRequest* native = nativeRequest(request("meeting@1704099600#1704099600"));

    EXPECT_TRUE([native.identifier isEqual:@"meeting@1704099600#1704099600"]);
    EXPECT_TRUE([native.content.title isEqual:@"Meeting starting"]);
    EXPECT_TRUE([native.content.body isEqual:@"Stand-up"]);
    EXPECT_EQ(native.content.sound, UNNotificationSound.defaultSound);
    EXPECT_EQ(native.content.interruptionLevel, UNNotificationInterruptionLevelTimeSensitive);
    EXPECT_EQ(native.content.userInfo.count, 2U);
    EXPECT_TRUE([[native.content.userInfo objectForKey:@"meetingID"] isEqual:@"standup"]);
    EXPECT_EQ([[native.content.userInfo objectForKey:@"fireDate"] doubleValue], 4'102'444'800.25);
    EXPECT_TRUE([native.trigger isKindOfClass:[UNCalendarNotificationTrigger class]]);
    EXPECT_FALSE(native.trigger.repeats);
}

TEST(NotificationRequestMac, LeavesOutUserInfoThatIsNeitherTextNorNumber)
{
    UNMutableNotificationContent* content = [[UNMutableNotificationContent alloc] init];
    content.userInfo = [NSDictionary dictionaryWithObjectsAndKeys:[NSData data], @"data", @"Stand-up",
                                     @"title", [NSNumber numberWithInt:7], @"meetingStart", nil];

    const auto read = requestFrom([UNNotificationRequest requestWithIdentifier:@"one"
                                                                       content:content
                                                                       trigger:nil]);

    EXPECT_EQ(read.content.userInfo, (UserInfo{{"title", "Stand-up"}, {"meetingStart", 7.0}}));
    EXPECT_EQ(read.trigger, CalendarTrigger{});
}

TEST(NotificationRequestMac, RefusesTextThatIsNotUtf8)
{
    EXPECT_THROW(nativeRequest(request("\xFF")), std::invalid_argument);
    EXPECT_THROW(nativeRequest(request("one", "\xC3(")), std::invalid_argument);
}

class RecordingDelegate final : public NotificationCenterDelegate {
public:
    Task<std::uint32_t> willPresent(NotificationRequest request) override
    {
        presented.push_back(std::move(request));
        co_return BannerPresentation | ListPresentation | SoundPresentation;
    }

    Task<> didReceive(NotificationResponse response) override
    {
        received.push_back(std::move(response));
        co_return;
    }

    std::vector<NotificationRequest> presented;
    std::vector<NotificationResponse> received;
};

class NotificationDelegateMacTest : public testing::Test {
protected:
    StandInNotification* notification()
    {
        StandInNotification* made = [[StandInNotification alloc] init];
        made->_request = nativeRequest(request("one"));
        return made;
    }

    TestLoop loop;
    std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
    TinkraNotificationDelegate* native =
        [[TinkraNotificationDelegate alloc] initWithCalls:NotificationCalls{loop.executor(), delegate}];
};

TEST_F(NotificationDelegateMacTest, AnswersOnceWithTheOptionsOfTheDelegate)
{
    __block std::vector<UNNotificationPresentationOptions> answers;

    [native userNotificationCenter:[UNUserNotificationCenter currentNotificationCenter]
           willPresentNotification:notification()
             withCompletionHandler:Block_copy(^(UNNotificationPresentationOptions options) {
                 answers.push_back(options);
             })];
    loop.drain();

    EXPECT_THAT(answers, ElementsAre(26U));
    EXPECT_THAT(delegate->presented, ElementsAre(request("one")));
}

TEST_F(NotificationDelegateMacTest, CompletesAResponseOnce)
{
    __block int answers = 0;
    StandInResponse* response = [[StandInResponse alloc] init];
    response->_notification = notification();

    [native userNotificationCenter:[UNUserNotificationCenter currentNotificationCenter]
        didReceiveNotificationResponse:response
                 withCompletionHandler:Block_copy(^{ ++answers; })];
    loop.drain();

    EXPECT_EQ(answers, 1);
    ASSERT_EQ(delegate->received.size(), 1U);
    EXPECT_EQ(delegate->received[0].actionIdentifier, "com.apple.UNNotificationDefaultActionIdentifier");
    EXPECT_EQ(delegate->received[0].request, request("one"));
}

}
}
