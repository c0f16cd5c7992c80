// Files and folders that change while they are read, or go away: the answer is what was, or what is, or an
// error.

#include "FolderStore/FolderStoreWorld.h"

#include <gmock/gmock.h>

namespace Tinkra::System {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class FolderChangesTest : public FolderStoreWorld {
protected:
    FolderChangesTest() { write("Cloud/Work/a.ics", calendarWith("a", "Old")); }

    // Files just written count as just written.
    void live() { files->setLead(0s); }
};

TEST_F(FolderChangesTest, SeesANewFileAChangedOneAndARenamedOne)
{
    EXPECT_THAT(titles(), ElementsAre("Old"));

    write("Cloud/Work/b.ics", calendarWith("b", "Second"));
    EXPECT_THAT(titles(), ElementsAre("Old", "Second"));

    write("Cloud/Work/a.ics", calendarWith("a", "New"));
    EXPECT_THAT(titles(), ElementsAre("New", "Second"));

    write("Cloud/Work/.new", calendarWith("b", "Third"));
    rename("Cloud/Work/.new", "Cloud/Work/b.ics");
    EXPECT_THAT(titles(), ElementsAre("New", "Third"));
}

TEST_F(FolderChangesTest, UsesTheLastGoodContentWhileAFileIsEmpty)
{
    ASSERT_THAT(titles(), ElementsAre("Old"));

    write("Cloud/Work/a.ics", "");
    EXPECT_THAT(titles(), ElementsAre("Old"));
    EXPECT_THAT(status().notices, Contains(HasSubstr("a.ics: its last good content is used")));

    write("Cloud/Work/a.ics", calendarWith("a", "New"));
    EXPECT_THAT(titles(), ElementsAre("New"));
    EXPECT_THAT(status().notices, IsEmpty());
}

TEST_F(FolderChangesTest, UsesTheLastGoodContentWhileAFileIsHalfWritten)
{
    ASSERT_THAT(titles(), ElementsAre("Old"));
    const auto text = calendarWith("a", "New");

    for (std::size_t length = 0; length < text.size() - 2; length += 7) {
        write("Cloud/Work/a.ics", text.substr(0, length));
        ASSERT_THAT(titles(), ElementsAre("Old")) << length;
    }
    write("Cloud/Work/a.ics", text);
    EXPECT_THAT(titles(), ElementsAre("New"));
}

TEST_F(FolderChangesTest, ReadsAFileAgainThatChangedWhileItWasRead)
{
    int readings = 0;
    files->insteadOfReading = [&](const std::string& name) -> std::optional<FileReading> {
        if (name != "a.ics" || ++readings > 2)
            return std::nullopt;
        return FileReading{.outcome = FileReading::Outcome::ChangedMeanwhile};
    };

    EXPECT_THAT(titles(), ElementsAre("Old"));
    EXPECT_EQ(readings, 3);
}

TEST_F(FolderChangesTest, WaitsForAFileThatIsBeingWrittenWhenThereIsNothingToFallBackOn)
{
    live();
    write("Cloud/Work/a.ics", calendarWith("a", "New").substr(0, 60));
    files->duringPause = [&] {
        if (files->pauses() == 3)
            write("Cloud/Work/a.ics", calendarWith("a", "New"));
    };

    EXPECT_THAT(titles(), ElementsAre("New"));
}

TEST_F(FolderChangesTest, ThrowsWhenAFileDoesNotSettleAndThereIsNothingToFallBackOn)
{
    live();
    files->duringPause = [&] {
        // Written again and again, never whole, on the clock of the store.
        files->setLead(0s);
        write("Cloud/Work/a.ics", calendarWith("a", "New").substr(0, 60));
    };
    write("Cloud/Work/a.ics", "");

    EXPECT_THAT(errorOfEvents(), HasSubstr("\"a.ics\" is being written"));
    EXPECT_THAT(identifiers(), ElementsAre("Cloud/Work"));

    files->duringPause = nullptr;
    files->setLead(10s);
    write("Cloud/Work/a.ics", calendarWith("a", "New"));
    EXPECT_THAT(titles(), ElementsAre("New"));
}

TEST_F(FolderChangesTest, GoesOnWithoutAFileThatWasLeftCutShort)
{
    write("Cloud/Work/b.ics", calendarWith("b", "Cut").substr(0, 60));

    EXPECT_THAT(titles(), ElementsAre("Old"));
    EXPECT_THAT(status().notices, Contains(HasSubstr("b.ics: does not begin with BEGIN:VCALENDAR")));
}

TEST_F(FolderChangesTest, ReadsAFileOnlyAfterTheTickInWhichItChanged)
{
    // Whatever changes twice within a tick of the file system's clock has the same stamp both times.
    bool isFirst = true;
    files->beforeReading = [&](const std::string& name) {
        if (name == "a.ics" && std::exchange(isFirst, false)) {
            files->setLead(0s);
            write("Cloud/Work/a.ics", calendarWith("a", "New"));
        }
    };
    live();

    EXPECT_THAT(titles(), ElementsAre("New"));
    EXPECT_GE(files->pauses(), 1);
}

TEST_F(FolderChangesTest, KeepsTheEventsOfAFileThatIsAwayForLessThanASecond)
{
    ASSERT_THAT(titles(), ElementsAre("Old"));

    remove("Cloud/Work/a.ics");
    EXPECT_THAT(titles(), ElementsAre("Old"));

    files->advance(900ms);
    EXPECT_THAT(titles(), ElementsAre("Old"));
    write("Cloud/Work/a.ics", calendarWith("a", "New"));
    EXPECT_THAT(titles(), ElementsAre("New"));
}

TEST_F(FolderChangesTest, LetsTheEventsOfARemovedFileGoAfterASecond)
{
    ASSERT_THAT(titles(), ElementsAre("Old"));

    remove("Cloud/Work/a.ics");
    EXPECT_THAT(titles(), ElementsAre("Old"));

    files->advance(1s);
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(FolderChangesTest, SurvivesTheSwapFilesOfEditors)
{
    ASSERT_THAT(titles(), ElementsAre("Old"));

    // Backup by renaming, then a new file; a query comes at every step.
    write("Cloud/Work/.a.ics.swp", "swap");
    EXPECT_THAT(titles(), ElementsAre("Old"));
    rename("Cloud/Work/a.ics", "Cloud/Work/a.ics~");
    EXPECT_THAT(titles(), ElementsAre("Old"));
    write("Cloud/Work/a.ics", "");
    EXPECT_THAT(titles(), ElementsAre("Old"));
    write("Cloud/Work/a.ics", calendarWith("a", "New"));
    EXPECT_THAT(titles(), ElementsAre("New"));
    remove("Cloud/Work/a.ics~");
    remove("Cloud/Work/.a.ics.swp");
    EXPECT_THAT(titles(), ElementsAre("New"));
}

TEST_F(FolderChangesTest, TakesACalendarThatIsAskedForAndGoneForAnError)
{
    write("Cloud/Home/b.ics", calendarWith("b", "Home"));
    ASSERT_THAT(titles(), ElementsAre("Old"));

    remove("Cloud/Work");
    EXPECT_THAT(titles(), ElementsAre("Old"));
    files->advance(1s);

    // Listed still, so that whoever monitors it goes on to ask for it.
    EXPECT_THAT(identifiers(), ElementsAre("Cloud/Home", "Cloud/Work"));
    EXPECT_THAT(errorOfEvents(), HasSubstr("\"Cloud/Work\" is gone"));
}

TEST_F(FolderChangesTest, BelievesTheRemovalOfACalendarAfterTenMinutes)
{
    write("Cloud/Home/b.ics", calendarWith("b", "Home"));
    ASSERT_THAT(titles(), ElementsAre("Old"));
    remove("Cloud/Work");
    ASSERT_THAT(titles(), ElementsAre("Old"));

    files->advance(9min);
    EXPECT_THAT(errorOfEvents(), HasSubstr("is gone"));
    files->advance(1min);

    EXPECT_THAT(identifiers(), ElementsAre("Cloud/Home"));
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(FolderChangesTest, ForgetsARemovedCalendarThatNobodyAsksForAnyMore)
{
    write("Cloud/Home/b.ics", calendarWith("b", "Home"));
    ASSERT_THAT(titles(), ElementsAre("Old"));
    remove("Cloud/Work");
    files->advance(5s);

    titles({"Cloud/Home"});

    EXPECT_THAT(identifiers(), ElementsAre("Cloud/Home"));
}

TEST_F(FolderChangesTest, FindsACalendarAgainThatCameBack)
{
    ASSERT_THAT(titles(), ElementsAre("Old"));
    std::filesystem::rename(root / "Cloud", folder / "away");
    ASSERT_THAT(titles(), ElementsAre("Old"));
    files->advance(5s);
    EXPECT_THAT(errorOfEvents(), HasSubstr("is gone"));

    std::filesystem::rename(folder / "away", root / "Cloud");
    EXPECT_THAT(titles(), ElementsAre("Old"));

    write("Cloud/Work/a.ics", calendarWith("a", "New"));
    EXPECT_THAT(titles(), ElementsAre("New"));
}

TEST_F(FolderChangesTest, ReadsAFolderThatWasReplacedByAnotherOne)
{
    ASSERT_THAT(titles(), ElementsAre("Old"));
    write("Cloud/.next/b.ics", calendarWith("b", "Next"));

    rename("Cloud/Work", "Cloud/.before");
    rename("Cloud/.next", "Cloud/Work");
    titles();
    files->advance(2s);
    EXPECT_THAT(titles(), ElementsAre("Next"));

    write("Cloud/Work/b.ics", calendarWith("b", "Later"));
    EXPECT_THAT(titles(), ElementsAre("Later"));
}

TEST_F(FolderChangesTest, TakesASingleFileThatIsGoneForAnErrorToo)
{
    write("Cloud/Team.ics", calendarWith("t", "Team"));
    ASSERT_THAT(titles({"Cloud/Team"}), ElementsAre("Team"));

    remove("Cloud/Team.ics");
    EXPECT_THAT(titles({"Cloud/Team"}), ElementsAre("Team"));
    files->advance(2s);
    EXPECT_ANY_THROW(titles({"Cloud/Team"}));

    write("Cloud/Team.ics", calendarWith("t", "New team"));
    EXPECT_THAT(titles({"Cloud/Team"}), ElementsAre("New team"));
}

TEST_F(FolderChangesTest, ThrowsWhileTheRootIsGoneAndGoesOnWhenItIsBack)
{
    ASSERT_THAT(titles(), ElementsAre("Old"));
    std::filesystem::rename(root, folder / "away");
    EXPECT_THAT(errorOfEvents(), HasSubstr("is missing"));
    EXPECT_THAT(errorOfCalendars(), HasSubstr("is missing"));

    std::filesystem::rename(folder / "away", root);
    EXPECT_THAT(titles(), ElementsAre("Old"));

    write("Cloud/Work/a.ics", calendarWith("a", "New"));
    EXPECT_THAT(titles(), ElementsAre("New"));
}

TEST_F(FolderChangesTest, ThrowsWhenAnEmptyFolderStandsWhereTheRootWas)
{
    ASSERT_THAT(titles(), ElementsAre("Old"));
    std::filesystem::rename(root, folder / "away");
    std::filesystem::create_directory(root);

    EXPECT_THAT(errorOfEvents(), HasSubstr("stands empty"));
    files->advance(1h);
    EXPECT_THAT(errorOfCalendars(), HasSubstr("stands empty"));

    write("Cloud/Work/a.ics", calendarWith("a", "New"));
    EXPECT_THAT(titles(), ElementsAre("New"));
}

TEST_F(FolderChangesTest, SeesThatAParentOfTheRootWasRenamed)
{
    ASSERT_THAT(titles(), ElementsAre("Old"));
    const auto moved = folder.string() + "-moved";
    std::filesystem::rename(folder, moved);

    EXPECT_THAT(errorOfEvents(), HasSubstr("is missing"));
    std::filesystem::rename(moved, folder);
}

TEST_F(FolderChangesTest, KeepsTheLastGoodContentOfAFileThatMayNotBeReadAnyMore)
{
    ASSERT_THAT(titles(), ElementsAre("Old"));
    write("Cloud/Work/a.ics", calendarWith("a", "New"));
    files->insteadOfReading = [](const std::string&) {
        return FileReading{.outcome = FileReading::Outcome::Forbidden};
    };

    EXPECT_THAT(titles(), ElementsAre("Old"));
    EXPECT_THAT(status().notices, Contains(HasSubstr("a.ics: may not be read")));
}

TEST_F(FolderChangesTest, ThrowsWhenTheProcessIsOutOfDescriptorsAndKnowsNothingYet)
{
    files->insteadOfReading = [](const std::string&) {
        return FileReading{.outcome = FileReading::Outcome::Failed, .error = EMFILE};
    };
    EXPECT_THAT(errorOfEvents(), HasSubstr("cannot be read just now"));

    files->insteadOfReading = nullptr;
    EXPECT_THAT(titles(), ElementsAre("Old"));
}

TEST_F(FolderChangesTest, ThrowsForAFolderThatCannotBeOpenedOnlyWhenItIsAskedFor)
{
    write("Cloud/Home/b.ics", calendarWith("b", "Home"));
    files->failsToOpen = [](const std::string& name) { return name == "Work"; };

    EXPECT_THAT(identifiers(), ElementsAre("Cloud/Home", "Cloud/Work"));
    EXPECT_THAT(titles({"Cloud/Home"}), ElementsAre("Home"));
    EXPECT_THAT(errorOfEvents(), HasSubstr("cannot open the folder \"Work\""));
    EXPECT_THAT(status().notices, ElementsAre(HasSubstr("cannot open the folder \"Work\"")));

    files->failsToOpen = nullptr;
    EXPECT_THAT(titles(), ElementsAre("Old"));
    EXPECT_THAT(status().notices, IsEmpty());
}

TEST_F(FolderChangesTest, ThrowsForAnAccountThatCannotBeOpened)
{
    files->failsToOpen = [](const std::string& name) { return name == "Cloud"; };

    EXPECT_THAT(errorOfCalendars(), HasSubstr("cannot open the folder \"Cloud\""));
}

}
}
