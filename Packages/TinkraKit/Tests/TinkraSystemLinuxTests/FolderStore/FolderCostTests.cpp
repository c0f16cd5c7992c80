// What a query touches: nothing while nothing changed, and then only what changed.

#include "FolderStore/FolderStoreWorld.h"

#include <gmock/gmock.h>

namespace Tinkra::System {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

class FolderCostTest : public FolderStoreWorld {
protected:
    FolderCostTest()
    {
        for (const auto* name : {"a", "b", "c"})
            write(std::string{"Cloud/Work/"} + name + ".ics", calendarWith(name, name));
        write("Cloud/Team.ics", calendarWith("t", "t"));
    }
};

TEST_F(FolderCostTest, OpensNothingAndWalksNothingWhileNothingChanged)
{
    calendars();
    titles({"Cloud/Work", "Cloud/Team"});
    files->takeOpened();

    calendars();
    EXPECT_THAT(titles({"Cloud/Work", "Cloud/Team"}), ElementsAre("a", "b", "c", "t"));

    EXPECT_THAT(files->takeOpened(), IsEmpty());
}

TEST_F(FolderCostTest, ReadsOnlyTheFileThatChanged)
{
    titles();
    files->takeOpened();

    write("Cloud/Work/b.ics", calendarWith("b", "changed"));
    EXPECT_THAT(titles(), ElementsAre("a", "c", "changed"));

    // The folders on the way, and the file.
    EXPECT_THAT(files->takeOpened(), ElementsAre(root.string(), "Cloud", "Work", "b.ics"));
}

TEST_F(FolderCostTest, ReadsNothingWhenTheFileIsTheSameAfterAll)
{
    titles();
    files->takeOpened();

    write("Cloud/Work/.hidden", "");
    remove("Cloud/Work/.hidden");
    write("Cloud/Work/notes.txt", "");
    titles();

    EXPECT_THAT(files->takeOpened(), IsEmpty());
}

TEST_F(FolderCostTest, ReadsOnlyTheCalendarsThatAreAskedFor)
{
    titles({"Cloud/Team"});

    EXPECT_THAT(files->takeOpened(), testing::Not(Contains("a.ics")));
}

TEST_F(FolderCostTest, LooksAtEveryStampButReadsOnlyWhatChangedWhenChangesAreNotReported)
{
    files->changesAreReported = false;
    restart();
    titles();
    files->takeOpened();

    write("Cloud/Work/b.ics", calendarWith("b", "changed"));
    remove("Cloud/Work/c.ics");
    titles();
    files->advance(std::chrono::seconds{2});
    EXPECT_THAT(titles(), ElementsAre("a", "changed"));

    const auto opened = files->takeOpened();
    EXPECT_THAT(opened, Contains("b.ics"));
    EXPECT_THAT(opened, Each(testing::Ne("a.ics")));
    for (const auto& root : status().roots)
        EXPECT_FALSE(root.isWatched);
}

}
}
