#include "TinkraSystemMac/NotificationCalls.h"

#include "TinkraTestSupport/TestLoop.h"

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>

namespace Tinkra::System {
namespace {

class RecordingDelegate final : public NotificationCenterDelegate {
public:
    Task<std::uint32_t> willPresent(NotificationRequest request) override
    {
        if (request.identifier == "broken")
            throw std::runtime_error("broken");
        presented = std::move(request);
        co_return BannerPresentation | ListPresentation | SoundPresentation;
    }

    Task<> didReceive(NotificationResponse response) override
    {
        if (response.actionIdentifier == "broken")
            throw std::runtime_error("broken");
        received = std::move(response);
        co_return;
    }

    std::optional<NotificationRequest> presented;
    std::optional<NotificationResponse> received;
};

class NotificationCallsTest : public testing::Test {
protected:
    std::vector<std::uint32_t> present(const std::string& identifier)
    {
        std::vector<std::uint32_t> answers;
        calls.willPresent({.identifier = identifier, .content = {}, .trigger = {}},
            [&answers](std::uint32_t options) { answers.push_back(options); });
        EXPECT_TRUE(answers.empty()) << "the delegate is called on the main thread";
        loop.drain();
        return answers;
    }

    int receive(const std::string& action)
    {
        int answers = 0;
        calls.didReceive({.actionIdentifier = action, .request = {}}, [&answers] { ++answers; });
        loop.drain();
        return answers;
    }

    TestLoop loop;
    std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
    NotificationCalls calls{loop.executor(), delegate};
};

TEST_F(NotificationCallsTest, AnswersOnceWithTheOptionsOfTheDelegate)
{
    EXPECT_EQ(present("standup"), std::vector<std::uint32_t>{26});
    EXPECT_EQ(delegate->presented->identifier, "standup");
}

TEST_F(NotificationCallsTest, AnswersOnceWithoutOptionsWhenTheDelegateThrows)
{
    EXPECT_EQ(present("broken"), std::vector<std::uint32_t>{0});
}

TEST_F(NotificationCallsTest, AnswersOnceWithoutOptionsWhenTheDelegateIsGone)
{
    delegate.reset();

    EXPECT_EQ(present("standup"), std::vector<std::uint32_t>{0});
}

TEST_F(NotificationCallsTest, CompletesAResponseOnceAfterTheDelegateHasHeardOfIt)
{
    EXPECT_EQ(receive("default"), 1);
    EXPECT_EQ(delegate->received->actionIdentifier, "default");
}

TEST_F(NotificationCallsTest, CompletesAResponseOnceWhenTheDelegateThrowsOrIsGone)
{
    EXPECT_EQ(receive("broken"), 1);
    delegate.reset();
    EXPECT_EQ(receive("default"), 1);
}

}
}
