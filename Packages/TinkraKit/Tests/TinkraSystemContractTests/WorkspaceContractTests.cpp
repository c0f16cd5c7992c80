#include "PrivateLoginManager/PrivateLoginManager.h"
#include "TinkraSystemLinux/WorkspaceLinux.h"
#include "TinkraTestSupport/FakeWorkspace.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>

namespace Tinkra::System {
namespace {

/// Counts wakes, on whatever thread they come.
class Wakes {
public:
    void add()
    {
        const std::lock_guard lock(m_mutex);
        ++m_count;
        m_changed.notify_all();
    }

    bool reach(int count)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, std::chrono::seconds(10), [&] { return m_count >= count; });
    }

    int count() const
    {
        const std::lock_guard lock(m_mutex);
        return m_count;
    }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_count = 0;
};

struct InMemory {
    std::shared_ptr<FakeWorkspace> workspace = std::make_shared<FakeWorkspace>();

    void sleepAndWake() const { workspace->wake(); }
};

struct OfLogind {
    PrivateLoginManager logind;
    std::shared_ptr<WorkspaceLinux> workspace = std::make_shared<WorkspaceLinux>();

    void sleepAndWake()
    {
        logind.prepareForSleep(true);
        logind.prepareForSleep(false);
    }
};

template <typename Kind> class WorkspaceContract : public testing::Test {
protected:
    Kind kind;
    Workspace& workspace = *kind.workspace;
};

using Kinds = testing::Types<InMemory, OfLogind>;
TYPED_TEST_SUITE(WorkspaceContract, Kinds);

TYPED_TEST(WorkspaceContract, TellsOfEachWakeOnce)
{
    Wakes wakes;
    const auto observation = this->workspace.observeDidWake([&] { wakes.add(); });

    this->kind.sleepAndWake();
    ASSERT_TRUE(wakes.reach(1));
    this->kind.sleepAndWake();
    ASSERT_TRUE(wakes.reach(2));

    EXPECT_EQ(wakes.count(), 2);
}

TYPED_TEST(WorkspaceContract, TellsNobodyWhoseObservationWasDropped)
{
    Wakes dropped;
    Wakes kept;
    const auto observation = this->workspace.observeDidWake([&] { kept.add(); });
    this->workspace.observeDidWake([&] { dropped.add(); }).reset();

    this->kind.sleepAndWake();
    ASSERT_TRUE(kept.reach(1));

    EXPECT_EQ(dropped.count(), 0);
}

TYPED_TEST(WorkspaceContract, TheUserHasAName)
{
    EXPECT_FALSE(this->workspace.fullUserName().empty());
}

}
}
