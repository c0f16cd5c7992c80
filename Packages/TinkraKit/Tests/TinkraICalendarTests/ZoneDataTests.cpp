// The zones as they were, are and will be.

#include "TinkraICalendar/IcuZone.h"
#include "TinkraICalendar/Zone.h"

#include "RuleTestSupport.h"

#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <unicode/basictz.h>
#include <unicode/timezone.h>

namespace Tinkra::ICalendar::Test {

namespace {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

seconds offsetAt(const Zone& zone, UtcSeconds moment)
{
    return zone.toLocal(moment).time_since_epoch() - moment.time_since_epoch();
}

seconds offsetAt(std::string_view zone, std::string_view time)
{
    return offsetAt(*findZone(zone), utc(time));
}

TEST(ZoneData, KnowsOddOffsetsAndRules)
{
    EXPECT_EQ(offsetAt("Asia/Kathmandu", "20260101"), minutes{345});
    EXPECT_EQ(offsetAt("Asia/Kathmandu", "19850101"), minutes{330});
    EXPECT_EQ(offsetAt("Australia/Lord_Howe", "20260101"), hours{11});
    EXPECT_EQ(offsetAt("Australia/Lord_Howe", "20260701"), minutes{630});
    EXPECT_EQ(offsetAt("Africa/Casablanca", "20260101"), hours{1});
    EXPECT_EQ(offsetAt("Africa/Casablanca", "20260301"), hours{0}); // Ramadan
    EXPECT_EQ(offsetAt("Pacific/Apia", "20111229"), -hours{10});
    EXPECT_EQ(offsetAt("Pacific/Apia", "20120101"), hours{14});
    EXPECT_EQ(offsetAt("Europe/Dublin", "20260101"), hours{0});
    EXPECT_EQ(offsetAt("Europe/Dublin", "20260701"), hours{1});
    EXPECT_EQ(offsetAt("America/St_Johns", "20260101"), -minutes{210});
}

TEST(ZoneData, KnowsLocalMeanTimes)
{
    EXPECT_EQ(offsetAt("Europe/Zurich", "18500101"), minutes{34} + seconds{8});
    EXPECT_EQ(offsetAt("Europe/Zurich", "18700101"), minutes{29} + seconds{46});
    EXPECT_EQ(offsetAt("America/New_York", "18000101"), -(hours{4} + minutes{56} + seconds{2}));
}

TEST(ZoneData, KnowsTheDecisionsOfRecentYears)
{
    EXPECT_EQ(offsetAt("America/Asuncion", "20260701"), -hours{3}); // summer time for good since 2024
    EXPECT_EQ(offsetAt("Asia/Almaty", "20260101"), hours{5}); // since 2024
    EXPECT_EQ(offsetAt("Africa/Cairo", "20260701"), hours{3}); // summer time again since 2023
    EXPECT_EQ(offsetAt("America/Mexico_City", "20260701"), -hours{6}); // no summer time since 2022
}

TEST(ZoneData, GoesOnToTheYear9999)
{
    for (const std::string year : {"2037", "2038", "2100", "2128", "2129", "2130", "2400", "9999"}) {
        EXPECT_EQ(offsetAt("Europe/Zurich", year + "0101"), hours{1}) << year;
        EXPECT_EQ(offsetAt("Europe/Zurich", year + "0701"), hours{2}) << year;
        EXPECT_EQ(offsetAt("Australia/Sydney", year + "0101"), hours{11}) << year;
        EXPECT_EQ(offsetAt("Australia/Sydney", year + "0701"), hours{10}) << year;
    }
    // The last Sunday of March.
    EXPECT_EQ(offsetAt("Europe/Zurich", "25010327T005959"), hours{1});
    EXPECT_EQ(offsetAt("Europe/Zurich", "25010327T010000"), hours{2});
}

/// ICU's older data agrees wherever no government has changed its mind since.
class ZoneOfOldData : public testing::TestWithParam<const char*> { };

TEST_P(ZoneOfOldData, AgreesWithIcuAtRandomMoments)
{
    const auto zone = findZone(GetParam());
    const auto table = makeIcuZone(GetParam());
    const std::unique_ptr<icu::TimeZone> reference(icu::TimeZone::createTimeZone(GetParam()));
    const auto& basic = dynamic_cast<const icu::BasicTimeZone&>(*reference);
    std::mt19937_64 random(1);
    std::uniform_int_distribution<std::int64_t> anywhere(-3'000'000'000, 253'400'000'000); // 1874 to 9999
    std::uniform_int_distribution<std::int64_t> recently(0, 5'000'000'000);

    for (int i = 0; i < 4000; ++i) {
        const auto moment = i % 2 == 0 ? anywhere(random) : recently(random);
        std::int32_t raw = 0;
        std::int32_t saved = 0;
        UErrorCode error = U_ZERO_ERROR;
        basic.getOffset(static_cast<double>(moment) * 1000, 0, raw, saved, error);
        const seconds expected{(raw + saved) / 1000};
        ASSERT_EQ(offsetAt(*zone, UtcSeconds{seconds{moment}}), expected) << moment;
        ASSERT_EQ(offsetAt(*table, UtcSeconds{seconds{moment}}), expected) << moment;

        basic.getOffsetFromLocal(static_cast<double>(moment) * 1000, UCAL_TZ_LOCAL_FORMER,
            UCAL_TZ_LOCAL_FORMER, raw, saved, error);
        const UtcSeconds instant{seconds{moment - (raw + saved) / 1000}};
        ASSERT_EQ(zone->toUtc(LocalSeconds{seconds{moment}}), instant) << moment;
        ASSERT_EQ(table->toUtc(LocalSeconds{seconds{moment}}), instant) << moment;
    }
}

INSTANTIATE_TEST_SUITE_P(OnEachContinent, ZoneOfOldData,
    testing::Values("Europe/Zurich", "Europe/Dublin", "America/New_York", "America/Sao_Paulo",
        "Asia/Kathmandu", "Asia/Tokyo", "Australia/Lord_Howe", "Australia/Sydney", "Pacific/Apia",
        "Pacific/Auckland", "Africa/Johannesburg", "Etc/GMT-14"));

TEST(ZoneData, FindsTheInstantOfEachLocalTimeAndBack)
{
    for (const auto* const name :
        {"Europe/Zurich", "Australia/Lord_Howe", "Pacific/Apia", "Africa/Casablanca"}) {
        const auto zone = findZone(name);
        for (auto moment = utc("20100101"); moment < utc("20250101"); moment += minutes{17}) {
            const auto local = zone->toLocal(moment);
            const auto first = zone->toUtc(local);
            ASSERT_EQ(zone->toLocal(first), local) << name;
            ASSERT_LE(first, moment) << name;
        }
    }
}

}

}
