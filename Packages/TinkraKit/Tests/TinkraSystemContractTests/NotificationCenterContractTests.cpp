#include "PrivateBus/PrivateBus.h"

#include "TinkraSystemLinux/MessageBus.h"
#include "TinkraSystemLinux/NotificationCenterLinux.h"
#include "TinkraTestSupport/FakeNotificationCenter.h"
#include "TinkraTestSupport/TestLoop.h"

#include <gmock/gmock.h>

namespace Tinkra::System {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

struct InMemory {
    std::shared_ptr<NotificationCenter> center = std::make_shared<FakeNotificationCenter>();
};

/// The daemon of this build on a bus of the test's own.
struct OfTheDesktop {
    PrivateBus bus;
    std::shared_ptr<NotificationCenter> center =
        std::make_shared<NotificationCenterLinux>(std::make_shared<MessageBus>(MessageBus::Kind::Session));
};

NotificationRequest request(std::string identifier, std::string body = "Stand-up")
{
    return {
        .identifier = std::move(identifier),
        .content =
            {
                .title = "Meeting starting",
                .body = std::move(body),
                .sound = NotificationSound::Default,
                .interruptionLevel = InterruptionLevel::TimeSensitive,
                .userInfo = {{"meetingID", "standup"}, {"fireDate", 4'102'444'800.25}},
            },
        .trigger = {.components = {2100, 1, 1, 0, 0, 0}},
    };
}

template <typename Kind> class NotificationCenterContract : public testing::Test {
protected:
    void add(NotificationRequest added) { loop.runInRealTime(kind.center->add(std::move(added))); }

    void remove(std::vector<std::string> identifiers)
    {
        loop.runInRealTime(kind.center->removePending(std::move(identifiers)));
    }

    std::vector<NotificationRequest> pending() { return loop.runInRealTime(kind.center->pendingRequests()); }

    std::vector<std::string> pendingIdentifiers()
    {
        std::vector<std::string> identifiers;
        for (const auto& each : pending())
            identifiers.push_back(each.identifier);
        return identifiers;
    }

    TestLoop loop;
    Kind kind;
};

using Kinds = testing::Types<InMemory, OfTheDesktop>;
TYPED_TEST_SUITE(NotificationCenterContract, Kinds);

TYPED_TEST(NotificationCenterContract, HoldsNothingAtFirst)
{
    EXPECT_THAT(this->pending(), IsEmpty());
}

TYPED_TEST(NotificationCenterContract, ListsWhatWasAddedAsItWasAdded)
{
    this->add(request("one"));

    EXPECT_THAT(this->pending(), ElementsAre(request("one")));
}

TYPED_TEST(NotificationCenterContract, KeepsHostileTextsAndIdentifiersAsTheyAre)
{
    const auto hostile = request("../../x'; DROP TABLE--%n%s", "<b>\xE2\x80\xAE&amp;\n\x1B[31m");
    this->add(hostile);

    EXPECT_THAT(this->pending(), ElementsAre(hostile));
}

TYPED_TEST(NotificationCenterContract, KeepsATitleOfAMegabyteWhole)
{
    const auto large = request("one", std::string(1U << 20U, 'x'));
    this->add(large);

    EXPECT_THAT(this->pending(), ElementsAre(large));
}

TYPED_TEST(NotificationCenterContract, AnEqualIdentifierReplaces)
{
    this->add(request("one"));
    this->add(request("two"));
    this->add(request("one", "Renamed"));

    EXPECT_THAT(this->pending(), UnorderedElementsAre(request("one", "Renamed"), request("two")));
}

TYPED_TEST(NotificationCenterContract, RemovesTheNamedOnesAndIgnoresTheUnknown)
{
    this->add(request("one"));
    this->add(request("two"));
    this->add(request("three"));

    this->remove({"three", "unknown", "one"});

    EXPECT_THAT(this->pendingIdentifiers(), ElementsAre("two"));
}

TYPED_TEST(NotificationCenterContract, RemovingNothingDoesNothing)
{
    this->add(request("one"));

    this->remove({});

    EXPECT_THAT(this->pendingIdentifiers(), ElementsAre("one"));
}

TYPED_TEST(NotificationCenterContract, ARequestForThePastStaysPending)
{
    auto past = request("one");
    past.trigger.components = {2000, 1, 1, 0, 0, 0};
    this->add(past);

    EXPECT_THAT(this->pending(), ElementsAre(past));
}

TYPED_TEST(NotificationCenterContract, TheStatusFollowsTheAnswerToARequest)
{
    const bool isGranted = this->loop.runInRealTime(
        this->kind.center->requestAuthorization(AlertOption | SoundOption | BadgeOption));
    const auto status = this->loop.runInRealTime(this->kind.center->authorizationStatus());

    EXPECT_EQ(isGranted, status == NotificationAuthorization::Authorized);
}

}
}
