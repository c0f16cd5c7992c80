// The store on the machine's own files and clock, while another thread writes.

#include "FolderStore/CalendarTexts.h"
#include "TinkraSystemLinux/ClockLinux.h"
#include "TinkraSystemLinux/FolderEventStore.h"
#include "TinkraTestSupport/FakeDefaults.h"
#include "TinkraTestSupport/TemporaryFolder.h"
#include "TinkraTestSupport/TestLoop.h"

#include <gmock/gmock.h>
#include <sys/resource.h>

#include <atomic>
#include <condition_variable>
#include <fstream>
#include <functional>
#include <mutex>
#include <thread>

namespace Tinkra::System {
namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::Ge;
using testing::Lt;
using testing::SizeIs;

constexpr int kEventsPerFile = 40;

// Large enough to take several writes.
std::string version(int number)
{
    std::string events;
    for (int i = 0; i < kEventsPerFile; ++i)
        events += vevent(std::to_string(i), "v" + std::to_string(number) + std::string(300, ' ') + ".");
    return vcalendar(events);
}

/// Counts the notices of a store.
class Notices {
public:
    std::function<void()> counter()
    {
        return [this] {
            const std::lock_guard lock{m_mutex};
            ++m_count;
            m_changed.notify_all();
        };
    }

    int count()
    {
        const std::lock_guard lock{m_mutex};
        return m_count;
    }

