#include "TinkraSystemMac/BundledNotices.h"

#include "TinkraTestSupport/Builders.h"
#include "TinkraTestSupport/TestClock.h"

#include <gtest/gtest.h>

namespace Tinkra::System {
namespace {

class BundledNoticesTest : public testing::Test {
protected:
    void change()
    {
        notices->changed();
        loop.drain();
    }

    int count = 0;
    TestLoop loop;
    std::shared_ptr<TestClock> clock = std::make_shared<TestClock>(loop, noon);
    std::shared_ptr<BundledNotices> notices =
        std::make_shared<BundledNotices>(loop.executor(), clock, [this] { ++count; });
};

TEST_F(BundledNoticesTest, TellsTheFirstChangeAtOnce)
{
    change();

    EXPECT_EQ(count, 1);
    clock->advance(BundledNotices::kInterval);
}

TEST_F(BundledNoticesTest, TellsAllChangesOfASecondTogetherAtItsEnd)
{
    change();
    change();
    change();
    EXPECT_EQ(count, 1);

    clock->advance(BundledNotices::kInterval);
    EXPECT_EQ(count, 2);

    clock->advance(BundledNotices::kInterval);
    EXPECT_EQ(count, 2);
}

TEST_F(BundledNoticesTest, TellsAtOnceAgainAfterAQuietSecond)
{
    change();
    clock->advance(BundledNotices::kInterval);
    clock->expectNobodyAsleep();

    change();

    EXPECT_EQ(count, 2);
    clock->advance(BundledNotices::kInterval);
}

TEST_F(BundledNoticesTest, DoesNotCallTheObserverWhereTheChangeIsReported)
{
    notices->changed();

    EXPECT_EQ(count, 0);
    loop.drain();
    EXPECT_EQ(count, 1);
    clock->advance(BundledNotices::kInterval);
}

TEST_F(BundledNoticesTest, TellsNothingOnceItHasEnded)
{
    change();
    change();

    notices->end();
    clock->advance(BundledNotices::kInterval);
    change();

    EXPECT_EQ(count, 1);
}

TEST_F(BundledNoticesTest, MayEndFromWithinANotice)
{
    const auto ending = std::make_shared<std::shared_ptr<BundledNotices>>();
    *ending = std::make_shared<BundledNotices>(loop.executor(), clock, [this, ending] {
        ++count;
        (*ending)->end();
    });

    (*ending)->changed();
    (*ending)->changed();
    loop.drain();

    EXPECT_EQ(count, 1);
    clock->expectNobodyAsleep();
    ending->reset();
}

}
}
