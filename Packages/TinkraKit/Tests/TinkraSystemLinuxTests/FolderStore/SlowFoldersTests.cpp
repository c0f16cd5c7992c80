// Folders that do not answer: the caller gets an exception in time, the work goes on.

#include "FolderStore/FolderStoreWorld.h"

#include <gmock/gmock.h>

#include <condition_variable>
#include <mutex>
#include <thread>

namespace Tinkra::System {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// Holds whoever passes until it is opened.
class Gate {
public:
    void open()
    {
        const std::lock_guard lock{m_mutex};
        m_isOpen = true;
        m_changed.notify_all();
    }

    void pass()
    {
        std::unique_lock lock{m_mutex};
        m_changed.wait(lock, [this] { return m_isOpen; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isOpen = false;
};

class SlowFoldersTest : public FolderStoreWorld {
protected:
    SlowFoldersTest()
    {
        write("Cloud/Work/a.ics", calendarWith("a", "A"));
        options.queryLimit = std::chrono::milliseconds{50};
        files->beforeReading = [gate = gate](const std::string&) { gate->pass(); };
        restart();
    }
    ~SlowFoldersTest() override { gate->open(); }

    std::shared_ptr<Gate> gate = std::make_shared<Gate>();
};

TEST_F(SlowFoldersTest, EndAQueryWithAnExceptionAndAnswerTheNextOneWhenTheyAreBack)
{
    EXPECT_THAT(errorOfEvents(), HasSubstr("do not answer"));
    // One that comes while the first still hangs ends in time as well.
    EXPECT_THAT(errorOfEvents(), HasSubstr("do not answer"));

    gate->open();
    for (int i = 0; i < 100 && !errorOfEvents().empty(); ++i) { }
    EXPECT_THAT(titles(), ElementsAre("A"));
}

TEST_F(SlowFoldersTest, LetTheCallersThreadGoOn)
{
    const auto query = loop.start(store->events(instantAt(0), instantAt(1), {"Cloud/Work"}));

    // The loop came back although the folder hangs.
    EXPECT_FALSE(query.isDone());
}

TEST_F(SlowFoldersTest, CountAsOutOfReachForWhomeverAsksForTheAccess)
{
    gate->open();
    EXPECT_EQ(store->authorizationStatus(), CalendarAuthorization::FullAccess);

    const auto away = std::make_shared<Gate>();
    files->failsToOpen = [away](const std::string&) {
        away->pass();
        return false;
    };
    EXPECT_EQ(store->authorizationStatus(), CalendarAuthorization::Denied);

    away->open();
    while (store->authorizationStatus() == CalendarAuthorization::Denied) { }
    EXPECT_EQ(store->authorizationStatus(), CalendarAuthorization::FullAccess);
}

TEST_F(SlowFoldersTest, ResumeTheCallerOnItsOwnThread)
{
    gate->open();
    const auto ask = [](FolderEventStore& asked, std::thread::id& resumedOn) -> Task<> {
        co_await asked.calendars();
        resumedOn = std::this_thread::get_id();
    };

    std::thread::id resumedOn;
    loop.runInRealTime(ask(*store, resumedOn));

    EXPECT_EQ(resumedOn, std::this_thread::get_id());
}

TEST_F(SlowFoldersTest, DoNotKeepTheStoreFromBeingClosed)
{
    const auto query = loop.start(store->events(instantAt(0), instantAt(1), {"Cloud/Work"}));
    const auto queued = loop.start(store->calendars());

    store.reset();

    loop.drain();
    EXPECT_TRUE(queued.isDone());
    EXPECT_ANY_THROW(queued.result());
}

}
}