    bool waitForMoreThan(int count)
    {
        std::unique_lock lock{m_mutex};
        return m_changed.wait_for(lock, std::chrono::seconds{20}, [&] { return m_count > count; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_count = 0;
};

double processorSeconds(int who)
{
    rusage usage{};
    getrusage(who, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

class LiveFoldersTest : public testing::Test {
protected:
    LiveFoldersTest()
    {
        std::filesystem::create_directories(calendar);
        FolderStoreOptions options;
        options.roots = {folder.path().string()};
        defaults->setData(options.grantKey, "granted");
        store = std::make_unique<FolderEventStore>(defaults, options);
    }

    void write(const std::string& name, const std::string& text) const
    {
        std::ofstream{calendar / name, std::ios::binary | std::ios::trunc} << text;
    }

    std::set<std::string> titles(std::size_t* count = nullptr)
    {
        const auto events = loop.runInRealTime(store->events(instantAt(0), instantAt(4e9), {"Cloud/Work"}));
        std::set<std::string> result;
        for (const auto& event : events)
            result.insert(event.details->title->substr(0, event.details->title->find(' ')));
        if (count)
            *count = events.size();
        return result;
    }

    // Whatever the writer does, each answer is one of its versions, whole, and none goes back.
    void expectOldOrNewWhile(const std::function<void(int number)>& writeVersion)
    {
        writeVersion(0);
        ASSERT_THAT(titles(), ElementsAre("v0"));

        std::atomic<bool> isEnough{false};
        std::atomic<int> newest{0};
        std::thread writer{[&] {
            while (!isEnough)
                writeVersion(++newest);
        }};
        int latest = 0;
        for (int i = 0; i < 15; ++i) {
            std::size_t count = 0;
            const auto seen = titles(&count);
            EXPECT_THAT(seen, SizeIs(1));
            EXPECT_EQ(count, static_cast<std::size_t>(kEventsPerFile));
            const int number = seen.empty() ? -1 : std::stoi(seen.begin()->substr(1));
            EXPECT_GE(number, latest);
            latest = number;
        }
        isEnough = true;
        writer.join();
        EXPECT_THAT(titles(), ElementsAre("v" + std::to_string(newest)));
    }

    TemporaryFolder folder;
    std::filesystem::path calendar = folder.path() / "Cloud/Work";
    TestLoop loop;
    std::shared_ptr<FakeDefaults> defaults = std::make_shared<FakeDefaults>();
    std::unique_ptr<FolderEventStore> store;
};

TEST_F(LiveFoldersTest, AnswerOldOrNewWhileAFileIsCutAndWrittenAgain)
{
    expectOldOrNewWhile([&](int number) { write("a.ics", version(number)); });
}

TEST_F(LiveFoldersTest, AnswerOldOrNewWhileAFileIsReplacedByRenaming)
{
    expectOldOrNewWhile([&](int number) {
        write(".a.ics.new", version(number));
        std::filesystem::rename(calendar / ".a.ics.new", calendar / "a.ics");
    });
}

TEST_F(LiveFoldersTest, AnswerOldOrNewWhileAnEditorSaves)
{
    expectOldOrNewWhile([&](int number) {
        write(".a.ics.swp", "swap");
        if (number > 0)
            std::filesystem::rename(calendar / "a.ics", calendar / "a.ics~");
        write("a.ics", version(number));
        std::filesystem::remove(calendar / "a.ics~");
        std::filesystem::remove(calendar / ".a.ics.swp");
    });
}

TEST_F(LiveFoldersTest, AnswerOldOrNewWhileAFileGrowsInSmallSteps)
{
    expectOldOrNewWhile([&](int number) {
        std::ofstream file{calendar / "a.ics", std::ios::binary | std::ios::trunc};
        const auto text = version(number);
        for (std::size_t at = 0; at < text.size(); at += 512)
            file << text.substr(at, 512) << std::flush;
    });
}

TEST_F(LiveFoldersTest, AreReportedWhenTheyChangeAppearGoAndComeBack)
{
    Notices notices;
    write("a.ics", calendarWith("a", "A"));
    titles();
    const auto observation = store->observeChanges(notices.counter());

    const auto isReported = [&](const std::function<void()>& change) {
        const int before = notices.count();
        change();
        return notices.waitForMoreThan(before);
    };
    const auto away = folder.path().string() + "-away";

    EXPECT_TRUE(isReported([&] { write("a.ics", calendarWith("a", "B")); }));
    EXPECT_TRUE(isReported([&] { std::filesystem::create_directory(folder.path() / "Exchange"); }));
    // What was made since is watched once a query has seen it, as it is after every notice.
    titles();
    EXPECT_TRUE(isReported([&] { std::filesystem::create_directory(folder.path() / "Exchange/Team"); }));
    EXPECT_TRUE(isReported([&] { std::filesystem::rename(folder.path(), away); }));
    EXPECT_ANY_THROW(titles());
    EXPECT_TRUE(isReported([&] { std::filesystem::rename(away, folder.path()); }));
    EXPECT_THAT(titles(), ElementsAre("B"));
}

TEST_F(LiveFoldersTest, TellWhoBeganToListenBeforeTheFirstQuery)
{
    Notices notices;
    const auto observation = store->observeChanges(notices.counter());

    write("a.ics", calendarWith("a", "A"));

    EXPECT_TRUE(notices.waitForMoreThan(0));
}

TEST_F(LiveFoldersTest, AskForAnotherLookWhenARemovedFileMayComeBack)
{
    Notices notices;
    write("a.ics", calendarWith("a", "A"));
    titles();
    const auto observation = store->observeChanges(notices.counter());

    std::filesystem::remove(calendar / "a.ics");
    ASSERT_TRUE(notices.waitForMoreThan(0));
    const int before = notices.count();
    if (!titles().empty())
        EXPECT_TRUE(notices.waitForMoreThan(before));
    EXPECT_THAT(titles(), SizeIs(0));
}

TEST_F(LiveFoldersTest, TellOfAThousandChangesASecondOnceASecondAndCheaplyAndLetASleeperWakeOnTime)
{
    constexpr std::chrono::seconds kStorm{60};
    constexpr std::chrono::milliseconds kBetweenChanges{1};
    Notices notices;
    write("a.ics", calendarWith("a", "A"));
    titles();
    const auto observation = store->observeChanges(notices.counter());
    ClockLinux clock;

    const auto start = std::chrono::steady_clock::now();
    const double before = processorSeconds(RUSAGE_SELF);
    double ofTheWriter = 0;
    int changes = 0;
    std::thread writer{[&] {
        while (std::chrono::steady_clock::now() < start + kStorm) {
            std::filesystem::permissions(
                calendar / "a.ics", std::filesystem::perms{changes % 2 == 0 ? 0600U : 0644U});
            std::this_thread::sleep_until(start + ++changes * kBetweenChanges);
        }
        ofTheWriter = processorSeconds(RUSAGE_THREAD);
    }};
    // What the application does: a query for each notice, and alarms in between.
    std::vector<Seconds> lateness;
    std::thread waiting{[&] {
        TestLoop ofTheAlarms;
        for (int i = 0; i < 6; ++i) {
            const auto alarm = clock.now() + std::chrono::seconds{8};
            ofTheAlarms.runInRealTime(clock.sleepUntil(alarm, {}));
            lateness.push_back(clock.now() - alarm);
        }
    }};
    for (int seen = 0; std::chrono::steady_clock::now() < start + kStorm - std::chrono::seconds{2};) {
        EXPECT_TRUE(notices.waitForMoreThan(seen));
        seen = notices.count();
        EXPECT_THAT(titles(), ElementsAre("A"));
    }
    waiting.join();
    writer.join();
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    const double used = processorSeconds(RUSAGE_SELF) - before - ofTheWriter;

    EXPECT_GT(changes, kStorm / kBetweenChanges / 2) << "no storm";
    EXPECT_GE(notices.count(), static_cast<int>(kStorm / std::chrono::seconds{4}));
    EXPECT_LE(notices.count(), static_cast<int>(elapsed.count()) + 2);
    EXPECT_LT(used, 0.3 * elapsed.count());
    EXPECT_THAT(lateness, Each(AllOf(Ge(Seconds{0}), Lt(Seconds{1}))));
}

}
}
