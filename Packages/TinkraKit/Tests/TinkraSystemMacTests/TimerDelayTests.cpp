#include "TinkraSystemMac/TimerDelay.h"

#include <gtest/gtest.h>

#include <limits>

namespace Tinkra::System {
namespace {

using std::chrono::hours;
using std::chrono::nanoseconds;

TEST(TimerDelay, IsNothingForWhatIsDue)
{
    EXPECT_EQ(timerDelay(0), nanoseconds(0));
    EXPECT_EQ(timerDelay(-5), nanoseconds(0));
}

TEST(TimerDelay, IsRoundedUpSoThatNobodyWakesEarly)
{
    EXPECT_EQ(timerDelay(1.25), nanoseconds(1'250'000'000));
    EXPECT_EQ(timerDelay(1e-12), nanoseconds(1));
}

TEST(TimerDelay, IsADayAtMost)
{
    EXPECT_EQ(timerDelay(86'401), hours(24));
    EXPECT_EQ(timerDelay(std::numeric_limits<double>::infinity()), hours(24));
}

}
}
