#include "PrivateBus/PrivateBus.h"

#include "TinkraSystem/NotificationCenterDelegate.h"
#include "TinkraSystemLinux/ClockLinux.h"
#include "TinkraSystemLinux/LocalCalendarLinux.h"
#include "TinkraSystemLinux/MessageBus.h"
#include "TinkraSystemLinux/NotificationCenterLinux.h"
#include "TinkraTestSupport/FakeNotificationCenter.h"
#include "TinkraTestSupport/TestLoop.h"

#include <gmock/gmock.h>
#include <sdbus-c++/sdbus-c++.h>

#include <atomic>
#include <optional>

namespace Tinkra::System {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct InMemory {
    std::shared_ptr<FakeNotificationCenter> fake = std::make_shared<FakeNotificationCenter>();
    std::shared_ptr<NotificationCenter> center = fake;

    void showsNotifications() { }
    void deliver(TestLoop& loop, NotificationRequest request)
    {
        loop.runInRealTime(center->add(request));
        fake->deliver(request.identifier);
        m_delivered = std::move(request);
    }
    void click() { fake->respond({kDefaultActionIdentifier, m_delivered}); }

private:
    NotificationRequest m_delivered;
};

/// A notification server that shows everything to nobody.
class NotificationServer {
public:
    NotificationServer()
    {
        m_object->registerMethod("GetCapabilities").onInterface(kInterface).implementedAs([] {
            return std::vector<std::string>{"body", "actions"};
        });
        m_object->registerMethod("GetServerInformation").onInterface(kInterface).implementedAs([] {
            return std::tuple<std::string, std::string, std::string, std::string>("test", "", "1", "1.2");
        });
        m_object->registerMethod("Notify")
            .onInterface(kInterface)
            .implementedAs(
                [this](const std::string&, std::uint32_t, const std::string&, const std::string&,
                    const std::string&, const std::vector<std::string>&,
                    const std::map<std::string, sdbus::Variant>&, std::int32_t) { return ++m_shown; });
        m_object->registerSignal("ActionInvoked")
            .onInterface(kInterface)
            .withParameters<std::uint32_t, std::string>();
        m_object->finishRegistration();
        m_connection->requestName(kInterface);
        m_connection->enterEventLoopAsync();
    }

    std::uint32_t shown() const { return m_shown; }
    void click(std::uint32_t id)
    {
        m_object->emitSignal("ActionInvoked")
            .onInterface(kInterface)
            .withArguments(id, std::string("default"));
    }

private:
    static constexpr auto kInterface = "org.freedesktop.Notifications";

    std::atomic<std::uint32_t> m_shown = 0;
    std::unique_ptr<sdbus::IConnection> m_connection = sdbus::createSessionBusConnection();
    std::unique_ptr<sdbus::IObject> m_object =
        sdbus::createObject(*m_connection, "/org/freedesktop/Notifications");
};

Task<> waitUntil(std::function<bool()> condition)
{
    while (!condition())
        co_await ClockLinux().sleepFor(Seconds(0.005), {});
}

/// The daemon of this build on a bus of the test's own.
struct OfTheDesktop {
    PrivateBus bus;
    std::optional<NotificationServer> server;

    void showsNotifications() { server.emplace(); }
    void deliver(TestLoop& loop, NotificationRequest request)
    {
        request.trigger.components = LocalCalendarLinux().components(ClockLinux().now());
        loop.runInRealTime(center->add(request));
        loop.runInRealTime(waitUntil([this] { return server->shown() > 0; }));
        // The daemon has heard the server's answer when it answers again itself.
        loop.runInRealTime(center->pendingRequests());
    }
    void click() { server->click(1); }

    std::shared_ptr<NotificationCenter> center =
        std::make_shared<NotificationCenterLinux>(std::make_shared<MessageBus>(MessageBus::Kind::Session));
};

NotificationRequest request(std::string identifier)
{
    return {.identifier = std::move(identifier), .trigger = {.components = {2100, 1, 1, 0, 0, 0}}};
}

using Kinds = testing::Types<InMemory, OfTheDesktop>;

class Listener final : public NotificationCenterDelegate {
public:
    std::vector<std::string> presented;
    std::vector<std::pair<std::string, std::string>> received; ///< action and request

    Task<std::uint32_t> willPresent(NotificationRequest arrived) override
    {
        presented.push_back(arrived.identifier);
        co_return 0;
    }
    Task<> didReceive(NotificationResponse response) override
    {
        received.emplace_back(response.actionIdentifier, response.request.identifier);
        co_return;
    }
};

template <typename Kind> class NotificationDelegateContract : public testing::Test {
protected:
    NotificationDelegateContract() { kind.showsNotifications(); }

    void listen(bool isActive)
    {
        kind.center->setDelegate(listener, loop.executor(), [isActive] { return isActive; });
        loop.runInRealTime(kind.center->pendingRequests()); // the daemon runs, and is watched
    }
    void deliver(std::string identifier) { kind.deliver(loop, request(std::move(identifier))); }
    void waitFor(std::function<bool()> condition) { loop.runInRealTime(waitUntil(std::move(condition))); }

    TestLoop loop;
    Kind kind;
    std::shared_ptr<Listener> listener = std::make_shared<Listener>();
};

TYPED_TEST_SUITE(NotificationDelegateContract, Kinds);

const std::pair<std::string, std::string> kClickOnOne{kDefaultActionIdentifier, "one"};

TYPED_TEST(NotificationDelegateContract, AnActiveApplicationHearsOfADelivery)
{
    this->listen(true);
    this->deliver("one");

    this->waitFor([&] { return !this->listener->presented.empty(); });
    EXPECT_THAT(this->listener->presented, ElementsAre("one"));
}

TYPED_TEST(NotificationDelegateContract, AnInactiveApplicationHearsOfTheResponseAlone)
{
    this->listen(false);
    this->deliver("one");
    this->kind.click();

    this->waitFor([&] { return !this->listener->received.empty(); });
    EXPECT_THAT(this->listener->received, ElementsAre(kClickOnOne));
    EXPECT_THAT(this->listener->presented, IsEmpty());
}

TYPED_TEST(NotificationDelegateContract, AResponseIsHeldUntilThereIsADelegate)
{
    this->deliver("one");
    this->kind.click();
    this->listen(false);

    this->waitFor([&] { return !this->listener->received.empty(); });
    EXPECT_THAT(this->listener->received, ElementsAre(kClickOnOne));
}

TYPED_TEST(NotificationDelegateContract, ADelegateIsNotKeptAlive)
{
    this->listen(true);
    const std::weak_ptr weak = this->listener;
    this->listener = nullptr;

    EXPECT_TRUE(weak.expired());
    this->deliver("one"); // and nobody is called
    this->kind.click();
}

}
}
