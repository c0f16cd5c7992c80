#include "NotificationDaemon/HeldResponses.h"

#include <gmock/gmock.h>

namespace Tinkra::NotificationDaemon {
namespace {

using testing::IsEmpty;
using testing::Optional;
using testing::SizeIs;

NotificationDaemonProtocol::Request request(std::string identifier)
{
    return {.identifier = std::move(identifier)};
}

TEST(HeldResponses, HoldsAResponseUntilItIsTakenOnce)
{
    HeldResponses responses;
    responses.delivered(request("one"), 7);

    EXPECT_THAT(responses.invoked(7, "default"), Optional(std::string("one")));

    const auto taken = responses.take();
    ASSERT_THAT(taken, SizeIs(1));
    EXPECT_EQ(taken.front().action, "default");
    EXPECT_EQ(taken.front().request, request("one"));
    EXPECT_THAT(responses.take(), IsEmpty());
}

TEST(HeldResponses, LeavesNotificationsOfOthersAlone)
{
    HeldResponses responses;
    responses.delivered(request("one"), 7);

    EXPECT_EQ(responses.invoked(8, "default"), std::nullopt);
    EXPECT_THAT(responses.take(), IsEmpty());
}

TEST(HeldResponses, ANumberOfAServerThatVanishedMeansNothing)
{
    HeldResponses responses;
    responses.delivered(request("one"), 7);
    responses.serverVanished();

    EXPECT_EQ(responses.invoked(7, "default"), std::nullopt);
}

TEST(HeldResponses, HoldsWhatWasAnsweredBeforeTheServerVanished)
{
    HeldResponses responses;
    responses.delivered(request("one"), 7);
    responses.invoked(7, "default");
    responses.serverVanished();

    EXPECT_THAT(responses.take(), SizeIs(1));
}

TEST(HeldResponses, RemembersNoMoreThanTheNewest)
{
    HeldResponses responses;
    for (std::uint32_t id = 1; id <= HeldResponses::kMostShown + 1; ++id)
        responses.delivered(request(std::to_string(id)), id);
    EXPECT_EQ(responses.invoked(1, "default"), std::nullopt);

    for (std::size_t i = 0; i < 2 * HeldResponses::kMostHeld; ++i)
        responses.invoked(2, "default");
    EXPECT_THAT(responses.take(), SizeIs(HeldResponses::kMostHeld));
}

}
}
