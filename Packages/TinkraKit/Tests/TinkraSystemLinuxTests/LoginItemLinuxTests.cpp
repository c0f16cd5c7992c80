#include "TinkraSystemLinux/LoginItemLinux.h"
#include "TinkraTestSupport/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace Tinkra::System {
namespace {

class LoginItemLinuxTest : public testing::Test {
protected:
    TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "co.calendarmurkel.Tinkra.desktop";

    ServiceStatus statusWith(const std::string& entry)
    {
        std::ofstream(file) << entry;
        return LoginItemLinux(folder.path(), "/usr/bin/tinkra-app").status();
    }

    std::string entryFor(const char* program)
    {
        LoginItemLinux(folder.path(), program).registerItem();
        std::ifstream entry(file);
        return {std::istreambuf_iterator<char>(entry), {}};
    }
};

TEST_F(LoginItemLinuxTest, WritesAnEntryThatStartsTheProgram)
{
    EXPECT_EQ(entryFor("/usr/bin/tinkra-app"),
        "[Desktop Entry]\n"
        "Type=Application\n"
        "Name=Calendar Murkel\n"
        "Comment=Rings when your meetings start\n"
        "Icon=co.calendarmurkel.Tinkra\n"
        "Exec=\"/usr/bin/tinkra-app\"\n"
        "X-GNOME-Autostart-enabled=true\n");
}

TEST_F(LoginItemLinuxTest, QuotesOddNamesOfPrograms)
{
    EXPECT_NE(entryFor("/odd dir/100%/a\"b/$c/`d/e\\f")
                  .find("Exec=\"/odd dir/100%%/a\\\\\"b/\\\\$c/\\\\`d/e\\\\\\\\f\"\n"),
        std::string::npos);
}

TEST_F(LoginItemLinuxTest, AnEntryThatTheDesktopSwitchedOffRequiresApproval)
{
    EXPECT_EQ(statusWith("[Desktop Entry]\nHidden=true\n"), ServiceStatus::RequiresApproval);
    EXPECT_EQ(statusWith("[Desktop Entry]\nHidden = true \n"), ServiceStatus::RequiresApproval);
    EXPECT_EQ(
        statusWith("[Desktop Entry]\nX-GNOME-Autostart-enabled=false\r\n"), ServiceStatus::RequiresApproval);
}

TEST_F(LoginItemLinuxTest, AnEntryOfAnyOtherContentIsEnabled)
{
    for (const char* entry : {"", "[Desktop Entry]\nHidden=false\n", "[Desktop Entry]\nHidden=\n", "=\n[\n",
             "[Desktop Action x]\nHidden=true\n", "Hidden=true\n[Desktop Entry]\n",
             "[Desktop Entry]\nX-GNOME-Autostart-enabled=true\n"})
        EXPECT_EQ(statusWith(entry), ServiceStatus::Enabled) << entry;
}

TEST_F(LoginItemLinuxTest, AMaskedEntryRequiresApprovalAndRegisteringReplacesIt)
{
    std::filesystem::create_symlink("/dev/null", file);
    LoginItemLinux item(folder.path(), "/usr/bin/tinkra-app");
    EXPECT_EQ(item.status(), ServiceStatus::RequiresApproval);

    item.registerItem();

    EXPECT_EQ(item.status(), ServiceStatus::Enabled);
    EXPECT_FALSE(std::filesystem::is_symlink(file));
}

TEST_F(LoginItemLinuxTest, AnEntryTooLargeToBeOneRequiresApproval)
{
    EXPECT_EQ(statusWith(std::string(1 << 20, 'x')), ServiceStatus::RequiresApproval);
}

TEST_F(LoginItemLinuxTest, UnregisteringWhatIsNotThereIsFine)
{
    LoginItemLinux(folder.path() / "nowhere", "/usr/bin/tinkra-app").unregisterItem();

    EXPECT_FALSE(std::filesystem::exists(folder.path() / "nowhere"));
}

}
}
