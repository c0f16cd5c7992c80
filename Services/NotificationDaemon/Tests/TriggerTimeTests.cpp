#include "NotificationDaemon/SystemZone.h"
#include "NotificationDaemon/TriggerTime.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <memory>
#include <string>

namespace Tinkra::NotificationDaemon {
namespace {

using NotificationDaemonProtocol::WallClock;

/// The zone of the C library, set to one of the zone database for the length of a test.
class ZoneNamed {
public:
    explicit ZoneNamed(const char* name)
    {
        if (const char* before = std::getenv("TZ"); before != nullptr) {
            m_before = before;
            m_hadOne = true;
        }
        setenv("TZ", name, 1);
        m_zone = std::make_unique<SystemZone>();
    }
    ~ZoneNamed()
    {
        if (m_hadOne)
            setenv("TZ", m_before.c_str(), 1);
        else
            unsetenv("TZ");
        tzset();
    }
    ZoneNamed(const ZoneNamed&) = delete;
    ZoneNamed& operator=(const ZoneNamed&) = delete;

    const SystemZone& operator*() const { return *m_zone; }

private:
    std::string m_before;
    bool m_hadOne = false;
    std::unique_ptr<SystemZone> m_zone;
};

std::int64_t utc(int year, int month, int day, int hour, int minute, int second = 0)
{
    return secondsOf({year, month, day, hour, minute, second});
}

double exactly(std::int64_t instant)
{
    return static_cast<double>(instant);
}

TEST(TriggerTime, IsTheInstantAtWhichTheWallClockShowsTheComponents)
{
    struct Case {
        const char* zone = nullptr;
        WallClock components;
        std::int64_t instant = 0;
    };
    for (const auto& [name, components, instant] : std::initializer_list<Case>{
             {"UTC", {2026, 11, 20, 9, 59, 30}, utc(2026, 11, 20, 9, 59, 30)},
             {"Europe/Zurich", {2026, 11, 20, 10, 0, 0}, utc(2026, 11, 20, 9, 0)},
             {"Europe/Zurich", {2026, 7, 1, 10, 0, 0}, utc(2026, 7, 1, 8, 0)},
             {"America/New_York", {2026, 7, 1, 10, 0, 0}, utc(2026, 7, 1, 14, 0)},
             {"Asia/Kathmandu", {2026, 7, 1, 0, 0, 0}, utc(2026, 6, 30, 18, 15)},
             {"Pacific/Kiritimati", {2026, 1, 1, 0, 0, 0}, utc(2025, 12, 31, 10, 0)},
             {"Pacific/Pago_Pago", {2026, 1, 1, 0, 0, 0}, utc(2026, 1, 1, 11, 0)},
             {"Europe/Zurich", {2028, 2, 29, 12, 0, 0}, utc(2028, 2, 29, 11, 0)},
             {"Europe/Zurich", {2038, 1, 19, 4, 14, 8}, utc(2038, 1, 19, 3, 14, 8)},
             {"Europe/Zurich", {2051, 7, 1, 12, 0, 0}, utc(2051, 7, 1, 10, 0)},
             {"Europe/Zurich", {9999, 12, 31, 23, 59, 59}, utc(9999, 12, 31, 22, 59, 59)},
             {"UTC", {1, 1, 1, 0, 0, 0}, -62135596800},
         }) {
        const ZoneNamed zone(name);
        EXPECT_EQ(triggerTime(components, std::nullopt, *zone), instant) << name << " " << components.year;
    }
}

struct ChangeCase {
    const char* zone = nullptr;
    WallClock components;
    std::int64_t first = 0; ///< the earlier of the two instants that could be meant
    std::int64_t second = 0;
};

class RepeatedHour : public testing::TestWithParam<ChangeCase> { };

TEST_P(RepeatedHour, IsResolvedByTheFireDateAndElseIsTheFirst)
{
    const auto& [name, components, first, second] = GetParam();
    const ZoneNamed zone(name);

    EXPECT_EQ(triggerTime(components, exactly(first), *zone), first);
    EXPECT_EQ(triggerTime(components, exactly(second), *zone), second);
    EXPECT_EQ(triggerTime(components, exactly(second) + 0.9, *zone), second)
        << "10:00:00.9 lies in second 10:00:00";
    EXPECT_EQ(triggerTime(components, std::nullopt, *zone), first);
    EXPECT_EQ(triggerTime(components, exactly(first) + 86400, *zone), first) << "computed in another zone";
    EXPECT_EQ(triggerTime(components, std::numeric_limits<double>::quiet_NaN(), *zone), first);
}

INSTANTIATE_TEST_SUITE_P(Zones, RepeatedHour,
    testing::Values(ChangeCase{"Europe/Zurich", {2026, 10, 25, 2, 30, 0}, utc(2026, 10, 25, 0, 30),
                        utc(2026, 10, 25, 1, 30)},
        ChangeCase{
            "America/New_York", {2026, 11, 1, 1, 30, 0}, utc(2026, 11, 1, 5, 30), utc(2026, 11, 1, 6, 30)},
        ChangeCase{
            "Australia/Lord_Howe", {2026, 4, 5, 1, 45, 0}, utc(2026, 4, 4, 14, 45), utc(2026, 4, 4, 15, 15)},
        ChangeCase{
            "Africa/Casablanca", {2026, 2, 15, 2, 30, 0}, utc(2026, 2, 15, 1, 30), utc(2026, 2, 15, 2, 30)}));

class SkippedHour : public testing::TestWithParam<ChangeCase> { };

TEST_P(SkippedHour, IsResolvedByTheFireDateAndElseShiftsForward)
{
    const auto& [name, components, first, second] = GetParam();
    const ZoneNamed zone(name);

    EXPECT_EQ(triggerTime(components, exactly(first), *zone), first);
    EXPECT_EQ(triggerTime(components, exactly(second) + 0.25, *zone), second);
    EXPECT_EQ(triggerTime(components, std::nullopt, *zone), second);
    EXPECT_EQ(triggerTime(components, exactly(second) + 1, *zone), second) << "computed in another zone";
    EXPECT_EQ(triggerTime(components, -std::numeric_limits<double>::infinity(), *zone), second);
}

INSTANTIATE_TEST_SUITE_P(Zones, SkippedHour,
    testing::Values(ChangeCase{"Europe/Zurich", {2026, 3, 29, 2, 30, 0}, utc(2026, 3, 29, 0, 30),
                        utc(2026, 3, 29, 1, 30)},
        ChangeCase{
            "America/New_York", {2026, 3, 8, 2, 30, 0}, utc(2026, 3, 8, 6, 30), utc(2026, 3, 8, 7, 30)},
        ChangeCase{"Australia/Lord_Howe", {2026, 10, 4, 2, 15, 0}, utc(2026, 10, 3, 15, 15),
            utc(2026, 10, 3, 15, 45)},
        ChangeCase{
            "Africa/Casablanca", {2026, 3, 22, 2, 30, 0}, utc(2026, 3, 22, 1, 30), utc(2026, 3, 22, 2, 30)},
        ChangeCase{
            "Pacific/Apia", {2011, 12, 30, 2, 30, 0}, utc(2011, 12, 29, 12, 30), utc(2011, 12, 30, 12, 30)}));

TEST(TriggerTime, TheDaysAroundAChangeAreNotTouchedByIt)
{
    const ZoneNamed zone("Europe/Zurich");
    EXPECT_EQ(triggerTime({2026, 3, 28, 2, 30, 0}, std::nullopt, *zone), utc(2026, 3, 28, 1, 30));
    EXPECT_EQ(triggerTime({2026, 3, 29, 1, 59, 59}, std::nullopt, *zone), utc(2026, 3, 29, 0, 59, 59));
    EXPECT_EQ(triggerTime({2026, 3, 29, 3, 0, 0}, std::nullopt, *zone), utc(2026, 3, 29, 1, 0));
    EXPECT_EQ(triggerTime({2026, 3, 30, 2, 30, 0}, std::nullopt, *zone), utc(2026, 3, 30, 0, 30));
    EXPECT_EQ(triggerTime({2026, 10, 25, 3, 0, 0}, std::nullopt, *zone), utc(2026, 10, 25, 2, 0));
}

TEST(TriggerTime, TheFireDateHasNoSayOutsideAChangeSoThatATravellerKeepsHisWallClock)
{
    const ZoneNamed zone("America/New_York");
    const auto inZurich = utc(2026, 7, 1, 8, 0);
    EXPECT_EQ(triggerTime({2026, 7, 1, 10, 0, 0}, exactly(inZurich), *zone), utc(2026, 7, 1, 14, 0));
}

TEST(WallClock, AcceptsTheMomentsOfTheCalendarAndNoOthers)
{
    for (const WallClock& good : std::initializer_list<WallClock>{{1, 1, 1, 0, 0, 0},
             {2028, 2, 29, 23, 59, 59}, {2000, 2, 29, 0, 0, 0}, {9999, 12, 31, 23, 59, 59}})
        EXPECT_TRUE(isValid(good)) << good.year;
    constexpr int kMost = std::numeric_limits<int>::max();
    constexpr int kLeast = std::numeric_limits<int>::min();
    for (const WallClock& bad : std::initializer_list<WallClock>{{0, 1, 1, 0, 0, 0}, {10000, 1, 1, 0, 0, 0},
             {2026, 0, 1, 0, 0, 0}, {2026, 13, 1, 0, 0, 0}, {2026, 2, 29, 0, 0, 0}, {1900, 2, 29, 0, 0, 0},
             {2026, 4, 31, 0, 0, 0}, {2026, 1, 0, 0, 0, 0}, {2026, 1, 1, 24, 0, 0}, {2026, 1, 1, -1, 0, 0},
             {2026, 1, 1, 0, 60, 0}, {2026, 1, 1, 0, 0, 60}, {kMost, kMost, kMost, kMost, kMost, kMost},
             {kLeast, kLeast, kLeast, kLeast, kLeast, kLeast}})
        EXPECT_FALSE(isValid(bad)) << bad.year << " " << bad.month;
}

}
}
