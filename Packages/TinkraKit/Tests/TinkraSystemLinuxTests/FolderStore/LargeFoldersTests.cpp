// More files than anybody has, and fewer watches than folders.

#include "FolderStore/FolderStoreWorld.h"

#include <gmock/gmock.h>
#include <sched.h>

#include <cstdlib>
#include <fstream>
#include <iostream>

namespace Tinkra::System {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

class LargeFoldersTest : public FolderStoreWorld {
protected:
    bool isFoundWithoutWatches();
};

TEST_F(LargeFoldersTest, OfAHundredThousandFilesAreReadOnceAndThenOnlyWhereTheyChange)
{
    constexpr std::size_t kFiles = 100'000;
    write("Cloud/Work/changing.ics", calendarWith("changing", "A"));
    for (std::size_t i = 1; i < kFiles; ++i) {
        const auto name = std::to_string(i);
        std::ofstream{root / "Cloud/Work" / (name + ".ics")} << calendarWith(name, "A");
    }

    EXPECT_THAT(events(), SizeIs(kFiles));
    EXPECT_EQ(status().calendars.front().files, kFiles);
    files->takeOpened();

    write("Cloud/Work/changing.ics", calendarWith("changing", "B"));
    const auto found = titles();

    EXPECT_THAT(found, SizeIs(kFiles));
    EXPECT_EQ(found.back(), "B");
    EXPECT_THAT(files->takeOpened(), ElementsAre(root.string(), "Cloud", "Work", "changing.ics"));
}

// A user namespace has a limit of its own, and is entered by processes of one thread.
void allowWatches(int count)
{
    std::ofstream limit;
    if (unshare(CLONE_NEWUSER) == 0)
        limit.open("/proc/sys/user/max_inotify_watches");
    limit << count << std::flush;
    if (!limit)
        std::cerr << "the limit of watches could not be set";
}

// Of root, account and calendar one stays without a watch.
bool LargeFoldersTest::isFoundWithoutWatches()
{
    allowWatches(2);
    restart();
    const bool readsFirst = titles() == std::vector<std::string>{"A"};
    const bool isUnwatched = !status().calendars.front().isWatched;
    const bool saysWhy = testing::Value(status().notices, ElementsAre(HasSubstr("max_user_watches")));
    write("Cloud/Work/a.ics", calendarWith("a", "B"));
    write("Cloud/Work/c.ics", calendarWith("c", "C"));
    const bool findsChanges = titles() == std::vector<std::string>{"B", "C"};
    std::cerr << "read " << readsFirst << ", unwatched " << isUnwatched << ", says why " << saysWhy
              << ", finds changes " << findsChanges;
    return readsFirst && isUnwatched && saysWhy && findsChanges;
}

TEST_F(LargeFoldersTest, AreLookedThroughWhereNoMoreFoldersCanBeWatched)
{
    write("Cloud/Work/a.ics", calendarWith("a", "A"));
    store.reset(); // its threads

    EXPECT_EXIT(std::_Exit(isFoundWithoutWatches() ? EXIT_SUCCESS : EXIT_FAILURE),
        testing::ExitedWithCode(EXIT_SUCCESS), "finds changes 1");
}

}
}
