// Which calendars are listed, and as what.

#include "FolderStore/FolderStoreWorld.h"

#include <gmock/gmock.h>

namespace Tinkra::System {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class FolderCalendarsTest : public FolderStoreWorld { };

TEST_F(FolderCalendarsTest, ListsEachFolderAndEachSingleFileOfEachAccount)
{
    write("Cloud/Work/a.ics", calendarWith("a", "A"));
    write("Cloud/Home/displayname", "Home and garden\n");
    write("Cloud/Home/color", "#0A00bf\n");
    write("Exchange/Team.ics", calendarWith("b", "B"));

    EXPECT_THAT(calendars(),
        ElementsAre(StoredCalendar{"Cloud/Home", "Home and garden", "Cloud", {{10 / 255.0, 0, 191 / 255.0}}},
            StoredCalendar{"Cloud/Work", "Work", "Cloud", {}},
            StoredCalendar{"Exchange/Team", "Team", "Exchange", {}}));
}

TEST_F(FolderCalendarsTest, IgnoresWhatIsHiddenAndWhatIsNoCalendar)
{
    write(".Hidden/Work/a.ics", calendarWith("a", "A"));
    write("Cloud/.Hidden/a.ics", calendarWith("a", "A"));
    write("Cloud/.hidden.ics", calendarWith("a", "A"));
    write("Cloud/notes.txt", "notes");
    write("Cloud/Work/.a.ics.swp", calendarWith("a", "A"));
    write("Cloud/Work/a.ics~", calendarWith("a", "A"));
    write("Cloud/Work/deeper/a.ics", calendarWith("a", "A"));

    EXPECT_THAT(identifiers(), ElementsAre("Cloud/Work"));
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(FolderCalendarsTest, NamesFilesThatLieOutsideOfAnyAccount)
{
    write("stray.ics", calendarWith("a", "A"));

    EXPECT_THAT(identifiers(), IsEmpty());
    EXPECT_THAT(status().notices, Contains(HasSubstr("stray.ics: lies in no account's folder")));
}

TEST_F(FolderCalendarsTest, KeepsAFolderAndAFileOfTheSameNameApart)
{
    write("Cloud/Work/a.ics", calendarWith("a", "In the folder"));
    write("Cloud/Work.ics", calendarWith("a", "In the file"));

    EXPECT_THAT(identifiers(), ElementsAre("Cloud/Work", "Cloud/Work.ics"));
    EXPECT_THAT(titles({"Cloud/Work"}), ElementsAre("In the folder"));
    EXPECT_THAT(titles({"Cloud/Work.ics"}), ElementsAre("In the file"));
}

TEST_F(FolderCalendarsTest, KeepsTheSameCalendarOfTwoRootsApart)
{
    const auto other = folder / "other";
    std::filesystem::create_directories(other / "Cloud/Work");
    write("Cloud/Work/a.ics", calendarWith("a", "Mine"));
    std::filesystem::copy(root / "Cloud/Work/a.ics", other / "Cloud/Work/a.ics");
    options.roots.push_back(other.string());
    restart();

    EXPECT_THAT(identifiers(), ElementsAre("Cloud/Work", other.string() + "/Cloud/Work"));
    const auto both = events({"Cloud/Work", other.string() + "/Cloud/Work"});
    ASSERT_EQ(both.size(), 2U);
    EXPECT_EQ(both[0].details->eventIdentifier, "Cloud/Work/a");
    EXPECT_EQ(both[1].details->eventIdentifier, other.string() + "/Cloud/Work/a");
}

TEST_F(FolderCalendarsTest, ListsAFolderOnceThatTwoRootsLeadTo)
{
    write("Cloud/Work/a.ics", calendarWith("a", "A"));
    std::filesystem::create_directory_symlink(root, folder / "link");
    options.roots.push_back((folder / "link").string());
    restart();

    EXPECT_THAT(identifiers(), ElementsAre("Cloud/Work"));
}

TEST_F(FolderCalendarsTest, KeepsTheBytesOfNamesInEitherUnicodeForm)
{
    write("Cloud/Caf\u00e9/a.ics", calendarWith("a", "Composed"));
    write("Cloud/Cafe\u0301/a.ics", calendarWith("a", "Decomposed"));

    EXPECT_THAT(identifiers(), ElementsAre("Cloud/Cafe\u0301", "Cloud/Caf\u00e9"));
    EXPECT_THAT(titles({"Cloud/Caf\u00e9"}), ElementsAre("Composed"));
    EXPECT_THAT(titles({"Cloud/Cafe\u0301"}), ElementsAre("Decomposed"));
}

TEST_F(FolderCalendarsTest, SeesANewNameANewColorAndANewCalendar)
{
    write("Cloud/Work/displayname", "Old");
    ASSERT_EQ(calendars().at(0).title, "Old");

    write("Cloud/Work/displayname", "New");
    write("Cloud/Work/color", "#FF8000FF");
    write("Elsewhere/Home/a.ics", calendarWith("a", "A"));

    EXPECT_THAT(calendars(),
        ElementsAre(StoredCalendar{"Cloud/Work", "New", "Cloud", {{1.0, 128 / 255.0, 0}}},
            StoredCalendar{"Elsewhere/Home", "Home", "Elsewhere", {}}));
}

TEST_F(FolderCalendarsTest, GoesBackToTheFoldersNameWhenItsTitleIsRemoved)
{
    write("Cloud/Work/displayname", "Old");
    write("Cloud/Work/color", "#FF8000");
    ASSERT_EQ(calendars().at(0).title, "Old");

    remove("Cloud/Work/displayname");
    remove("Cloud/Work/color");

    EXPECT_EQ(calendars().at(0), (StoredCalendar{"Cloud/Work", "Work", "Cloud", {}}));
}

TEST_F(FolderCalendarsTest, KeepsTheTitleWhileItsFileIsEmptyForAMoment)
{
    write("Cloud/Work/displayname", "Old");
    ASSERT_EQ(calendars().at(0).title, "Old");

    write("Cloud/Work/displayname", "");

    EXPECT_EQ(calendars().at(0).title, "Old");
}

TEST_F(FolderCalendarsTest, ReadsNoEventsToListCalendars)
{
    write("Cloud/Work/a.ics", calendarWith("a", "A"));

    calendars();

    EXPECT_THAT(files->takeOpened(), testing::Not(Contains("a.ics")));
}

}
}
