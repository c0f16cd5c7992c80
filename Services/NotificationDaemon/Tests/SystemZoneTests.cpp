#include "NotificationDaemon/SystemZone.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace Tinkra::NotificationDaemon {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kSummer2026 = 1782900000;

class SystemZoneTest : public testing::Test {
protected:
    void SetUp() override
    {
        std::string name = testing::TempDir() + "zoneXXXXXX";
        m_folder = mkdtemp(name.data());
    }
    void TearDown() override
    {
        unsetenv("TZ");
        tzset();
        fs::remove_all(m_folder);
    }

    fs::path m_folder;
};

TEST_F(SystemZoneTest, FollowsALinkThatIsReplacedWhileItRuns)
{
    const auto link = m_folder / "localtime";
    fs::create_symlink("/usr/share/zoneinfo/Europe/Zurich", link);
    setenv("TZ", (":" + link.string()).c_str(), 1);
    SystemZone zone;
    EXPECT_EQ(zone.utcOffset(kSummer2026), 7200);
    EXPECT_FALSE(zone.reload());

    fs::remove(link);
    fs::create_symlink("/usr/share/zoneinfo/America/New_York", link);

    EXPECT_TRUE(zone.reload());
    EXPECT_EQ(zone.utcOffset(kSummer2026), -4 * 3600);
    EXPECT_EQ(zone.file(), link.string());
}

TEST_F(SystemZoneTest, ReadsZoneDataThatIsUpdatedInPlace)
{
    const auto file = m_folder / "zone";
    fs::copy_file("/usr/share/zoneinfo/Europe/Zurich", file);
    setenv("TZ", file.c_str(), 1);
    SystemZone zone;

    fs::remove(file);
    fs::copy_file("/usr/share/zoneinfo/Asia/Tokyo", file);

    EXPECT_TRUE(zone.reload());
    EXPECT_EQ(zone.utcOffset(kSummer2026), 9 * 3600);
}

TEST_F(SystemZoneTest, IsUtcWhereThereIsNoSuchFile)
{
    setenv("TZ", (m_folder / "missing").c_str(), 1);
    SystemZone zone;

    EXPECT_EQ(zone.utcOffset(kSummer2026), 0);
    EXPECT_FALSE(zone.reload());
}

TEST_F(SystemZoneTest, UnderstandsARuleInPlaceOfAName)
{
    setenv("TZ", "XYZ-3", 1);
    SystemZone zone;

    EXPECT_EQ(zone.utcOffset(kSummer2026), 3 * 3600);
    EXPECT_EQ(zone.file(), "");
}

}
}
