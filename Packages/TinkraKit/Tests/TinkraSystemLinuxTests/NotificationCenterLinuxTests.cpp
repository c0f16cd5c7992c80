#include "TinkraSystemLinux/NotificationCenterLinux.h"

#include "PrivateBus/PrivateBus.h"

#include "TinkraSystemLinux/MessageBus.h"
#include "TinkraTestSupport/TestLoop.h"

#include <gmock/gmock.h>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

namespace Tinkra::System {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

constexpr NotificationCenterLinux::Limits short_{
    .listing = std::chrono::milliseconds(50), .other = std::chrono::milliseconds(50)};

NotificationRequest request(std::string identifier)
{
    return {.identifier = std::move(identifier), .trigger = {.components = {2100, 1, 1, 0, 0, 0}}};
}

/// The sentence that arming fails with.
std::string troubleWithAdding(TestLoop& loop, NotificationCenter& center)
{
    try {
        loop.runInRealTime(center.add(request("one")));
    } catch (const NotificationCenterError& error) {
        return error.what();
    }
    return "";
}

std::unique_ptr<NotificationCenterLinux> makeCenter(NotificationCenterLinux::Limits limits = {})
{
    return std::make_unique<NotificationCenterLinux>(
        std::make_shared<MessageBus>(MessageBus::Kind::Session), limits);
}

/// A place where connections are accepted and nobody ever answers.
class SilentBus {
public:
    SilentBus()
    {
        const auto path = (m_folder.path() / "bus").string();
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
        EXPECT_EQ(::bind(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        EXPECT_EQ(::listen(m_socket, 8), 0);
        ::setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + path).c_str(), 1);
    }
    SilentBus(const SilentBus&) = delete;
    SilentBus& operator=(const SilentBus&) = delete;
    ~SilentBus()
    {
        ::close(m_socket);
        ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
    }

private:
    TemporaryFolder m_folder;
    int m_socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
};

class WithoutABus : public testing::Test {
protected:
    WithoutABus() { ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/at/all", 1); }
    ~WithoutABus() override { ::unsetenv("DBUS_SESSION_BUS_ADDRESS"); }

    TestLoop loop;
    std::unique_ptr<NotificationCenterLinux> center = makeCenter();
};

TEST_F(WithoutABus, ListingIsEmpty)
{
    EXPECT_THAT(loop.runInRealTime(center->pendingRequests()), IsEmpty());
}

TEST_F(WithoutABus, ArmingThrowsASentenceThatSaysWhatToDo)
{
    const auto trouble = troubleWithAdding(loop, *center);

    EXPECT_THAT(trouble, HasSubstr("Alarms are not armed"));
    EXPECT_THAT(trouble, HasSubstr("tinkra doctor"));
}

TEST_F(WithoutABus, CancellingIsQuiet)
{
    EXPECT_NO_THROW(loop.runInRealTime(center->removePending({"one"})));
}

TEST_F(WithoutABus, NotificationsCountAsDenied)
{
    EXPECT_EQ(loop.runInRealTime(center->authorizationStatus()), NotificationAuthorization::Denied);
    EXPECT_THROW(loop.runInRealTime(center->requestAuthorization(AlertOption)), NotificationCenterError);
}

TEST(WithASilentBus, EveryCallEndsAndSoDoesTheCenter)
{
    const SilentBus bus;
    TestLoop loop;
    const auto center = makeCenter(short_);

    EXPECT_THAT(loop.runInRealTime(center->pendingRequests()), IsEmpty());
    EXPECT_THAT(troubleWithAdding(loop, *center), HasSubstr("Alarms are not armed"));
}

TEST(WithASilentBus, OtherStepsOfTheExecutorRunMeanwhile)
{
    const SilentBus bus;
    TestLoop loop;
    const auto center = makeCenter();

    // Returns as soon as nothing can run; a call that blocked would hold it up for seconds.
    const auto listing = loop.start(center->pendingRequests());

    EXPECT_FALSE(listing.isDone());
}

TEST(WithARealBus, SaysThatTheServiceIsNotInstalled)
{
    const PrivateBus bus(PrivateBus::Service::Missing);
    TestLoop loop;
    const auto center = makeCenter();

    EXPECT_THAT(troubleWithAdding(loop, *center), HasSubstr("Alarms are not armed"));
}

TEST(WithARealBus, SaysThatTheServiceCannotBeStarted)
{
    const PrivateBus bus(PrivateBus::Service::Broken);
    TestLoop loop;
    const auto center = makeCenter();

    EXPECT_THAT(troubleWithAdding(loop, *center), HasSubstr("Alarms are not armed"));
}

TEST(WithARealBus, ReplacesTextThatIsNotUtf8BeforeItReachesTheBus)
{
    const PrivateBus bus;
    TestLoop loop;
    const auto center = makeCenter();
    auto bad = request("caf\xE9");
    bad.content.body = std::string("a\0b", 3);
    bad.content.userInfo = {{"title\xFF", "\xC0"}};

    loop.runInRealTime(center->add(bad));
    loop.runInRealTime(center->add(request("two")));

    const auto pending = loop.runInRealTime(center->pendingRequests());
    ASSERT_EQ(pending.size(), 2U);
    EXPECT_EQ(pending[0].identifier, "caf\xEF\xBF\xBD");
    EXPECT_EQ(pending[0].content.body,
        "a\xEF\xBF\xBD"
        "b");
    EXPECT_EQ(pending[0].content.userInfo, (UserInfo{{"title\xEF\xBF\xBD", "\xEF\xBF\xBD"}}));

    loop.runInRealTime(center->removePending({"caf\xE9"}));
    EXPECT_EQ(loop.runInRealTime(center->pendingRequests()).size(), 1U);
}

TEST(WithARealBus, ARefusalOfTheServiceIsPassedOnInItsWords)
{
    const PrivateBus bus;
    TestLoop loop;
    const auto center = makeCenter();
    auto impossible = request("one");
    impossible.trigger.components.month = 13;

    try {
        loop.runInRealTime(center->add(impossible));
        FAIL() << "the request was taken";
    } catch (const NotificationCenterError& error) {
        EXPECT_THAT(error.what(), HasSubstr("components"));
    }
}

TEST(WithARealBus, ConnectsAnewAfterTheBusWasRestarted)
{
    PrivateBus bus;
    TestLoop loop;
    const auto center = makeCenter();
    loop.runInRealTime(center->add(request("one")));

    bus.restart();

    // The first call may still find the old connection dying; what is armed is on the disk.
    (void)loop.runInRealTime(center->pendingRequests());
    EXPECT_EQ(loop.runInRealTime(center->pendingRequests()).size(), 1U);
}

TEST(WithARealBus, AnswersManyCallsAtOnceEachWithItsOwn)
{
    const PrivateBus bus;
    TestLoop loop;
    const auto center = makeCenter();
    std::vector<StartedTask<void>> calls;
    for (int number = 0; number < 50; ++number)
        calls.push_back(loop.start(center->add(request(std::to_string(number)))));

    EXPECT_LE(loop.runInRealTime(center->pendingRequests()).size(), 50U);
    EXPECT_EQ(loop.runInRealTime(center->pendingRequests()).size(), 50U);
    for (const auto& call : calls)
        EXPECT_NO_THROW(call.result());
}

}
}
