#pragma once

#include "TinkraSystem/NotificationCenter.h"
#include "TinkraTestSupport/TestLoop.h"

#include <gmock/gmock.h>

namespace Tinkra::System {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

inline NotificationRequest request(std::string identifier, std::string body = "Stand-up")
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

/// What all centres do. A kind has a `center` that holds nothing yet.
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

TYPED_TEST_SUITE_P(NotificationCenterContract);

TYPED_TEST_P(NotificationCenterContract, HoldsNothingAtFirst)
{
    EXPECT_THAT(this->pending(), IsEmpty());
}

TYPED_TEST_P(NotificationCenterContract, ListsWhatWasAddedAsItWasAdded)
{
    this->add(request("one"));

    EXPECT_THAT(this->pending(), ElementsAre(request("one")));
}

TYPED_TEST_P(NotificationCenterContract, KeepsHostileTextsAndIdentifiersAsTheyAre)
{
    const auto hostile = request("../../x'; DROP TABLE--%n%s", "<b>\xE2\x80\xAE&amp;\n\x1B[31m");
    this->add(hostile);

    EXPECT_THAT(this->pending(), ElementsAre(hostile));
}

TYPED_TEST_P(NotificationCenterContract, KeepsATitleOfAMegabyteWhole)
{
    const auto large = request("one", std::string(1U << 20U, 'x'));
    this->add(large);

    EXPECT_THAT(this->pending(), ElementsAre(large));
}

TYPED_TEST_P(NotificationCenterContract, AnEqualIdentifierReplaces)
{
    this->add(request("one"));
    this->add(request("two"));
    this->add(request("one", "Renamed"));

    EXPECT_THAT(this->pending(), UnorderedElementsAre(request("one", "Renamed"), request("two")));
}

TYPED_TEST_P(NotificationCenterContract, RemovesTheNamedOnesAndIgnoresTheUnknown)
{
    this->add(request("one"));
    this->add(request("two"));
    this->add(request("three"));

    this->remove({"three", "unknown", "one"});

    EXPECT_THAT(this->pendingIdentifiers(), ElementsAre("two"));
}

TYPED_TEST_P(NotificationCenterContract, RemovingNothingDoesNothing)
{
    this->add(request("one"));

    this->remove({});

    EXPECT_THAT(this->pendingIdentifiers(), ElementsAre("one"));
}

TYPED_TEST_P(NotificationCenterContract, ARequestForThePastStaysPending)
{
    auto past = request("one");
    past.trigger.components = {2000, 1, 1, 0, 0, 0};
    this->add(past);

    EXPECT_THAT(this->pending(), ElementsAre(past));
}

TYPED_TEST_P(NotificationCenterContract, TheStatusFollowsTheAnswerToARequest)
{
    const bool isGranted = this->loop.runInRealTime(
        this->kind.center->requestAuthorization(AlertOption | SoundOption | BadgeOption));
    const auto status = this->loop.runInRealTime(this->kind.center->authorizationStatus());

    EXPECT_EQ(isGranted, status == NotificationAuthorization::Authorized);
}

REGISTER_TYPED_TEST_SUITE_P(NotificationCenterContract, HoldsNothingAtFirst, ListsWhatWasAddedAsItWasAdded,
    KeepsHostileTextsAndIdentifiersAsTheyAre, KeepsATitleOfAMegabyteWhole, AnEqualIdentifierReplaces,
    RemovesTheNamedOnesAndIgnoresTheUnknown, RemovingNothingDoesNothing, ARequestForThePastStaysPending,
    TheStatusFollowsTheAnswerToARequest);

}
