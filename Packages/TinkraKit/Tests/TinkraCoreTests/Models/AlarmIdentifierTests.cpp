#include "TinkraCore/Models/ScheduledAlarm.h"

#include "TinkraTestSupport/Printing.h"

#include <gtest/gtest.h>

#include <limits>

namespace Tinkra {
namespace {

Text idAt(double seconds)
{
    return alarmID("abc", instantAt(seconds));
}

TEST(AlarmIdentifier, IsTheMeetingAndTheFireTimeInWholeSeconds)
{
    EXPECT_EQ(idAt(1000), Text("abc#1000"));
    EXPECT_EQ(idAt(1'700'049'600), Text("abc#1700049600"));
    EXPECT_EQ(
        alarmID("ABC123:XYZ@1704099600", instantAt(1'704'099'000)), Text("ABC123:XYZ@1704099600#1704099000"));
}

TEST(AlarmIdentifier, RoundsHalvesAwayFromZero)
{
    EXPECT_EQ(idAt(1000.5), Text("abc#1001"));
    EXPECT_EQ(idAt(999.5), Text("abc#1000"));
    EXPECT_EQ(idAt(-0.5), Text("abc#-1"));
    EXPECT_EQ(idAt(-1.5), Text("abc#-2"));
    EXPECT_EQ(idAt(2.5), Text("abc#3"));
}

TEST(AlarmIdentifier, RoundsOtherFractionsToTheNearestSecond)
{
    EXPECT_EQ(idAt(999.4), Text("abc#999"));
    EXPECT_EQ(idAt(999.6), Text("abc#1000"));
    EXPECT_EQ(idAt(-0.4), Text("abc#0"));
    EXPECT_EQ(idAt(0.49999999999999994), Text("abc#0")); // adding a half and cutting off would give 1
    EXPECT_EQ(idAt(4503599627370497.0), Text("abc#4503599627370497")); // and here one too many
}

TEST(AlarmIdentifier, ReachesAsFarAsAWholeNumberOf64Bits)
{
    EXPECT_EQ(idAt(-9'223'372'036'854'775'808.0), Text("abc#-9223372036854775808"));
    EXPECT_EQ(idAt(9'223'372'036'854'774'784.0), Text("abc#9223372036854774784"));
}

TEST(AlarmIdentifier, KeepsTheBytesOfTheMeetingIdentifier)
{
    EXPECT_EQ(alarmID("cafe\u0301#1", instantAt(2)).utf8(), "cafe\u0301#1#2");
    EXPECT_EQ(alarmID("", instantAt(2)).utf8(), "#2");
}

TEST(AlarmIdentifierDeathTest, EndsTheProgramWhenTheSecondsDoNotFit)
{
    EXPECT_DEATH(idAt(9'223'372'036'854'775'808.0), "does not fit");
    EXPECT_DEATH(idAt(-9'223'372'036'854'777'856.0), "does not fit");
    EXPECT_DEATH(idAt(std::numeric_limits<double>::infinity()), "does not fit");
    EXPECT_DEATH(idAt(-std::numeric_limits<double>::infinity()), "does not fit");
    EXPECT_DEATH(idAt(std::numeric_limits<double>::quiet_NaN()), "does not fit");
}

}
}
