#include "TinkraSystemMac/SharedFolderMac.h"

#include "TinkraTestSupport/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

namespace Tinkra::System {
namespace {

using std::filesystem::perms;

class SharedFolderMacTest : public testing::Test {
protected:
    std::string content(const char* name = "wake") const
    {
        std::ifstream file(path / name);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    perms permissionsOf(const std::filesystem::path& what) const
    {
        return std::filesystem::status(what).permissions();
    }

    TemporaryFolder temporary;
    std::filesystem::path path = temporary.path() / "Shared" / "CalendarMurkel";
    SharedFolderMac folder{path};
};

TEST_F(SharedFolderMacTest, MakesTheFolderAndThoseAboveItWithThePermissionsAskedFor)
{
    EXPECT_FALSE(folder.exists());

    EXPECT_TRUE(folder.create(kSharedFolderPermissions));

    EXPECT_TRUE(folder.exists());
    EXPECT_EQ(permissionsOf(path), static_cast<perms>(0755));
}

TEST_F(SharedFolderMacTest, ReplacesTheWholeContentOfAFileThatAllMayRead)
{
    folder.create(kSharedFolderPermissions);
    EXPECT_FALSE(folder.holds("wake"));

    EXPECT_TRUE(folder.replace("wake", "1704099600"));
    EXPECT_TRUE(folder.replace("wake", "0"));

    EXPECT_TRUE(folder.holds("wake"));
    EXPECT_EQ(content(), "0");
    EXPECT_EQ(permissionsOf(path / "wake"), static_cast<perms>(0644));
}

TEST_F(SharedFolderMacTest, LeavesNothingElseBehind)
{
    folder.create(kSharedFolderPermissions);
    std::ofstream(path / ".wake.new") << "left by an earlier attempt";

    folder.replace("wake", "1");

    const std::filesystem::directory_iterator entries(path);
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 1);
}

TEST_F(SharedFolderMacTest, WritesNothingWhereThereIsNoFolder)
{
    EXPECT_FALSE(folder.replace("wake", "1"));
    EXPECT_FALSE(folder.exists());
}

TEST_F(SharedFolderMacTest, WritesNothingThroughALinkThatStandsInItsPlace)
{
    const auto elsewhere = temporary.path() / "elsewhere";
    std::filesystem::create_directories(elsewhere);
    std::filesystem::create_directories(path.parent_path());
    std::filesystem::create_directory_symlink(elsewhere, path);

    EXPECT_FALSE(folder.replace("wake", "1"));
    EXPECT_TRUE(std::filesystem::is_empty(elsewhere));
}

TEST_F(SharedFolderMacTest, WritesNothingIntoAFolderThatOthersMayWriteTo)
{
    folder.create(kSharedFolderPermissions);
    std::filesystem::permissions(path, static_cast<perms>(0777));

    EXPECT_FALSE(folder.replace("wake", "1"));
    EXPECT_FALSE(folder.holds("wake"));
}

TEST_F(SharedFolderMacTest, ReplacesALinkRatherThanWhatItPointsTo)
{
    folder.create(kSharedFolderPermissions);
    const auto target = temporary.path() / "target";
    std::ofstream(target) << "mine";
    std::filesystem::create_symlink(target, path / "wake");

    EXPECT_TRUE(folder.replace("wake", "1"));

    EXPECT_EQ(content(), "1");
    std::ifstream untouched(target);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(untouched), {}), "mine");
}

}
}
