#include "TinkraSystemMac/UnbundledNotificationCenter.h"

#include "TinkraTestSupport/TestLoop.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace Tinkra::System {
namespace {

TEST(UnbundledNotificationCenter, IsDeniedAndEmpty)
{
    UnbundledNotificationCenter center;

    EXPECT_EQ(run(center.authorizationStatus()), NotificationAuthorization::Denied);
    EXPECT_TRUE(run(center.pendingRequests()).empty());
    run(center.removePending({"standup"}));
}

TEST(UnbundledNotificationCenter, SaysWhyItCannotArmAnything)
{
    UnbundledNotificationCenter center;

    EXPECT_THROW(run(center.requestAuthorization(AlertOption)), std::runtime_error);
    EXPECT_THROW(
        run(center.add({.identifier = "standup", .content = {}, .trigger = {}})), std::runtime_error);
}

}
}
