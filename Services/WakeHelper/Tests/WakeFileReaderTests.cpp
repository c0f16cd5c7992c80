#include "WakeFileReader.h"

#include "TinkraTestSupport/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <fstream>
#include <string>

namespace Tinkra::WakeHelper {
namespace {

constexpr std::int64_t kNow = 1'704'099'600;

class WakeFileReaderTest : public testing::Test {
protected:
    void write(const std::string& text) const { std::ofstream(path) << text; }

    std::optional<std::int64_t> wanted() const { return wakeWanted(path, kNow); }

    TemporaryFolder folder;
    std::filesystem::path path = folder.path() / "wake";
};

TEST_F(WakeFileReaderTest, WantsTheTimeInTheFile)
{
    write("1704100000");

    EXPECT_EQ(wanted(), 1'704'100'000);
}

TEST_F(WakeFileReaderTest, WantsNothingForZero)
{
    write("0");

    EXPECT_EQ(wanted(), std::nullopt);
}

TEST_F(WakeFileReaderTest, WantsNothingForATimeThatIsPastOrNow)
{
    write(std::to_string(kNow));
    EXPECT_EQ(wanted(), std::nullopt);

    write(std::to_string(kNow - 30));
    EXPECT_EQ(wanted(), std::nullopt);
}

TEST_F(WakeFileReaderTest, WantsNothingWithoutAFile)
{
    EXPECT_EQ(wanted(), std::nullopt);
}

TEST_F(WakeFileReaderTest, WantsNothingForAnythingButDigits)
{
    for (const auto* text :
        {"", "1704100000\n", " 1704100000", "+1704100000", "-1", "1e10", "99999999999999999999999"}) {
        write(text);
        EXPECT_EQ(wanted(), std::nullopt) << text;
    }
}

TEST_F(WakeFileReaderTest, DoesNotFollowALink)
{
    const auto target = folder.path() / "target";
    std::ofstream(target) << "1704100000";
    std::filesystem::create_symlink(target, path);

    EXPECT_EQ(wanted(), std::nullopt);
}

TEST_F(WakeFileReaderTest, DoesNotWaitForAPipe)
{
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);

    EXPECT_EQ(wanted(), std::nullopt);
}

}
}
