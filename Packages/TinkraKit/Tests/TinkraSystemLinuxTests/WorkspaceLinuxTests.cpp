#include "TinkraSystemLinux/WorkspaceLinux.h"
#include "TinkraTestSupport/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

#include <pwd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace Tinkra::System {
namespace {

namespace fs = std::filesystem;

/// Programs of the test's own stand first in PATH and write down what they are asked for.
class WorkspaceLinuxTest : public testing::Test {
protected:
    TemporaryFolder folder;
    std::string path = std::getenv("PATH");
    WorkspaceLinux workspace{folder.path() / "journal"};

    void SetUp() override { ::setenv("PATH", (folder.path().string() + ":/usr/bin:/bin").c_str(), 1); }
    void TearDown() override { ::setenv("PATH", path.c_str(), 1); }

    void provide(const std::string& program) const
    {
        const auto file = folder.path() / program;
        std::ofstream(file) << "#!/bin/sh\necho \"" << program << " $*\" >" << folder.path().string()
                            << "/part && mv " << folder.path().string() << "/part " << folder.path().string()
                            << "/asked\n";
        fs::permissions(file, fs::perms{0755});
    }

    /// The first line that a program writes, within ten seconds.
    std::string asked() const
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (!fs::exists(folder.path() / "asked") && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        std::ifstream file(folder.path() / "asked");
        std::string line;
        std::getline(file, line);
        return line;
    }
};

TEST_F(WorkspaceLinuxTest, OpensWebAddressesInTheUsersBrowser)
{
    provide("xdg-open");

    EXPECT_TRUE(workspace.open("https://calendarmurkel.co/?a=1&b=$HOME"));

    EXPECT_EQ(asked(), "xdg-open https://calendarmurkel.co/?a=1&b=$HOME");
}

TEST_F(WorkspaceLinuxTest, OpensTheDesktopsSettingsForThePrivacyPane)
{
    provide("gnome-control-center");

    EXPECT_TRUE(workspace.open("x-apple.systempreferences:com.apple.preference.security?Privacy_Calendars"));

    EXPECT_EQ(asked(), "gnome-control-center online-accounts");
}

TEST_F(WorkspaceLinuxTest, OpensNothingElse)
{
    provide("xdg-open");
    for (const char* address : {"", "--help", "file:///etc/passwd", "javascript:alert(1)", "/etc/passwd"})
        EXPECT_FALSE(workspace.open(address)) << address;

    EXPECT_FALSE(fs::exists(folder.path() / "asked"));
}

TEST_F(WorkspaceLinuxTest, WhatNobodyCanOpenIsNotOpened)
{
    ::setenv("PATH", folder.path().c_str(), 1);

    EXPECT_FALSE(workspace.open("https://calendarmurkel.co/"));
}

TEST_F(WorkspaceLinuxTest, TheNameIsThatOfTheAccountDatabase)
{
    const auto* account = ::getpwuid(::getuid());
    const std::string gecos = account->pw_gecos;
    const auto full = gecos.substr(0, gecos.find(','));

    EXPECT_EQ(workspace.fullUserName(), full.empty() ? account->pw_name : full);
}

TEST_F(WorkspaceLinuxTest, ALineGoesToTheJournalWhole)
{
    const int journal = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const auto name = (folder.path() / "journal").string();
    ASSERT_LT(name.size(), sizeof address.sun_path);
    std::copy(name.begin(), name.end(), address.sun_path);
    ASSERT_EQ(::bind(journal, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);

    workspace.log("CalendarMurkel: two\nlines");

    std::array<char, 1000> buffer{};
    const auto size = ::recv(journal, buffer.data(), buffer.size(), MSG_DONTWAIT);
    ::close(journal);
    ASSERT_GT(size, 0);
    const std::string entry(buffer.data(), static_cast<std::size_t>(size));
    using namespace std::string_literals;
    EXPECT_EQ(entry,
        "MESSAGE\n\x19\0\0\0\0\0\0\0CalendarMurkel: two\nlines\n"
        "PRIORITY\n\x01\0\0\0\0\0\0\0"
        "6\n"
        "SYSLOG_IDENTIFIER\n\x0a\0\0\0\0\0\0\0tinkra-app\n"s);
}

TEST_F(WorkspaceLinuxTest, WithoutAJournalALineGoesToStandardError)
{
    testing::internal::CaptureStderr();

    workspace.log("CalendarMurkel: a line");

    EXPECT_EQ(testing::internal::GetCapturedStderr(), "CalendarMurkel: a line\n");
}

TEST_F(WorkspaceLinuxTest, WithoutABusWakesAreNotToldOfAndTheLogSaysSo)
{
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nowhere/at/all", 1);
    testing::internal::CaptureStderr();

    workspace.observeDidWake([] { FAIL(); }).reset();

    ::unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
    EXPECT_NE(testing::internal::GetCapturedStderr().find("wakes are not told of"), std::string::npos);
}

}
}
