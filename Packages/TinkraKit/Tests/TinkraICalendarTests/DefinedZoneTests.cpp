// Zones that a calendar file defines itself (RFC 5545, section 3.6.5).

#include "TinkraICalendar/Zone.h"

#include "RuleTestSupport.h"

#include <gtest/gtest.h>

namespace Tinkra::ICalendar::Test {

namespace {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

seconds offsetAt(const ZonePtr& zone, std::string_view time)
{
    return zone->toLocal(utc(time)).time_since_epoch() - utc(time).time_since_epoch();
}

std::vector<Observance> centralEurope(std::string_view daylightStart, std::string_view standardStart)
{
    return {{.start = local(daylightStart),
                .offsetFrom = hours{1},
                .offsetTo = hours{2},
                .rule = "FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU",
                .additionalOnsets = {}},
        {.start = local(standardStart),
            .offsetFrom = hours{2},
            .offsetTo = hours{1},
            .rule = "FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU",
            .additionalOnsets = {}}};
}

TEST(DefinedZone, IsTheSameAsTheZoneItDescribes)
{
    const auto defined = makeZone("Somewhere", centralEurope("19970330T020000", "19971026T030000"));
    const auto zurich = findZone("Europe/Zurich");

    EXPECT_EQ(defined->name(), "Somewhere");
    for (auto moment = utc("19980101"); moment < utc("20300101"); moment += hours{1})
        ASSERT_EQ(defined->toLocal(moment), zurich->toLocal(moment));
    for (auto moment = utc("21200101"); moment < utc("21400101"); moment += hours{1})
        ASSERT_EQ(defined->toLocal(moment), zurich->toLocal(moment));
    for (auto time = local("20260301"); time < local("20261130"); time += minutes{15})
        ASSERT_EQ(defined->toUtc(time), zurich->toUtc(time));
    EXPECT_EQ(offsetAt(defined, "99990701"), hours{2});
}

TEST(DefinedZone, MayBeginInTheYear1601)
{
    const auto zone = makeZone("W. Europe", centralEurope("16010325T020000", "16011028T030000"));

    EXPECT_EQ(offsetAt(zone, "20260101"), hours{1});
    EXPECT_EQ(offsetAt(zone, "20260701"), hours{2});
}

TEST(DefinedZone, HasTheOffsetFromOfTheEarliestOnsetBeforeIt)
{
    const auto zone = makeZone("X",
        {{.start = local("20200101"),
             .offsetFrom = hours{3},
             .offsetTo = hours{4},
             .rule = "",
             .additionalOnsets = {}},
            {.start = local("20100101"),
                .offsetFrom = minutes{90},
                .offsetTo = hours{3},
                .rule = "",
                .additionalOnsets = {}}});

    EXPECT_EQ(offsetAt(zone, "19000101"), minutes{90});
    EXPECT_EQ(offsetAt(zone, "20150101"), hours{3});
    EXPECT_EQ(offsetAt(zone, "20200101"), hours{4});
    EXPECT_EQ(offsetAt(zone, "90000101"), hours{4});
}

TEST(DefinedZone, MayHaveASingleObservance)
{
    const auto zone = makeZone("Tokyo",
        {{.start = local("19700101"),
            .offsetFrom = hours{9},
            .offsetTo = hours{9},
            .rule = "",
            .additionalOnsets = {}}});

    EXPECT_EQ(offsetAt(zone, "18000101"), hours{9});
    EXPECT_EQ(offsetAt(zone, "20260101"), hours{9});
}

TEST(DefinedZone, KnowsOffsetsToTheSecond)
{
    const auto zone = makeZone("Mean",
        {{.start = local("18530716"),
            .offsetFrom = seconds{2048},
            .offsetTo = seconds{1786},
            .rule = "",
            .additionalOnsets = {}}});

    EXPECT_EQ(offsetAt(zone, "18500101"), seconds{2048});
    EXPECT_EQ(offsetAt(zone, "20260101"), seconds{1786});
}

TEST(DefinedZone, EndsARuleWithItsUntilInUtc)
{
    // The onset of 25 March 2007 is at 01:00 UTC.
    for (const auto& [until, offset] : std::initializer_list<std::pair<std::string, hours>>{
             {"20070325T010000Z", hours{2}}, {"20070325T005959Z", hours{1}}}) {
        auto observances = centralEurope("19970330T020000", "19971026T030000");
        observances[0].rule += ";UNTIL=" + until;
        EXPECT_EQ(offsetAt(makeZone("X", observances), "20070701"), offset) << until;
        EXPECT_EQ(offsetAt(makeZone("X", observances), "20080701"), hours{1}) << until;
    }
}

TEST(DefinedZone, EndsARuleWithItsCount)
{
    auto observances = centralEurope("19970330T020000", "19971026T030000");
    observances[0].rule += ";COUNT=2";

    EXPECT_EQ(offsetAt(makeZone("X", observances), "19980701"), hours{2});
    EXPECT_EQ(offsetAt(makeZone("X", observances), "19990701"), hours{1});
}

TEST(DefinedZone, KnowsAdditionalOnsets)
{
    const auto zone = makeZone("X",
        {{.start = local("20200329T020000"),
             .offsetFrom = hours{1},
             .offsetTo = hours{2},
             .rule = "",
             .additionalOnsets = {local("20210328T020000")}},
            {.start = local("20201025T030000"),
                .offsetFrom = hours{2},
                .offsetTo = hours{1},
                .rule = "",
                .additionalOnsets = {local("20211031T030000")}}});

    EXPECT_EQ(offsetAt(zone, "20200701"), hours{2});
    EXPECT_EQ(offsetAt(zone, "20210101"), hours{1});
    EXPECT_EQ(offsetAt(zone, "20210701"), hours{2});
    EXPECT_EQ(offsetAt(zone, "20260701"), hours{1});
}

TEST(DefinedZone, MovesTimesInItsGapsAndTakesTheFirstOfItsOverlaps)
{
    const auto zone = makeZone("X", centralEurope("19970330T020000", "19971026T030000"));

    EXPECT_EQ(zone->toUtc(local("20230326T023000")), utc("20230326T013000"));
    EXPECT_EQ(zone->toUtc(local("20231029T023000")), utc("20231029T003000"));
}

TEST(DefinedZone, SurvivesHostileDefinitions)
{
    EXPECT_EQ(makeZone("X", {}), nullptr);

    const auto wild = makeZone("X",
        {{.start = local("00000101"),
             .offsetFrom = hours{1'000'000},
             .offsetTo = -hours{1'000'000},
             .rule = "FREQ=SECONDLY",
             .additionalOnsets = {}},
            {.start = local("00000101"),
                .offsetFrom = hours{-23},
                .offsetTo = hours{23},
                .rule = "FREQ=DAILY;BYHOUR=1,2,3,4,5,6,7,8,9;BYMINUTE=1,2,3,4,5,6,7,8,9",
                .additionalOnsets = std::vector<LocalSeconds>(1000, local("99991231T235959"))},
            {.start = local("00000101"),
                .offsetFrom = hours{0},
                .offsetTo = hours{1},
                .rule = "FREQ=",
                .additionalOnsets = {}}});
    for (const auto* const time : {"00000101", "00000102", "19700101", "20260101", "99991231"}) {
        EXPECT_LT(abs(offsetAt(wild, time)), hours{24});
        EXPECT_LT(
            abs(wild->toUtc(local(time)).time_since_epoch() - local(time).time_since_epoch()), hours{24});
    }
}

}

}
