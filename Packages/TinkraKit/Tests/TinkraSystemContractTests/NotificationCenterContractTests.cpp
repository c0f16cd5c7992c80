#include "NotificationCenterContract.h"

#include "PrivateBus/PrivateBus.h"

#include "TinkraSystemLinux/MessageBus.h"
#include "TinkraSystemLinux/NotificationCenterLinux.h"
#include "TinkraTestSupport/FakeNotificationCenter.h"

namespace Tinkra::System {
namespace {

struct InMemory {
    std::shared_ptr<NotificationCenter> center = std::make_shared<FakeNotificationCenter>();
};

/// The daemon of this build on a bus of the test's own.
struct OfTheDesktop {
    PrivateBus bus;
    std::shared_ptr<NotificationCenter> center =
        std::make_shared<NotificationCenterLinux>(std::make_shared<MessageBus>(MessageBus::Kind::Session));
};

using Kinds = testing::Types<InMemory, OfTheDesktop>;
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, NotificationCenterContract, Kinds);

}
}
