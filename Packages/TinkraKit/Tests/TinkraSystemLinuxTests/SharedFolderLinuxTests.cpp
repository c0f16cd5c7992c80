#include "TinkraSystemLinux/SharedFolderLinux.h"
#include "TinkraTestSupport/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <thread>

#include <sys/stat.h>
#include <unistd.h>

namespace Tinkra::System {
namespace {

namespace fs = std::filesystem;

class SharedFolderLinuxTest : public testing::Test {
protected:
    TemporaryFolder base;
    fs::path path = base.path() / "1000";
    std::vector<std::string> logged;
    SharedFolderLinux folder{path, ::geteuid(), [this](const std::string& line) { logged.push_back(line); }};

    static fs::perms permissions(const fs::path& file) { return fs::status(file).permissions(); }
    static std::string content(const fs::path& file)
    {
        std::ifstream stream(file);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    std::size_t entries() const
    {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(path), {}));
    }
};

TEST_F(SharedFolderLinuxTest, FolderAndFileHaveTheirPermissionsWhateverTheUmask)
{
    for (const mode_t umaskThen : {mode_t{0}, mode_t{0777}}) {
        fs::remove_all(path);
        const auto before = ::umask(umaskThen);
        EXPECT_TRUE(folder.create(kSharedFolderPermissions));
        EXPECT_TRUE(folder.replace("wake", "1700053140"));
        ::umask(before);

        EXPECT_EQ(permissions(path), fs::perms{0755});
        EXPECT_EQ(permissions(path / "wake"), fs::perms{0644});
        EXPECT_EQ(entries(), 1U) << "nothing is left over";
    }
}

TEST_F(SharedFolderLinuxTest, NothingIsWrittenThroughALinkToAFolder)
{
    fs::create_directory(base.path() / "elsewhere");
    fs::create_directory_symlink(base.path() / "elsewhere", path);

    EXPECT_FALSE(folder.create(kSharedFolderPermissions));
    EXPECT_FALSE(folder.replace("wake", "1"));

    EXPECT_TRUE(fs::is_empty(base.path() / "elsewhere"));
    EXPECT_EQ(logged.size(), 2U);
}

TEST_F(SharedFolderLinuxTest, NothingIsWrittenIntoAFolderOfAnotherUser)
{
    fs::create_directory(path);
    SharedFolderLinux ours(
        path, ::geteuid() + 1, [this](const std::string& line) { logged.push_back(line); });

    EXPECT_FALSE(ours.replace("wake", "1"));

    EXPECT_TRUE(fs::is_empty(path));
    EXPECT_EQ(logged,
        std::vector<std::string>{"CalendarMurkel: the wake helper is not told of alarms: cannot use "
            + path.string() + ": it belongs to another user"});
}

TEST_F(SharedFolderLinuxTest, NothingIsWrittenWhereOthersMayWrite)
{
    fs::create_directory(path);
    for (const auto mode : {fs::perms{0777}, fs::perms{0775}, fs::perms{01777}}) {
        fs::permissions(path, mode);
        EXPECT_FALSE(folder.replace("wake", "1"));
        EXPECT_TRUE(fs::is_empty(path));
    }
}

TEST_F(SharedFolderLinuxTest, NothingIsWrittenWhereTheFolderIsAFileOrAPipe)
{
    std::ofstream{path};
    EXPECT_FALSE(folder.replace("wake", "1"));
    EXPECT_EQ(fs::file_size(path), 0U);

    fs::remove(path);
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    EXPECT_FALSE(folder.replace("wake", "1"));
    EXPECT_TRUE(fs::is_fifo(path));
}

TEST_F(SharedFolderLinuxTest, ALinkUnderTheFilesNameIsReplacedAndWhatItLeadsToIsLeft)
{
    folder.create(kSharedFolderPermissions);
    std::ofstream(base.path() / "victim") << "precious";
    for (const bool isHard : {false, true}) {
        fs::remove(path / "wake");
        if (isHard)
            fs::create_hard_link(base.path() / "victim", path / "wake");
        else
            fs::create_symlink(base.path() / "victim", path / "wake");

        EXPECT_TRUE(folder.replace("wake", "1"));

        EXPECT_EQ(content(base.path() / "victim"), "precious");
        EXPECT_EQ(content(path / "wake"), "1");
        EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(path / "wake")));
    }
}

TEST_F(SharedFolderLinuxTest, APipeUnderTheFilesNameIsNoFileAndIsReplaced)
{
    folder.create(kSharedFolderPermissions);
    ASSERT_EQ(::mkfifo((path / "wake").c_str(), 0600), 0);
    EXPECT_FALSE(folder.holds("wake"));

    EXPECT_TRUE(folder.replace("wake", "0"));

    EXPECT_TRUE(folder.holds("wake"));
}

TEST_F(SharedFolderLinuxTest, ADoubtIsLoggedOnceUntilItIsOver)
{
    EXPECT_FALSE(folder.replace("wake", "1"));
    EXPECT_FALSE(folder.replace("wake", "1"));
    EXPECT_EQ(logged.size(), 1U);

    folder.create(kSharedFolderPermissions);
    EXPECT_TRUE(folder.replace("wake", "1"));
    fs::remove_all(path);
    EXPECT_FALSE(folder.replace("wake", "1"));

    EXPECT_EQ(logged.size(), 2U);
}

TEST_F(SharedFolderLinuxTest, AReaderNeverFindsAHalfWrittenFile)
{
    folder.create(kSharedFolderPermissions);
    const std::string first(4000, '1');
    const std::string second(3000, '2');
    folder.replace("wake", first);

    std::jthread writer([&](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            folder.replace("wake", second);
            folder.replace("wake", first);
        }
    });
    for (int i = 0; i < 2000; ++i) {
        const auto read = content(path / "wake");
        ASSERT_TRUE(read == first || read == second) << read.size();
    }
}

}
}
