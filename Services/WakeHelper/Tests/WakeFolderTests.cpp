#include "WakeHelper/WakeFolder.h"

#include "TinkraTestSupport/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include <sys/stat.h>
#include <unistd.h>

namespace Tinkra::WakeHelper {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t now = 1'700'049'600;

/// The folder of all users, with one of this user.
class WakeFolder : public testing::Test {
protected:
    TemporaryFolder base;
    fs::path own = base.path() / std::to_string(::geteuid());

    void SetUp() override
    {
        fs::create_directory(own);
        fs::permissions(own, fs::perms{0755});
    }

    void write(const std::string& text) const
    {
        std::ofstream(own / "wake") << text;
        fs::permissions(own / "wake", fs::perms{0644});
    }

    std::optional<std::int64_t> wake() const { return earliestWake(base.path(), now); }
};

TEST_F(WakeFolder, AWakeOfItsUserIsWanted)
{
    write("1700053140");

    EXPECT_EQ(wake(), 1'700'053'140);
}

TEST_F(WakeFolder, ZeroAndTimesThatArePastMeanNoWake)
{
    for (const char* text : {"0", "1700049600", "1700049570"}) {
        write(text);
        EXPECT_EQ(wake(), std::nullopt) << text;
    }
}

TEST_F(WakeFolder, AnythingMalformedMeansNoWake)
{
    for (const auto& text : {std::string(), std::string("wake"), std::string("1700053140\n"),
             std::string("-1700053140"), std::string("000000000001700053140"), std::string(1 << 20, '1'),
             std::string("17000\0", 6), std::to_string(now + 400LL * 86'400)}) {
        write(text);
        EXPECT_EQ(wake(), std::nullopt) << text.substr(0, 30);
    }
}

TEST_F(WakeFolder, WithoutAFolderNoWakeIsWanted)
{
    EXPECT_EQ(earliestWake(base.path() / "nowhere", now), std::nullopt);
    fs::remove_all(own);
    EXPECT_EQ(wake(), std::nullopt);
}

TEST_F(WakeFolder, AFolderUnderAnotherUsersNameDoesNotCount)
{
    write("1700053140");
    fs::rename(own, base.path() / std::to_string(::geteuid() + 1));

    EXPECT_EQ(wake(), std::nullopt);
}

TEST_F(WakeFolder, AFolderThatOthersMayWriteToDoesNotCount)
{
    write("1700053140");
    fs::permissions(own, fs::perms{0777});

    EXPECT_EQ(wake(), std::nullopt);
}

TEST_F(WakeFolder, AFileThatOthersMayWriteToDoesNotCount)
{
    write("1700053140");
    fs::permissions(own / "wake", fs::perms{0666});

    EXPECT_EQ(wake(), std::nullopt);
}

TEST_F(WakeFolder, NoLinkIsFollowed)
{
    write("1700053140");
    fs::rename(own / "wake", own / "real");
    fs::create_symlink(own / "real", own / "wake");
    EXPECT_EQ(wake(), std::nullopt) << "of the file";

    fs::remove(own / "wake");
    fs::rename(own / "real", own / "wake");
    fs::rename(own, base.path() / "real");
    fs::create_directory_symlink(base.path() / "real", own);
    EXPECT_EQ(wake(), std::nullopt) << "of the folder";
}

TEST_F(WakeFolder, APipeOrAFolderInsteadOfTheFileHoldsNobodyUp)
{
    ASSERT_EQ(::mkfifo((own / "wake").c_str(), 0644), 0);
    EXPECT_EQ(wake(), std::nullopt);

    fs::remove(own / "wake");
    fs::create_directory(own / "wake");
    EXPECT_EQ(wake(), std::nullopt);
}

TEST_F(WakeFolder, OnlyNamesThatAreUsersNumbersAreUsers)
{
    for (const char* name : {"0", "1000", "01000", "-1", "+5", "4294967295", "4294967296", "root", "1000 "})
        fs::create_directories(base.path() / name);
    fs::remove(own);
    fs::create_directories(base.path() / "0");

    auto names = users(base.path());
    std::ranges::sort(names);
    EXPECT_EQ(names, (std::vector<std::string>{"0", "1000", "4294967295"}));
}

}
}
