#include "TinkraSystemLinux/CalendarFolders/FolderWatcher.h"

#include "TinkraTestSupport/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

namespace Tinkra::System {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class FolderWatcherTest : public testing::Test {
protected:
    Descriptor open(const std::filesystem::path& path) const
    {
        return Descriptor{::open(path.c_str(), O_RDONLY | O_CLOEXEC)};
    }

    std::unique_ptr<FolderWatch> watch(const std::filesystem::path& path)
    {
        const auto opened = open(path);
        return watcher->watch(opened.get(), [](std::string_view name) { return name != "ignored"; });
    }

    FolderChanges changes(FolderWatch& of)
    {
        watcher->drain();
        return of.take();
    }

    void touch(const char* name) const { std::ofstream{folder.path() / name} << name; }

    TemporaryFolder folder;
    std::shared_ptr<asio::io_context> context = std::make_shared<asio::io_context>();
    int notices = 0;
    std::shared_ptr<FolderWatcher> watcher = std::make_shared<FolderWatcher>(context, [this] { ++notices; });
};

TEST_F(FolderWatcherTest, NamesEachEntryThatAppearedChangedOrWentOnce)
{
    touch("old");
    const auto watched = watch(folder.path());

    touch("new");
    touch("new");
    touch("ignored");
    std::filesystem::rename(folder.path() / "old", folder.path() / "older");

    EXPECT_THAT(changes(*watched).names, ElementsAre("new", "old", "older"));
    EXPECT_TRUE(changes(*watched).isEmpty());
}

TEST_F(FolderWatcherTest, IsNotWokenByReading)
{
    touch("file");
    const auto watched = watch(folder.path());

    std::ifstream file{folder.path() / "file"};
    std::string text;
    file >> text;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        EXPECT_EQ(entry.path().filename(), "file");

    EXPECT_TRUE(changes(*watched).isEmpty());
}

TEST_F(FolderWatcherTest, SaysThatAFolderWasLost)
{
    const auto inner = folder.path() / "inner";
    std::filesystem::create_directory(inner);
    const auto moved = watch(inner);
    std::filesystem::rename(inner, folder.path() / "moved");
    EXPECT_TRUE(changes(*moved).lost);

    const auto deleted = watch(folder.path() / "moved");
    std::filesystem::remove(folder.path() / "moved");
    EXPECT_TRUE(changes(*deleted).lost);
}

TEST_F(FolderWatcherTest, ReportsAFolderThatIsWatchedTwiceToBoth)
{
    auto first = watch(folder.path());
    const auto second = watch(folder.path());

    touch("a");
    EXPECT_THAT(changes(*first).names, ElementsAre("a"));
    EXPECT_THAT(changes(*second).names, ElementsAre("a"));

    first.reset();
    touch("b");
    EXPECT_THAT(changes(*second).names, ElementsAre("b"));
}

TEST_F(FolderWatcherTest, AsksForANewListingWhenTheKernelsQueueOverflows)
{
    const auto watched = watch(folder.path());
    touch("a");
    touch("b");
    std::size_t queued = 0;
    std::ifstream{"/proc/sys/fs/inotify/max_queued_events"} >> queued;
    ASSERT_GT(queued, 0U);

    // Equal events in a row count as one, so two files take turns.
    for (std::size_t i = 0; i <= queued / 2 + 1; ++i) {
        chmod((folder.path() / "a").c_str(), 0600);
        chmod((folder.path() / "b").c_str(), 0600);
    }

    EXPECT_TRUE(changes(*watched).unknown);
}

TEST_F(FolderWatcherTest, AsksForANewListingWhenMoreNamesChangedThanItKeeps)
{
    const auto watched = watch(folder.path());
    for (int i = 0; i < 1'200; ++i) {
        std::filesystem::create_directory(folder.path() / std::to_string(i));
        if (i % 100 == 0)
            watcher->drain();
    }

    const auto seen = changes(*watched);
    EXPECT_TRUE(seen.unknown);
    EXPECT_LE(seen.names.size(), 1'000U);
}

TEST_F(FolderWatcherTest, SaysWhyAFolderCannotBeWatched)
{
    touch("file");

    EXPECT_EQ(watch(folder.path() / "file"), nullptr);

    EXPECT_THAT(watcher->trouble(), HasSubstr("cannot be watched"));
}

TEST_F(FolderWatcherTest, OutlivesItsContextsRun)
{
    const auto watched = watch(folder.path());
    watcher->start();
    context->poll();
    watcher->stop();
    context->restart();
    context->poll();

    touch("late");
    watcher->drain();

    EXPECT_TRUE(watched->take().isEmpty());
    EXPECT_EQ(notices, 0);
}

}
}
