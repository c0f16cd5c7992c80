#include "TinkraICalendar/Zone.h"

#include "RuleTestSupport.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>

namespace Tinkra::ICalendar::Test {

namespace {

namespace fs = std::filesystem;

std::string nameOf(const ZonePtr& zone)
{
    return zone ? zone->name() : "none";
}

std::chrono::seconds offsetAt(const ZonePtr& zone, std::string_view time)
{
    return zone->toLocal(utc(time)).time_since_epoch() - utc(time).time_since_epoch();
}

/// Sets a variable of the environment for as long as it lives; nullptr unsets it.
class ScopedVariable {
public:
    ScopedVariable(const char* name, const char* value)
        : m_name(name)
    {
        if (const char* before = std::getenv(name))
            m_before = before;
        set(value);
        refreshZones();
    }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;
    ~ScopedVariable()
    {
        set(m_before ? m_before->c_str() : nullptr);
        refreshZones();
    }

private:
    void set(const char* value) const
    {
        if (value)
            setenv(m_name, value, 1);
        else
            unsetenv(m_name);
    }

    const char* m_name;
    std::optional<std::string> m_before;
};

/// An empty folder that goes away with it.
class ScopedFolder {
public:
    ScopedFolder()
    {
        std::string pattern = (fs::temp_directory_path() / "zones.XXXXXX").string();
        m_path = mkdtemp(pattern.data());
    }
    ScopedFolder(const ScopedFolder&) = delete;
    ScopedFolder& operator=(const ScopedFolder&) = delete;
    ~ScopedFolder() { fs::remove_all(m_path); }

