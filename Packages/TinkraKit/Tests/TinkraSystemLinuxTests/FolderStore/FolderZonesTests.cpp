// What becomes of events when the zone data of the machine changes while the program runs.

#include "FolderStore/FolderStoreWorld.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>

namespace Tinkra::System {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr double kHour = 3600;

class FolderZonesTest : public FolderStoreWorld {
protected:
    FolderZonesTest() { std::filesystem::create_directories(zones / "Europe"); }
    ~FolderZonesTest() override { unsetenv("TZDIR"); }

    /// As if an update of the machine had given Zurich the clocks of another place.
    void giveZurichTheClocksOf(const std::string& place) const
    {
        std::filesystem::copy_file("/usr/share/zoneinfo/" + place, zones / "Europe/Zurich");
        setenv("TZDIR", zones.c_str(), 1);
    }

    double startOfTheOnlyEvent()
    {
        const auto found = events();
        return found.size() == 1 && found[0].start ? secondsSince1970(*found[0].start) : 0;
    }

    std::filesystem::path zones = folder / "zones";
};

std::string atTenOClock(const std::string& parameters)
{
    return vcalendar("BEGIN:VEVENT\r\nUID:a\r\nSUMMARY:A\r\nDTSTART" + parameters
        + ":20261203T100000\r\nDURATION:PT30M\r\nEND:VEVENT\r\n");
}

TEST_F(FolderZonesTest, AreReadAnewForEventsThatWereReadBefore)
{
    write("Cloud/Work/a.ics", atTenOClock(";TZID=Europe/Zurich"));
    ASSERT_EQ(startOfTheOnlyEvent(), kDecember + 2 * kDay + 9 * kHour);

    giveZurichTheClocksOf("Asia/Tokyo");

    EXPECT_EQ(startOfTheOnlyEvent(), kDecember + 2 * kDay + 1 * kHour);
}

TEST_F(FolderZonesTest, AreReadAnewForTimesOnTheUsersOwnClock)
{
    write("Cloud/Work/a.ics", atTenOClock({}));
    ASSERT_EQ(startOfTheOnlyEvent(), kDecember + 2 * kDay + 9 * kHour);

    giveZurichTheClocksOf("Asia/Tokyo");

    EXPECT_EQ(startOfTheOnlyEvent(), kDecember + 2 * kDay + 1 * kHour);
}

TEST_F(FolderZonesTest, AreUtcWithANoticeWhereTheMachineDoesNotKnowItsOwn)
{
    write("Cloud/Work/a.ics", atTenOClock({}));
    EXPECT_THAT(status().notices, Not(Contains(HasSubstr("time zone is not known"))));

    setenv("TZ", "Nowhere/Nothing", 1);

    EXPECT_EQ(startOfTheOnlyEvent(), kDecember + 2 * kDay + 10 * kHour);
    EXPECT_THAT(status().notices, Contains(HasSubstr("time zone is not known; UTC is used")));
}

TEST_F(FolderZonesTest, CostOneReadingOfEachFileWhenTheyChangeAndNoneAfterwards)
{
    write("Cloud/Work/a.ics", atTenOClock(";TZID=Europe/Zurich"));
    startOfTheOnlyEvent();
    giveZurichTheClocksOf("Asia/Tokyo");
    files->takeOpened();

    startOfTheOnlyEvent();
    EXPECT_THAT(files->takeOpened(), Contains("a.ics"));

    startOfTheOnlyEvent();
    EXPECT_THAT(files->takeOpened(), IsEmpty());
}

}
}
