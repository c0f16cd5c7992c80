#include "TinkraSystemLinux/HelperServiceLinux.h"
#include "TinkraTestSupport/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>

namespace Tinkra::System {
namespace {

class HelperServiceLinuxTest : public testing::Test {
protected:
    TemporaryFolder root;
    std::filesystem::path units = root.path() / "usr/lib/systemd/system";
    std::filesystem::path administrators = root.path() / "etc/systemd/system";

    void SetUp() override
    {
        std::filesystem::create_directories(units);
        std::filesystem::create_directories(administrators / "multi-user.target.wants");
    }

    void install() const { std::ofstream(units / HelperServiceLinux::unit) << "[Service]\n"; }
    void enable() const
    {
        std::filesystem::create_symlink(units / HelperServiceLinux::unit,
            administrators / "multi-user.target.wants" / HelperServiceLinux::unit);
    }

    ServiceStatus status() const { return HelperServiceLinux(root.path()).status(); }

    std::string refusal() const
    {
        try {
            HelperServiceLinux(root.path()).registerService();
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "none";
    }
};

TEST_F(HelperServiceLinuxTest, ThatIsNotInstalledIsNotFound)
{
    EXPECT_EQ(status(), ServiceStatus::NotFound);
    EXPECT_EQ(refusal(), "tinkra-wakehelper.service is not installed");
}

TEST_F(HelperServiceLinuxTest, ThatIsInstalledAndNotEnabledRequiresApproval)
{
    install();

    EXPECT_EQ(status(), ServiceStatus::RequiresApproval);
    EXPECT_EQ(
        refusal(), "only an administrator can enable it: systemctl enable --now tinkra-wakehelper.service");
}

TEST_F(HelperServiceLinuxTest, ThatIsWantedByATargetIsEnabled)
{
    install();
    enable();

    EXPECT_EQ(status(), ServiceStatus::Enabled);
}

TEST_F(HelperServiceLinuxTest, ThatIsMaskedRequiresApproval)
{
    install();
    enable();
    std::filesystem::create_symlink("/dev/null", administrators / HelperServiceLinux::unit);

    EXPECT_EQ(status(), ServiceStatus::RequiresApproval);
}

TEST_F(HelperServiceLinuxTest, ALinkThatIsLeftOverAfterRemovalDoesNotCount)
{
    enable();

    EXPECT_EQ(status(), ServiceStatus::NotFound);
}

TEST_F(HelperServiceLinuxTest, AMachineWithoutSystemdHasNone)
{
    EXPECT_EQ(HelperServiceLinux(root.path() / "nowhere").status(), ServiceStatus::NotFound);
}

}
}
