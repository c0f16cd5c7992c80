#include "NotificationDaemon/StateDirectory.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace Tinkra::NotificationDaemon {
namespace {

namespace fs = std::filesystem;

class StateDirectoryTest : public testing::Test {
protected:
    void SetUp() override
    {
        std::string name = testing::TempDir() + "stateXXXXXX";
        m_home = mkdtemp(name.data());
        setenv("XDG_STATE_HOME", m_home.c_str(), 1);
    }
    void TearDown() override
    {
        unsetenv("XDG_STATE_HOME");
        fs::remove_all(m_home);
    }

    static unsigned modeOf(const fs::path& path)
    {
        struct stat status { };
        EXPECT_EQ(stat(path.c_str(), &status), 0);
        return status.st_mode & 07777U;
    }

    fs::path m_home;
};

TEST_F(StateDirectoryTest, IsMadePrivateWhateverTheUmask)
{
    for (const mode_t mask : {0U, 0777U}) {
        fs::remove_all(m_home / "tinkra");
        const auto before = umask(mask);
        StateDirectory directory;
        const bool locked = directory.lock();
        umask(before);
        EXPECT_EQ(directory.problem(), "");
        EXPECT_TRUE(locked);
        EXPECT_EQ(modeOf(m_home / "tinkra"), 0700U);
    }
}

TEST_F(StateDirectoryTest, MakesAnOpenDirectoryPrivate)
{
    fs::create_directory(m_home / "tinkra");
    chmod((m_home / "tinkra").c_str(), 0777);
    const StateDirectory directory;
    EXPECT_EQ(modeOf(m_home / "tinkra"), 0700U);
}

TEST_F(StateDirectoryTest, SaysWhyAFileInItsPlaceCannotBeUsed)
{
    std::ofstream(m_home / "tinkra") << "x";
    StateDirectory directory;
    EXPECT_NE(directory.problem(), "");
    EXPECT_TRUE(directory.lock()) << "there is nothing to protect";
}

TEST_F(StateDirectoryTest, IsLockedByOneAtATime)
{
    StateDirectory first;
    StateDirectory second;
    EXPECT_TRUE(first.lock());
    EXPECT_FALSE(second.lock());
}

TEST_F(StateDirectoryTest, IgnoresARelativePath)
{
    setenv("XDG_STATE_HOME", "relative", 1);
    setenv("HOME", m_home.c_str(), 1);
    const StateDirectory directory;
    EXPECT_EQ(directory.path(), (m_home / ".local/state/tinkra").string());
}

}
}
