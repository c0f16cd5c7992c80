#include "NotificationDaemon/CallerPolicy.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>

namespace Tinkra::NotificationDaemon {
namespace {

namespace fs = std::filesystem;
using Verdict = CallerPolicy::Verdict;

/// A directory of processes, in which 10 is an ordinary one and 20 a sandboxed one.
class CallerPolicyTest : public testing::Test {
protected:
    void SetUp() override
    {
        std::string name = testing::TempDir() + "procXXXXXX";
        m_processes = mkdtemp(name.data());
        fs::create_directories(m_processes / "10/root");
        fs::create_directories(m_processes / "20/root");
        std::ofstream(m_processes / "20/root/.flatpak-info") << "[Application]\n";
        m_policy = std::make_unique<CallerPolicy>(1000, m_processes.string());
    }
    void TearDown() override { fs::remove_all(m_processes); }

    Verdict call(
        const std::string& sender, uid_t user, pid_t process, double weight = 1, std::int64_t elapsed = 0)
    {
        const auto ask = [&] {
            ++m_questions;
            return CallerPolicy::Credentials{user, process};
        };
        return m_policy->judge(sender, ask, weight, elapsed);
    }

    fs::path m_processes;
    std::unique_ptr<CallerPolicy> m_policy;
    int m_questions = 0;
};

TEST_F(CallerPolicyTest, WelcomesTheSameUserAndRefusesOthersRootIncluded)
{
    EXPECT_EQ(call(":1.1", 1000, 10), Verdict::Welcome);
    EXPECT_EQ(call(":1.2", 1001, 10), Verdict::OtherUser);
    EXPECT_EQ(call(":1.3", 0, 10), Verdict::OtherUser);
}

TEST_F(CallerPolicyTest, RefusesASandboxedProgramAndOneThatItCannotLookInto)
{
    EXPECT_EQ(call(":1.1", 1000, 20), Verdict::Sandboxed);
    EXPECT_EQ(call(":1.2", 1000, 99), Verdict::Sandboxed);
}

TEST_F(CallerPolicyTest, AsksTheBusOnceForEachSender)
{
    call(":1.1", 1000, 10);
    call(":1.1", 1000, 10);
    call(":1.2", 1000, 10);
    EXPECT_EQ(m_questions, 2);
}

TEST_F(CallerPolicyTest, AllowsALargeFirstSyncAndThenAThousandCallsASecond)
{
    for (int i = 0; i < 20000; ++i)
        ASSERT_EQ(call(":1.1", 1000, 10), Verdict::Welcome) << i;
    EXPECT_EQ(call(":1.1", 1000, 10), Verdict::TooFast);

    int welcome = 0;
    for (int i = 0; i < 5000; ++i)
        welcome += call(":1.1", 1000, 10, 1, 1000) == Verdict::Welcome ? 1 : 0;
    EXPECT_EQ(welcome, 1000);
}

TEST_F(CallerPolicyTest, AFloodOfOneCallerCostsAnotherNothing)
{
    while (call(":1.1", 1000, 10) == Verdict::Welcome) { }
    EXPECT_EQ(call(":1.2", 1000, 10), Verdict::Welcome);
}

TEST_F(CallerPolicyTest, LongListsCountAsManyCalls)
{
    EXPECT_EQ(call(":1.1", 1000, 10, 19999), Verdict::Welcome);
    EXPECT_EQ(call(":1.1", 1000, 10, 2), Verdict::TooFast);
}

TEST_F(CallerPolicyTest, SurvivesTenThousandConnections)
{
    for (int i = 0; i < 10000; ++i)
        ASSERT_EQ(call(":1." + std::to_string(i), 1000, 10), Verdict::Welcome);
}

}
}
