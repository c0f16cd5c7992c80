#include "TinkraSystemLinux/DefaultsLinux.h"

#include "TinkraTestSupport/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <map>

namespace Tinkra::System {
namespace {

using std::filesystem::path;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr auto key = "tinkra.configuration";

class DefaultsLinuxTest : public testing::Test {
protected:
    void putFile(const path& name, const std::string& bytes) const
    {
        std::ofstream(folder.path() / name) << bytes;
    }

    std::vector<std::string> names(const path& where) const
    {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(where))
            found.push_back(entry.path().filename());
        return found;
    }

    static mode_t modeOf(const path& file)
    {
        struct stat status = {};
        EXPECT_EQ(::lstat(file.c_str(), &status), 0);
        return status.st_mode & 07777U;
    }

    TemporaryFolder folder;
    std::vector<std::string> log;
    DefaultsLinux defaults{folder.path(), [this](const std::string& line) { log.push_back(line); }};
};

TEST_F(DefaultsLinuxTest, KeepsEachKeyInAFileOfThatName)
{
    defaults.setData(key, "{}");

    EXPECT_THAT(names(folder.path()), ElementsAre(key));
    EXPECT_EQ(std::filesystem::file_size(folder.path() / key), 2U);
}

TEST_F(DefaultsLinuxTest, ReadingCreatesNothing)
{
    DefaultsLinux elsewhere(folder.path() / "not" / "there");

    EXPECT_EQ(elsewhere.data(key), std::nullopt);
    EXPECT_THAT(names(folder.path()), IsEmpty());
}

TEST_F(DefaultsLinuxTest, MakesItsFoldersPrivateWhateverTheUmask)
{
    for (const mode_t mask : {0U, 0777U}) {
        const auto below = folder.path() / std::to_string(mask);
        const auto before = ::umask(mask);
        DefaultsLinux(below / "tinkra").setData(key, "{}");
        ::umask(before);

        EXPECT_EQ(modeOf(below), 0700U);
        EXPECT_EQ(modeOf(below / "tinkra"), 0700U);
        EXPECT_EQ(modeOf(below / "tinkra" / key), 0600U);
    }
}

TEST_F(DefaultsLinuxTest, TakesAFileOfOneMegabyteAndNothingLonger)
{
    putFile("fits", std::string(DefaultsLinux::maximumSize, 'x'));
    putFile("long", std::string(DefaultsLinux::maximumSize + 1, 'x'));

    EXPECT_EQ(defaults.data("fits")->size(), DefaultsLinux::maximumSize);
    EXPECT_EQ(defaults.data("long"), std::nullopt);
}

TEST_F(DefaultsLinuxTest, DoesNotSaveWhatItCouldNotReadBack)
{
    defaults.setData(key, "old");
    defaults.setData(key, std::string(DefaultsLinux::maximumSize + 1, 'x'));

    EXPECT_EQ(defaults.data(key), "old");
    EXPECT_EQ(log.size(), 1U);
}

TEST_F(DefaultsLinuxTest, AnEndlessFileIsNoData)
{
    std::filesystem::create_symlink("/dev/zero", folder.path() / "zero");

    EXPECT_EQ(defaults.data("zero"), std::nullopt);
}

TEST_F(DefaultsLinuxTest, APipeIsNoDataAndNobodyWaitsForIt)
{
    ASSERT_EQ(::mkfifo((folder.path() / "pipe").c_str(), 0600), 0);

    EXPECT_EQ(defaults.data("pipe"), std::nullopt);
}

TEST_F(DefaultsLinuxTest, AFolderInTheFilesPlaceIsNoDataAndStays)
{
    std::filesystem::create_directories(folder.path() / key / "inside");

    EXPECT_EQ(defaults.data(key), std::nullopt);
    defaults.setData(key, "new");
    EXPECT_TRUE(std::filesystem::exists(folder.path() / key / "inside"));
    ASSERT_EQ(log.size(), 1U);
    EXPECT_THAT(log.front(), HasSubstr("was not saved"));
    EXPECT_THAT(names(folder.path()), ElementsAre(key));
}

TEST_F(DefaultsLinuxTest, ReadsThroughALinkAndReplacesTheLinkAloneWhenWriting)
{
    putFile("target", "from the target");
    std::filesystem::create_symlink("target", folder.path() / key);
    EXPECT_EQ(defaults.data(key), "from the target");

    defaults.setData(key, "new");

    EXPECT_EQ(defaults.data(key), "new");
    EXPECT_EQ(defaults.data("target"), "from the target");
    EXPECT_FALSE(std::filesystem::is_symlink(folder.path() / key));
}

TEST_F(DefaultsLinuxTest, ADanglingLinkOrALoopIsNothing)
{
    std::filesystem::create_symlink("nowhere", folder.path() / "dangling");
    std::filesystem::create_symlink("loop", folder.path() / "loop");

    EXPECT_EQ(defaults.data("dangling"), std::nullopt);
    EXPECT_EQ(defaults.data("loop"), std::nullopt);
}

TEST_F(DefaultsLinuxTest, AFileInTheFoldersPlaceIsReportedOnce)
{
    putFile("file", "");
    DefaultsLinux inFile(
        folder.path() / "file" / "tinkra", [this](const std::string& line) { log.push_back(line); });

    inFile.setData(key, "new");

    EXPECT_EQ(inFile.data(key), std::nullopt);
    EXPECT_EQ(log.size(), 1U);
}

TEST_F(DefaultsLinuxTest, RefusesKeysThatAreNoFileNames)
{
    const std::string withNul("a\0b", 3);
    const std::string tooLong(300, 'x');
    putFile("outside", "secret");
    std::filesystem::create_directory(folder.path() / "inside");
    DefaultsLinux inside(folder.path() / "inside", [this](const std::string& line) { log.push_back(line); });

    for (const auto& bad : {std::string(), std::string("."), std::string(".."), std::string("../outside"),
             std::string("a/b"), withNul, tooLong}) {
        inside.setData(bad, "new");
        EXPECT_EQ(inside.data(bad), std::nullopt);
    }

    EXPECT_EQ(log.size(), 7U);
    EXPECT_THAT(names(folder.path() / "inside"), IsEmpty());
    EXPECT_EQ(defaults.data("outside"), "secret");
}

TEST_F(DefaultsLinuxTest, AWriteThatFailsHalfWayLeavesTheOldValueAndNoTrace)
{
    defaults.setData(key, "old");

    // In a process of its own: a limit on the size of files stands for a full disk.
    const auto child = ::fork();
    if (child == 0) {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{.rlim_cur = 4096, .rlim_max = 4096};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        defaults.setData(key, std::string(100'000, 'x'));
        ::_exit(log.size() == 1 ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);

    EXPECT_EQ(status, 0);
    EXPECT_EQ(defaults.data(key), "old");
    EXPECT_THAT(names(folder.path()), ElementsAre(key));
}

TEST_F(DefaultsLinuxTest, ConcurrentWritersNeverLeaveAMixture)
{
    constexpr int rounds = 100;
    const std::map<char, std::string> values{
        {'a', std::string(30'000, 'a')}, {'b', std::string(50'000, 'b')}};
    defaults.setData(key, values.at('a'));

    std::vector<std::thread> writers;
    for (const auto& [letter, value] : values)
        writers.emplace_back([this, &value = value] {
            DefaultsLinux another(folder.path());
            for (int round = 0; round < rounds; ++round)
                another.setData(key, value);
        });
    for (int round = 0; round < 20 * rounds; ++round) {
        const auto read = defaults.data(key);
        EXPECT_TRUE(read && (*read == values.at('a') || *read == values.at('b')));
    }
    for (auto& writer : writers)
        writer.join();

    EXPECT_THAT(names(folder.path()), ElementsAre(key));
}

}
}
