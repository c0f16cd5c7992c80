#include "TinkraSystemLinux/CalendarFolders/NoticeBundle.h"

#include <gtest/gtest.h>

namespace Tinkra::System {
namespace {

using namespace std::chrono_literals;

constexpr NoticeBundle::Clock::time_point kStart{100s};

TEST(NoticeBundle, TellsTheFirstChangeAfterItsDelay)
{
    NoticeBundle bundle;

    EXPECT_EQ(bundle.changed(kStart, 100ms), kStart + 100ms);
    EXPECT_FALSE(bundle.takeDue(kStart + 99ms));
    EXPECT_TRUE(bundle.takeDue(kStart + 100ms));
    EXPECT_FALSE(bundle.takeDue(kStart + 10s));
}

TEST(NoticeBundle, TellsChangesThatComeTogetherOnce)
{
    NoticeBundle bundle;
    bundle.changed(kStart, 100ms);

    EXPECT_EQ(bundle.changed(kStart + 50ms, 100ms), std::nullopt);
    EXPECT_TRUE(bundle.takeDue(kStart + 100ms));
}

TEST(NoticeBundle, LeavesASecondBetweenTwoNotices)
{
    NoticeBundle bundle;
    bundle.changed(kStart, 0ms);
    bundle.takeDue(kStart);

    EXPECT_EQ(bundle.changed(kStart + 10ms, 0ms), kStart + 1s);
}

TEST(NoticeBundle, LosesNoChange)
{
    NoticeBundle bundle;
    bundle.changed(kStart, 0ms);
    bundle.takeDue(kStart);
    bundle.changed(kStart + 10ms, 0ms);

    EXPECT_TRUE(bundle.takeDue(kStart + 1s));
}

TEST(NoticeBundle, MovesANoticeForwardForAMoreUrgentChange)
{
    NoticeBundle bundle;
    EXPECT_EQ(bundle.changed(kStart, 5s), kStart + 5s);
    EXPECT_EQ(bundle.changed(kStart + 1s, 100ms), kStart + 1100ms);
}

TEST(NoticeBundle, GivesAtMostOneNoticeASecondInAFlood)
{
    NoticeBundle bundle;
    int notices = 0;
    for (auto now = kStart; now < kStart + 60s; now += 1ms) {
        bundle.changed(now, 0ms);
        notices += bundle.takeDue(now) ? 1 : 0;
    }

    EXPECT_EQ(notices, 60);
}

}
}
