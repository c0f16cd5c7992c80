#include "TinkraICalendar/PosixZoneRule.h"
#include "TinkraICalendar/ZoneFile.h"

#include "RuleTestSupport.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace Tinkra::ICalendar::Test {

namespace {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::year;

std::string bytesOf(const std::string& name)
{
    std::ifstream file("/usr/share/zoneinfo/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(ZoneFile, IsNoZoneWhenItIsCutAnywhere)
{
    const auto bytes = bytesOf("Europe/Zurich");
    ASSERT_TRUE(readZoneFile("Zurich", bytes));
    for (std::size_t size = 0; size < bytes.size(); ++size)
        ASSERT_FALSE(readZoneFile("Zurich", std::string_view(bytes).substr(0, size))) << size;
}

TEST(ZoneFile, NeverReadsOutsideOfItsBytes)
{
    const auto bytes = bytesOf("Pacific/Apia");
    for (std::size_t place = 0; place < bytes.size(); ++place) {
        for (const char value : {'\0', '\x01', '\x7f', '\xff'}) {
            auto damaged = bytes;
            damaged[place] = value;
            if (const auto zone = readZoneFile("Apia", damaged))
                (void)zone->toUtc(zone->toLocal(utc("20260101")));
        }
    }
}

TEST(ZoneFile, OfTheFirstVersionIsNotRead)
{
    auto bytes = bytesOf("Europe/Zurich");
    bytes[4] = '\0';
    EXPECT_FALSE(readZoneFile("Zurich", bytes));
}

TEST(PosixZoneRule, KnowsEachForm)
{
    EXPECT_EQ(parsePosixZoneRule("JST-9")->offset, hours{9});
    EXPECT_EQ(parsePosixZoneRule("<+0545>-5:45")->offset, minutes{345});
    EXPECT_EQ(parsePosixZoneRule("XXX3:04:05")->offset, -(hours{3} + minutes{4} + seconds{5}));
    EXPECT_FALSE(parsePosixZoneRule("JST-9")->daylight);

    const auto lordHowe = parsePosixZoneRule("<+1030>-10:30<+11>-11,M10.1.0,M4.1.0");
    EXPECT_EQ(lordHowe->daylight->offset, hours{11});
    EXPECT_EQ(lordHowe->changesIn(year{2023}),
        (std::vector<ZoneChange>{
            {utc("20230930T153000"), hours{11}}, {utc("20230401T150000"), minutes{630}}}));
}

TEST(PosixZoneRule, CountsDaysWithAndWithoutTheLeapDay)
{
    const auto rule = parsePosixZoneRule("AAA0BBB,J60/0,59/0");
    EXPECT_EQ(rule->changesIn(year{2024}),
        (std::vector<ZoneChange>{{utc("20240301"), hours{1}}, {utc("20240228T230000"), hours{0}}}));
    EXPECT_EQ(rule->changesIn(year{2023}),
        (std::vector<ZoneChange>{{utc("20230301"), hours{1}}, {utc("20230228T230000"), hours{0}}}));
}

TEST(PosixZoneRule, KnowsTimesOutsideOfTheDay)
{
    const auto nuuk = parsePosixZoneRule("<-02>2<-01>,M3.5.0/-1,M10.5.0/0");
    EXPECT_EQ(nuuk->changesIn(year{2026})[0].at, utc("20260329T010000"));
    const auto late = parsePosixZoneRule("AAA0BBB,M3.4.4/50,M10.4.4/50");
    EXPECT_EQ(late->changesIn(year{2026})[0].at, utc("20260328T020000"));
}

TEST(PosixZoneRule, IsNothingForOtherTexts)
{
    for (const auto* const text :
        {"", "A", "ABC", "AB1", "ABC+", "ABC25", "ABC1:60", "ABC1DEF", "ABC1DEF,", "ABC1DEF,M1.1.1",
            "ABC1DEF,M13.1.1,M1.1.1", "ABC1DEF,M1.6.1,M1.1.1", "ABC1DEF,M1.1.7,M1.1.1", "ABC1DEF,J0,J1",
            "ABC1DEF,366,1", "ABC1DEF,M1.1.1/168,M2.1.1", "ABC1DEF,M1.1.1,M2.1.1x", "<ABC1", "<>1", "ABC--1"})
        EXPECT_FALSE(parsePosixZoneRule(text)) << text;
}

}

}
