#include "ViewSupport/TimeText.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string_view>

namespace Tinkra {
namespace {

using namespace std::chrono;

constexpr Instant fridayMorning = sys_days(2026y / November / 20) + 9h + 30min;
constexpr Instant fridayAfternoon = sys_days(2026y / November / 20) + 14h + 5min;

std::string time(std::string_view locale, Instant instant = fridayMorning)
{
    return hourAndMinuteText(instant, {.locale = std::string(locale), .timeZone = "UTC"});
}

std::string weekdayAndTime(std::string_view locale, Instant instant = fridayMorning)
{
    return weekdayHourAndMinuteText(instant, {.locale = std::string(locale), .timeZone = "UTC"});
}

TEST(TimeText, ShowsHourAndMinuteAsTheLocaleWritesThem)
{
    EXPECT_EQ(time("en_US"), "9:30\u202FAM");
    EXPECT_EQ(time("en_GB"), "09:30");
    EXPECT_EQ(time("de_DE"), "09:30");
    EXPECT_EQ(time("fr_FR"), "09:30");
    EXPECT_EQ(time("ja_JP"), "9:30");
    EXPECT_EQ(time("ar_EG"), "٩:٣٠ ص");
}

TEST(TimeText, TellsTheAfternoonFromTheMorning)
{
    EXPECT_EQ(time("en_US", fridayAfternoon), "2:05\u202FPM");
    EXPECT_EQ(time("en_GB", fridayAfternoon), "14:05");
    EXPECT_EQ(time("de_DE", fridayAfternoon), "14:05");
    EXPECT_EQ(time("fr_FR", fridayAfternoon), "14:05");
    EXPECT_EQ(time("ja_JP", fridayAfternoon), "14:05");
    EXPECT_EQ(time("ar_EG", fridayAfternoon), "٢:٠٥ م");
}

TEST(TimeText, PutsTheAbbreviatedWeekdayWhereTheLocaleHasIt)
{
    EXPECT_EQ(weekdayAndTime("en_US"), "Fri 9:30\u202FAM");
    EXPECT_EQ(weekdayAndTime("en_GB"), "Fri 09:30");
    EXPECT_EQ(weekdayAndTime("de_DE"), "Fr., 09:30");
    EXPECT_EQ(weekdayAndTime("fr_FR"), "ven. 09:30");
    EXPECT_EQ(weekdayAndTime("ja_JP"), "9:30 (金)");
    EXPECT_EQ(weekdayAndTime("ar_EG"), "الجمعة ٩:٣٠ ص");
}

TEST(TimeText, FollowsTheHourCycleThatTheUserChose)
{
    EXPECT_EQ(time("en_US@hours=h23", fridayAfternoon), "14:05");
    EXPECT_EQ(time("de_DE@hours=h12", fridayAfternoon), "2:05\u202FPM");
}

TEST(TimeText, NamesTheHoursAroundMidnightAndNoonAsTheLocaleDoes)
{
    const Instant midnight = sys_days(2026y / November / 20);
    EXPECT_EQ(time("en_US", midnight), "12:00\u202FAM");
    EXPECT_EQ(time("en_US", midnight + 12h), "12:00\u202FPM");
    EXPECT_EQ(time("de_DE", midnight), "00:00");
    EXPECT_EQ(time("ja_JP", midnight), "0:00");
}

TEST(TimeText, ShowsTheMinuteThatHasBegun)
{
    EXPECT_EQ(time("en_GB", fridayMorning + Seconds(59.999)), "09:30");
    EXPECT_EQ(time("en_GB", fridayMorning - Seconds(0.001)), "09:29");
}

TEST(TimeText, ShowsTheTimeOfTheZone)
{
    const auto in = [](const char* zone, Instant instant) {
        return weekdayHourAndMinuteText(instant, {.locale = "en_GB", .timeZone = zone});
    };
    EXPECT_EQ(in("Europe/Berlin", fridayMorning), "Fri 10:30");
    EXPECT_EQ(in("Asia/Kathmandu", fridayMorning), "Fri 15:15");
    EXPECT_EQ(in("Pacific/Kiritimati", fridayMorning + 1h), "Sat 00:30");
    const Instant julyMorning = sys_days(2026y / July / 17) + 9h;
    EXPECT_EQ(in("Europe/Berlin", julyMorning), "Fri 11:00");
}

TEST(TimeText, AgreesWithTheClockOnTheDesktop)
{
    // Egypt has summer time again since 2023: the machine's zone data knows, ICU's in Debian 12 does not.
    const Instant julyMorning = sys_days(2026y / July / 17) + 9h;
    EXPECT_EQ(hourAndMinuteText(julyMorning, {.locale = "en_GB", .timeZone = "Africa/Cairo"}), "12:00");
}

TEST(TimeText, ReadsAnUnknownZoneAsUtc)
{
    EXPECT_EQ(hourAndMinuteText(fridayMorning, {.locale = "en_GB", .timeZone = "Nowhere/Else"}), "09:30");
}

TEST(TimeText, StaysWithinTheYearsThatACalendarHas)
{
    EXPECT_EQ(hourAndMinuteText(instantAt(1e300), {.locale = "en_GB", .timeZone = "UTC"}), "23:59");
    EXPECT_EQ(hourAndMinuteText(instantAt(-1e300), {.locale = "en_GB", .timeZone = "UTC"}), "00:00");
}

TEST(TimeText, UnderstandsTheNamesOfPosixLocales)
{
    EXPECT_EQ(time("de_DE.UTF-8"), "09:30");
    EXPECT_EQ(time("en_US.utf8"), "9:30\u202FAM");
    EXPECT_EQ(time("de_DE.ISO-8859-1@euro"), "09:30");
}

TEST(TimeText, WritesATimeForEveryNameOfALocale)
{
    for (const auto* locale :
        {"", "C", "xx", "@", "@euro", "de_DE@x=y=z", "not a locale at all ///", "_____"})
        EXPECT_NE(time(locale).find("30"), std::string::npos) << locale;
}

TEST(TimeText, TakesTheStrongestVariableThatNamesALocale)
{
    EXPECT_EQ(timeLocale("ja_JP.UTF-8", "de_DE", "en_US"), "ja_JP.UTF-8");
    EXPECT_EQ(timeLocale("", "de_DE", "en_US"), "de_DE");
    EXPECT_EQ(timeLocale("", "", "fr_FR"), "fr_FR");
    EXPECT_EQ(timeLocale("", "", ""), "en_US_POSIX");
    EXPECT_EQ(timeLocale("C.UTF-8", "de_DE", "en_US"), "en_US_POSIX");
    EXPECT_EQ(timeLocale("", "POSIX", "en_US"), "en_US_POSIX");
}

}
}
