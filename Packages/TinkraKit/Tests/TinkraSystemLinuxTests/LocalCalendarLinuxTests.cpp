#include "TinkraSystemLinux/LocalCalendarLinux.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <stdexcept>

namespace Tinkra::System {
namespace {

class LocalCalendarLinuxTest : public testing::Test {
protected:
    ~LocalCalendarLinuxTest() override { ::unsetenv("TZ"); }

    DateComponents in(const char* zone, double seconds)
    {
        ::setenv("TZ", zone, 1);
        return calendar.components(instantAt(seconds));
    }

    LocalCalendarLinux calendar;
};

TEST_F(LocalCalendarLinuxTest, LooksTheZoneUpAtEachCall)
{
    EXPECT_EQ(in("Europe/Zurich", 1'704'099'600), (DateComponents{2024, 1, 1, 10, 0, 0}));
    EXPECT_EQ(in("America/New_York", 1'704'099'600), (DateComponents{2024, 1, 1, 4, 0, 0}));
    EXPECT_EQ(in("", 1'704'099'600), (DateComponents{2024, 1, 1, 9, 0, 0}));
}

TEST_F(LocalCalendarLinuxTest, KnowsBothSidesOfClockChanges)
{
    // 2023-10-29, when 02:30 occurred twice, and 2023-03-26, when 02:00 was followed by 03:00.
    EXPECT_EQ(in("Europe/Zurich", 1'698'539'400), (DateComponents{2023, 10, 29, 2, 30, 0}));
    EXPECT_EQ(in("Europe/Zurich", 1'698'543'000), (DateComponents{2023, 10, 29, 2, 30, 0}));
    EXPECT_EQ(in("Europe/Zurich", 1'679'792'399), (DateComponents{2023, 3, 26, 1, 59, 59}));
    EXPECT_EQ(in("Europe/Zurich", 1'679'792'400), (DateComponents{2023, 3, 26, 3, 0, 0}));
}

TEST_F(LocalCalendarLinuxTest, AnUnknownZoneIsUtc)
{
    EXPECT_EQ(in("Nowhere/At_All", 1'704'099'600), (DateComponents{2024, 1, 1, 9, 0, 0}));
}

TEST_F(LocalCalendarLinuxTest, ThrowsForInstantsWithoutATimeOfDay)
{
    for (const double second :
        {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
            -std::numeric_limits<double>::infinity(), 1e308, -1e308, 1e17})
        EXPECT_THROW(in("UTC", second), std::out_of_range) << second;
}

}
}
