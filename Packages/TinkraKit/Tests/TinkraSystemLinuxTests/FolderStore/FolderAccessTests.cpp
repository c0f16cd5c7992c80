// Permission: only the grant is kept, the rest is judged afresh.

#include "FolderStore/FolderStoreWorld.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cstdlib>

namespace Tinkra::System {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class FolderAccessTest : public FolderStoreWorld {
protected:
    FolderAccessTest()
    {
        defaults = std::make_shared<FakeDefaults>();
        restart();
        write("Cloud/Work/a.ics", calendarWith("a", "A"));
    }

    bool request() { return loop.runInRealTime(store->requestFullAccess()); }
};

TEST_F(FolderAccessTest, IsNotDeterminedAndEmptyUntilItIsGranted)
{
    EXPECT_EQ(store->authorizationStatus(), CalendarAuthorization::NotDetermined);
    EXPECT_THAT(calendars(), IsEmpty());
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_THAT(defaults->keys(), IsEmpty());
}

TEST_F(FolderAccessTest, IsGrantedWhenItIsAskedForAndARootCanBeReached)
{
    EXPECT_TRUE(request());

    EXPECT_EQ(store->authorizationStatus(), CalendarAuthorization::FullAccess);
    EXPECT_THAT(titles(), ElementsAre("A"));
}

TEST_F(FolderAccessTest, KeepsTheGrantAlone)
{
    request();
    EXPECT_THAT(defaults->keys(), ElementsAre(options.grantKey));

    restart();
    EXPECT_EQ(store->authorizationStatus(), CalendarAuthorization::FullAccess);
}

TEST_F(FolderAccessTest, MakesTheFirstRootForTheUserAlone)
{
    std::filesystem::remove_all(root);
    options.roots = {(folder / "share/tinkra/calendars").string()};
    restart();

    EXPECT_TRUE(request());

    struct stat status { };
    ASSERT_EQ(stat(options.roots[0].c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
    EXPECT_THAT(calendars(), IsEmpty());
}

TEST_F(FolderAccessTest, IsDeniedWhenNoRootCanBeReached)
{
    options.roots = {"/proc/none/calendars"};
    restart();
    EXPECT_EQ(store->authorizationStatus(), CalendarAuthorization::NotDetermined);

    EXPECT_FALSE(request());

    EXPECT_EQ(store->authorizationStatus(), CalendarAuthorization::Denied);
    EXPECT_THAT(calendars(), IsEmpty());
    EXPECT_THAT(defaults->keys(), IsEmpty());
}

TEST_F(FolderAccessTest, IsGrantedWhenTheFirstRootCannotBeMadeAndAnotherOneIsThere)
{
    options.roots = {"/proc/none/calendars", root.string()};
    restart();

    EXPECT_TRUE(request());
}

TEST_F(FolderAccessTest, JudgesAtEachQuestionWhetherTheRootIsThere)
{
    request();
    std::filesystem::rename(root, folder / "away");
    EXPECT_EQ(store->authorizationStatus(), CalendarAuthorization::Denied);

    std::filesystem::rename(folder / "away", root);
    EXPECT_EQ(store->authorizationStatus(), CalendarAuthorization::FullAccess);
}

TEST_F(FolderAccessTest, ThrowsAfterTheGrantWhenTheRootIsGoneRatherThanBeingEmpty)
{
    request();
    std::filesystem::remove_all(root);

    EXPECT_THAT(errorOfCalendars(), HasSubstr("is missing"));
    EXPECT_THAT(errorOfEvents(), HasSubstr("is missing"));
    restart();
    EXPECT_THAT(errorOfCalendars(), HasSubstr("is missing"));
}

TEST_F(FolderAccessTest, MakesNoRootInPlaceOfOneThatIsGoneSinceTheGrant)
{
    request();
    std::filesystem::remove_all(root);
    restart();

    EXPECT_FALSE(request());

    EXPECT_FALSE(std::filesystem::exists(root));
    EXPECT_THAT(errorOfCalendars(), HasSubstr("is missing"));
}

TEST_F(FolderAccessTest, DoesNotCountAGrantThatCannotBeKept)
{
    defaults->failWrites();

    EXPECT_FALSE(request());
    EXPECT_EQ(store->authorizationStatus(), CalendarAuthorization::NotDetermined);
}

TEST_F(FolderAccessTest, FindsTheRootsInTheEnvironment)
{
    setenv("XDG_DATA_HOME", "/data", 1);
    setenv("TINKRA_CALENDARS", "/one/:/two//three::/data/tinkra/calendars:/one", 1);
    EXPECT_THAT(calendarRoots(), ElementsAre("/data/tinkra/calendars", "/one", "/two/three"));

    unsetenv("TINKRA_CALENDARS");
    unsetenv("XDG_DATA_HOME");
    setenv("HOME", "/home/user", 1);
    EXPECT_THAT(calendarRoots(), ElementsAre("/home/user/.local/share/tinkra/calendars"));
}

}
}