    const fs::path& path() const { return m_path; }

private:
    fs::path m_path;
};

TEST(FindZone, KnowsIanaNamesAndTheirAliases)
{
    for (const std::string name : {"Europe/Zurich", "America/Argentina/Ushuaia", "US/Eastern",
             "Asia/Calcutta", "Etc/GMT+5", "GB-Eire", "EST5EDT", "Europe/Kyiv", "Asia/Katmandu"})
        EXPECT_EQ(nameOf(findZone(name)), name);
    EXPECT_EQ(offsetAt(findZone("Etc/GMT+5"), "20260101"), -std::chrono::hours{5});
}

TEST(FindZone, KnowsIanaNamesInAnyCase)
{
    EXPECT_EQ(nameOf(findZone("europe/ZURICH")), "Europe/Zurich");
    EXPECT_EQ(nameOf(findZone("america/new york")), "America/New_York");
}

TEST(FindZone, KnowsUtcByItsNames)
{
    for (const auto* const name :
        {"Z", "UTC", "utc", "Etc/UTC", "tzone://Microsoft/Utc", "/freeassociation.sourceforge.net/UTC"})
        EXPECT_EQ(findZone(name), utcZone()) << name;
    for (const auto* const name : {"GMT", "Etc/GMT", "Zulu", "Universal", "Greenwich"})
        EXPECT_EQ(offsetAt(findZone(name), "20260701"), std::chrono::seconds{0}) << name;
}

TEST(FindZone, KnowsNamesBehindThePrefixOfAProgram)
{
    EXPECT_EQ(nameOf(findZone("/citadel.org/20210210_1/Europe/Berlin")), "Europe/Berlin");
    EXPECT_EQ(nameOf(findZone("/freeassociation.sourceforge.net/Europe/Berlin")), "Europe/Berlin");
    EXPECT_EQ(nameOf(findZone("/softwarestudio.org/Olson_20011030_5/America/Argentina/Salta")),
        "America/Argentina/Salta");
    EXPECT_EQ(nameOf(findZone("/example.com/Tzfile/US/Pacific")), "US/Pacific");
}

TEST(FindZone, KnowsWindowsNames)
{
    EXPECT_EQ(nameOf(findZone("W. Europe Standard Time")), "Europe/Berlin");
    EXPECT_EQ(nameOf(findZone("\"Pacific Standard Time\"")), "America/Los_Angeles");
    EXPECT_EQ(nameOf(findZone(" GMT Standard Time ")), "Europe/London");
    EXPECT_EQ(offsetAt(findZone("Nepal Standard Time"), "20260101"), std::chrono::minutes{345});
}

TEST(FindZone, FindsNothingForNamesThatNobodyKnows)
{
    const std::string longName(100'000, 'x');
    for (const std::string_view name :
        {std::string_view(""), std::string_view(" "), std::string_view("Nowhere/Nothing"),
            std::string_view("Etc/Unknown"), std::string_view("tzone://Microsoft/Custom"),
            std::string_view("/"), std::string_view("//"), std::string_view("Customized Time Zone"),
            std::string_view("Europe"), std::string_view("Europe/"), std::string_view("../../../etc/passwd"),
            std::string_view("/etc/passwd"), std::string_view("right/Europe/Zurich"),
            std::string_view("zone.tab"), std::string_view("leapseconds"), std::string_view("\0UTC", 4),
            std::string_view("%n%s"), std::string_view(longName)})
        EXPECT_EQ(nameOf(findZone(name)), "none") << name.substr(0, 50);
}

TEST(FindZone, MakesEachZoneOnce)
{
    EXPECT_EQ(findZone("Europe/Zurich"), findZone("europe/zurich"));
    EXPECT_EQ(findZone("Europe/Zurich"), findZone("/example.org/Europe/Zurich"));
}

TEST(FindZone, AnswersManyThreadsWithTheSameZone)
{
    std::array<ZonePtr, 8> found;
    {
        std::vector<std::jthread> threads;
        for (auto& zone : found)
            threads.emplace_back([&zone] {
                for (int i = 0; i < 100; ++i)
                    zone = findZone(i % 2 == 0 ? "Asia/Tokyo" : "Tokyo Standard Time");
            });
    }
    for (const auto& zone : found)
        EXPECT_EQ(zone, findZone("Asia/Tokyo"));
}

TEST(FindZone, StaysRightAfterManyMadeUpNames)
{
    for (int i = 0; i < 10'000; ++i)
        EXPECT_EQ(findZone("/made-up/" + std::to_string(i)), nullptr);
    EXPECT_EQ(nameOf(findZone("Europe/Zurich")), "Europe/Zurich");
}

TEST(FindZone, ReadsZoneDataOfAnotherFolderAfterALook)
{
    const ScopedFolder folder;
    fs::create_directories(folder.path() / "Europe");
    fs::copy_file("/usr/share/zoneinfo/Asia/Tokyo", folder.path() / "Europe/Zurich");
    const auto before = findZone("Europe/Zurich");

    const ScopedVariable updated("TZDIR", folder.path().c_str());

    EXPECT_EQ(offsetAt(before, "20260101"), std::chrono::hours{1});
    EXPECT_EQ(offsetAt(findZone("Europe/Zurich"), "20260101"), std::chrono::hours{9});
}

TEST(FindZone, ReadsUpdatedZoneDataAfterALook)
{
    const ScopedFolder folder;
    fs::copy_file("/usr/share/zoneinfo/Asia/Tokyo", folder.path() / "CET");
    const ScopedVariable variable("TZDIR", folder.path().c_str());
    ASSERT_EQ(offsetAt(findZone("CET"), "20260101"), std::chrono::hours{9});

    // As a package manager does it: a new file takes the place of the old one.
    fs::copy_file("/usr/share/zoneinfo/Asia/Kathmandu", folder.path() / "CET.new");
    fs::rename(folder.path() / "CET.new", folder.path() / "CET");
    fs::last_write_time(folder.path(), fs::last_write_time(folder.path()) + std::chrono::seconds{1});
    EXPECT_EQ(offsetAt(findZone("CET"), "20260101"), std::chrono::hours{9});
    refreshZones();

    EXPECT_EQ(offsetAt(findZone("CET"), "20260101"), std::chrono::minutes{345});
}

TEST(FindZone, FallsBackToTheDataOfIcuWithoutZoneFiles)
{
    const ScopedFolder empty;
    const ScopedVariable folder("TZDIR", empty.path().c_str());

    EXPECT_EQ(nameOf(findZone("Europe/Zurich")), "Europe/Zurich");
    EXPECT_EQ(offsetAt(findZone("Europe/Zurich"), "20260701"), std::chrono::hours{2});
    EXPECT_EQ(offsetAt(findZone("W. Europe Standard Time"), "90260101"), std::chrono::hours{1});
    EXPECT_EQ(findZone("Nowhere/Nothing"), nullptr);
}

TEST(GuessZone, FindsTheCityOfADisplayNameWhoseOffsetFits)
{
    EXPECT_EQ(nameOf(guessZone("(UTC+01:00) Amsterdam, Berlin, Bern, Rome, Stockholm, Vienna")),
        "Europe/Amsterdam");
    EXPECT_EQ(nameOf(guessZone("(GMT+05:45) Kathmandu")), "Asia/Kathmandu");
    EXPECT_EQ(nameOf(guessZone("(UTC-03:00) Buenos Aires")), "America/Buenos_Aires");
    EXPECT_EQ(nameOf(guessZone("(UTC+10:00) Canberra, Melbourne, Sydney")), "Australia/Canberra");
}

TEST(GuessZone, KnowsTheDisplayNamesOfNorthAmerica)
{
    EXPECT_EQ(nameOf(guessZone("(UTC-05:00) Eastern Time (US & Canada)")), "America/New_York");
    EXPECT_EQ(nameOf(guessZone("(UTC-06:00) Central Time (US & Canada)")), "America/Chicago");
    EXPECT_EQ(nameOf(guessZone("(UTC-07:00) Mountain Time (US & Canada)")), "America/Denver");
    EXPECT_EQ(nameOf(guessZone("(UTC-08:00) Pacific Time (US & Canada)")), "America/Los_Angeles");
    EXPECT_EQ(nameOf(guessZone("(UTC-07:00) Arizona")), "America/Phoenix");
}

TEST(GuessZone, KeepsTheOffsetWhereNoCityFitsIt)
{
    const auto zone = guessZone("(UTC+01:00) Berlin-on-Sea, Tokyo");
    EXPECT_EQ(offsetAt(zone, "20260101"), std::chrono::hours{1});
    EXPECT_EQ(offsetAt(zone, "20260701"), std::chrono::hours{1});
}

TEST(GuessZone, ReadsOffsets)
{
    for (const auto* const name :
        {"UTC+02:00", "GMT+0200", "UTC+2", "utc+02", "+0200", "+02:00", "GMT +02:00"})
        EXPECT_EQ(offsetAt(guessZone(name), "20260701"), std::chrono::hours{2}) << name;
    EXPECT_EQ(offsetAt(guessZone("UTC-09:30"), "20260701"), -std::chrono::minutes{570});
    EXPECT_EQ(guessZone("(UTC) Coordinated Universal Time"), utcZone());
}

TEST(GuessZone, GuessesNothingFromOtherTexts)
{
    for (const auto* const name : {"", "Customized Time Zone", "tzone://Microsoft/Custom", "UTC+25:00",
             "UTC+", "(UTC+01:00", "+", "-", "(", "UTC+1:99", "My+Zone"})
        EXPECT_EQ(nameOf(guessZone(name)), "none") << name;
}

TEST(ViewerZone, IsTheZoneThatTzNames)
{
    for (const auto* const value :
        {"Asia/Tokyo", ":Asia/Tokyo", "/usr/share/zoneinfo/Asia/Tokyo", ":/usr/share/zoneinfo/Asia/Tokyo"}) {
        const ScopedVariable variable("TZ", value);
        EXPECT_EQ(nameOf(viewerZone()), "Asia/Tokyo") << value;
    }
}

TEST(ViewerZone, IsTheZoneThatTzDescribes)
{
    const ScopedVariable variable("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");

    EXPECT_EQ(offsetAt(viewerZone(), "20260101"), std::chrono::hours{1});
    EXPECT_EQ(offsetAt(viewerZone(), "20260701"), std::chrono::hours{2});
    EXPECT_EQ(offsetAt(viewerZone(), "90260701"), std::chrono::hours{2});
}

TEST(ViewerZone, IsUtcAndNotKnownWhenTzMeansNothing)
{
    const ScopedVariable variable("TZ", "Nowhere/Nothing");

    EXPECT_EQ(viewerZone(), utcZone());
    EXPECT_EQ(knownViewerZone(), nullptr);
}

TEST(ViewerZone, IsReadFromAFileThatIsNotALink)
{
    const ScopedFolder folder;
    const auto file = folder.path() / "localtime";
    fs::copy_file("/usr/share/zoneinfo/Asia/Kathmandu", file);
    const ScopedVariable variable("TZ", file.c_str());
    ASSERT_TRUE(knownViewerZone());
    EXPECT_EQ(offsetAt(viewerZone(), "20260101"), std::chrono::minutes{345});

    fs::copy_file("/usr/share/zoneinfo/Asia/Tokyo", file, fs::copy_options::overwrite_existing);

    EXPECT_EQ(offsetAt(viewerZone(), "20260101"), std::chrono::hours{9});
}

TEST(ViewerZone, FollowsALinkThatChanges)
{
    const ScopedFolder folder;
    const auto link = folder.path() / "localtime";
    fs::create_symlink("/usr/share/zoneinfo/Europe/Zurich", link);
    const ScopedVariable variable("TZ", link.c_str());
    EXPECT_EQ(nameOf(viewerZone()), "Europe/Zurich");

    fs::remove(link);
    fs::create_symlink("/usr/share/zoneinfo/Asia/Tokyo", link);
    EXPECT_EQ(nameOf(viewerZone()), "Asia/Tokyo");

    fs::remove(link);
    EXPECT_EQ(knownViewerZone(), nullptr);
}

}

}
