#include "TinkraSystemLinux/LoginItemLinux.h"
#include "TinkraTestSupport/FakeLoginItem.h"
#include "TinkraTestSupport/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>

namespace Tinkra::System {
namespace {

struct InMemory {
    std::shared_ptr<FakeLoginItem> item = std::make_shared<FakeLoginItem>();

    void switchOffElsewhere() const { item->current = ServiceStatus::RequiresApproval; }
    void refuse() const { item->refuses = true; }
};

struct OnDisk {
    TemporaryFolder folder;
    std::filesystem::path entries = folder.path() / "config" / "autostart";
    std::shared_ptr<LoginItemLinux> item = std::make_shared<LoginItemLinux>(entries, "/usr/bin/tinkra-app");

    void switchOffElsewhere() const
    {
        std::ofstream(entries / LoginItemLinux::fileName, std::ios::app) << "Hidden=true\n";
    }
    void refuse() const { std::ofstream(folder.path() / "config"); } // no folder can be made below a file
};

template <typename Kind> class LoginItemContract : public testing::Test {
protected:
    Kind kind;
    LoginItem& item = *kind.item;
};

using Kinds = testing::Types<InMemory, OnDisk>;
TYPED_TEST_SUITE(LoginItemContract, Kinds);

TYPED_TEST(LoginItemContract, IsNotRegisteredAtFirst)
{
    EXPECT_EQ(this->item.status(), ServiceStatus::NotRegistered);
}

TYPED_TEST(LoginItemContract, IsEnabledOnceRegisteredHoweverOften)
{
    this->item.registerItem();
    this->item.registerItem();

    EXPECT_EQ(this->item.status(), ServiceStatus::Enabled);
}

TYPED_TEST(LoginItemContract, IsNotRegisteredOnceUnregistered)
{
    this->item.registerItem();
    this->item.unregisterItem();

    EXPECT_EQ(this->item.status(), ServiceStatus::NotRegistered);
}

TYPED_TEST(LoginItemContract, SwitchedOffElsewhereRequiresApprovalUntilItIsRegistered)
{
    this->item.registerItem();
    this->kind.switchOffElsewhere();
    EXPECT_EQ(this->item.status(), ServiceStatus::RequiresApproval);

    this->item.registerItem();
    EXPECT_EQ(this->item.status(), ServiceStatus::Enabled);
}

TYPED_TEST(LoginItemContract, ARefusalIsThrownAndChangesNothing)
{
    this->kind.refuse();

    EXPECT_THROW(this->item.registerItem(), std::exception);
    EXPECT_EQ(this->item.status(), ServiceStatus::NotRegistered);
}

}
}
