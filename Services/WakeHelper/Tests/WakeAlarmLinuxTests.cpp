#include "WakeHelper/WakeAlarmLinux.h"

#include "TinkraTestSupport/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace Tinkra::WakeHelper {
namespace {

/// Where the kernel's timer may not be used, the clock's file is; each has a test that holds on either kind
/// of machine.
class WakeAlarmTest : public testing::Test {
protected:
    TemporaryFolder folder;
    std::filesystem::path clock = folder.path() / "wakealarm";

    void SetUp() override { std::ofstream{clock}; }

    std::string clockHolds() const
    {
        std::ifstream file(clock);
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

TEST_F(WakeAlarmTest, TakesATimeAndNone)
{
    WakeAlarmLinux alarm(clock);

    ASSERT_NE(alarm.means(), WakeAlarmLinux::Means::Nothing);
    EXPECT_TRUE(alarm.set(4'000'000'000));
    EXPECT_TRUE(alarm.set(std::nullopt));
}

TEST_F(WakeAlarmTest, TouchesTheClockOnlyWhereThereIsNoTimer)
{
    WakeAlarmLinux alarm(clock);

    alarm.set(4'000'000'000);

    // A plain file keeps the longer of the two texts that are written from its start.
    EXPECT_EQ(clockHolds(), alarm.means() == WakeAlarmLinux::Means::KernelTimer ? "" : "4000000000");
}

TEST_F(WakeAlarmTest, WithoutEitherItSaysSo)
{
    WakeAlarmLinux alarm(folder.path() / "nowhere");

    const bool hasTimer = alarm.means() == WakeAlarmLinux::Means::KernelTimer;
    EXPECT_EQ(alarm.set(4'000'000'000), hasTimer);
    EXPECT_EQ(alarm.descriptor() >= 0, hasTimer);
}

}
}
