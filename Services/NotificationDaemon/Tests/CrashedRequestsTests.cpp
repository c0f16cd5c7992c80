#include "NotificationDaemon/CrashedRequests.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Tinkra::NotificationDaemon {
namespace {

class CrashedRequestsTest : public testing::Test {
protected:
    void SetUp() override
    {
        std::string name = testing::TempDir() + "crashXXXXXX";
        m_folder = mkdtemp(name.data());
        m_file = (m_folder / "crashes").string();
    }
    void TearDown() override { std::filesystem::remove_all(m_folder); }

    /// Runs `work` in a process of its own, which is meant to die of it.
    void inAProcess(const std::function<void()>& work) const
    {
        const auto child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            CrashedRequests::record(m_file);
            work();
            _exit(0);
        }
        waitpid(child, nullptr, 0);
    }

    std::filesystem::path m_folder;
    std::string m_file;
};

TEST_F(CrashedRequestsTest, BlamesARequestThatTwoProcessesDiedOn)
{
    const auto crashOnSeven = [] {
        const BeingProcessed mark(7);
        std::raise(SIGSEGV);
    };
    inAProcess(crashOnSeven);
    EXPECT_TRUE(CrashedRequests::repeated(m_file).empty()) << "once may be bad luck";
    inAProcess(crashOnSeven);

    EXPECT_EQ(CrashedRequests::repeated(m_file), std::set<std::int64_t>{7});
    CrashedRequests::clear(m_file);
    EXPECT_TRUE(CrashedRequests::repeated(m_file).empty());
}

TEST_F(CrashedRequestsTest, BlamesNobodyForAKillFromOutsideOrACrashElsewhere)
{
    for (int i = 0; i < 3; ++i) {
        inAProcess([] {
            const BeingProcessed mark(7);
            std::raise(SIGKILL);
        });
        inAProcess([] {
            {
                const BeingProcessed mark(7);
            }
            std::raise(SIGABRT);
        });
    }

    EXPECT_TRUE(CrashedRequests::repeated(m_file).empty());
}

TEST_F(CrashedRequestsTest, TakesAMissingOrTornFileForWhatItIs)
{
    EXPECT_TRUE(CrashedRequests::repeated(m_file).empty());
    CrashedRequests::clear(m_file);
    EXPECT_TRUE(CrashedRequests::repeated(m_folder.string()).empty());
}

}
}
