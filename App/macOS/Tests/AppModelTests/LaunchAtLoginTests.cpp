#include "AppLinks.h"
#include "AppWorld.h"
#include "LaunchAtLogin.h"

#include <gtest/gtest.h>

namespace Tinkra {
namespace {

using Property = AppModel::Property;
using System::ServiceStatus;

class LoginOption : public testing::Test, protected AppWorld { };

TEST_F(LoginOption, OnWhenAlreadyEnabledMakesNoRegisterCall)
{
    loginItem->current = ServiceStatus::Enabled;
    launch();

    model->setLaunchAtLogin(true);

    EXPECT_EQ(loginItem->registrations, 0);
    EXPECT_TRUE(model->launchAtLogin());
}

TEST_F(LoginOption, OnWithAnyOtherStatusRegisters)
{
    for (const auto status :
        {ServiceStatus::NotRegistered, ServiceStatus::RequiresApproval, ServiceStatus::NotFound}) {
        AppWorld world;
        world.loginItem->current = status;
        world.launch();
        world.model->setLaunchAtLogin(true);
        EXPECT_EQ(world.loginItem->registrations, 1) << static_cast<int>(status);
        EXPECT_TRUE(world.model->launchAtLogin());
    }
}

TEST_F(LoginOption, OffWhenApprovalIsRequiredMakesNoCallAndReadsOff)
{
    loginItem->current = ServiceStatus::RequiresApproval;
    launch();

    model->setLaunchAtLogin(false);

    EXPECT_EQ(loginItem->unregistrations, 0);
    EXPECT_EQ(loginItem->current, ServiceStatus::RequiresApproval);
    EXPECT_FALSE(model->launchAtLogin());
}

TEST_F(LoginOption, OffWhenEnabledUnregistersOnce)
{
    loginItem->current = ServiceStatus::Enabled;
    launch();

    model->setLaunchAtLogin(false);

    EXPECT_EQ(loginItem->unregistrations, 1);
    EXPECT_FALSE(model->launchAtLogin());
}

TEST_F(LoginOption, AFailingRegisterLeavesItOffWithoutAMessage)
{
    launch();
    const auto status = model->statusMessage();
    noticed.clear();
    loginItem->refuses = true;

    model->setLaunchAtLogin(true);

    EXPECT_EQ(loginItem->registrations, 1);
    EXPECT_FALSE(model->launchAtLogin());
    EXPECT_EQ(model->statusMessage(), status);
    EXPECT_TRUE(noticed.empty());
}

TEST_F(LoginOption, ARegistrationThatWaitsForApprovalReadsOff)
{
    loginItem->statusOnceRegistered = ServiceStatus::RequiresApproval;
    launch();

    model->setLaunchAtLogin(true);

    EXPECT_FALSE(model->launchAtLogin());
}

TEST_F(LoginOption, IsNeitherSavedNorSynced)
{
    launch();
    calls->clear();

    model->setLaunchAtLogin(true);
    loop.drain();

    EXPECT_TRUE(store->saved().empty());
    EXPECT_TRUE(calls->calls().empty());
    EXPECT_EQ(notices(Property::launchAtLogin), 1U);
}

TEST(AppLinks, TheWebsiteIsAnAbsoluteHttpsAddress)
{
    EXPECT_TRUE(AppLinks::website().starts_with("https://"));
    EXPECT_EQ(&AppLinks::website(), &AppLinks::website());
}

}
}
