#include "PrivateLoginManager/PrivateLoginManager.h"
#include "TinkraSystemLinux/PowerAssertionsLinux.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace Tinkra::System {
namespace {

std::optional<PowerAssertionID> hold(PowerAssertionsLinux& assertions)
{
    return assertions.create(kPreventUserIdleSystemSleep, kPowerAssertionLevelOn, "Tinkra alarm is imminent");
}

TEST(PowerAssertionsLinux, IsALockAgainstIdlenessUnderTheProductsName)
{
    PrivateLoginManager logind;
    PowerAssertionsLinux assertions;

    ASSERT_TRUE(hold(assertions));

    EXPECT_EQ(
        logind.inhibitors(), std::vector<std::string>{"idle|Calendar Murkel|Tinkra alarm is imminent|block"});
}

TEST(PowerAssertionsLinux, EndsAtTheLatestWithWhoHoldsIt)
{
    PrivateLoginManager logind;
    {
        PowerAssertionsLinux assertions;
        ASSERT_TRUE(hold(assertions));
        ASSERT_TRUE(logind.hasInhibitors(1));
    }

    EXPECT_TRUE(logind.hasInhibitors(0));
}

TEST(PowerAssertionsLinux, RefusesWhatHasNoCounterpart)
{
    PrivateLoginManager logind;
    PowerAssertionsLinux assertions;

    EXPECT_EQ(assertions.create("PreventUserIdleDisplaySleep", kPowerAssertionLevelOn, "x"), std::nullopt);
    EXPECT_EQ(assertions.create(kPreventUserIdleSystemSleep, 0, "x"), std::nullopt);

    EXPECT_TRUE(logind.inhibitors().empty());
}

TEST(PowerAssertionsLinux, IsRefusedOnABusWithoutLogind)
{
    const PrivateLoginManager bus(PrivateLoginManager::Service::Missing);
    PowerAssertionsLinux assertions;

    EXPECT_EQ(hold(assertions), std::nullopt);
}

TEST(PowerAssertionsLinux, IsRefusedWithoutABusAndGrantedOnceThereIsOne)
{
    PowerAssertionsLinux assertions;
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nowhere/at/all", 1);
    EXPECT_EQ(hold(assertions), std::nullopt);

    PrivateLoginManager logind;
    EXPECT_NE(hold(assertions), std::nullopt);
}

}
}
