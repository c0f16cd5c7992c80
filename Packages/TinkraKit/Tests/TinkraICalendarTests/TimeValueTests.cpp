#include "TinkraICalendar/TimeValue.h"

#include <gtest/gtest.h>

#include <string>

namespace Tinkra::ICalendar {

namespace {

using namespace std::chrono;

TimeValue at(int y, unsigned m, unsigned d, int h, int min, int s, TimeForm form)
{
    return {local_days{year{y} / month{m} / day{d}} + hours{h} + minutes{min} + seconds{s}, form};
}

}

TEST(TimeValue, ReadsDatesLocalTimesAndUtcTimes)
{
    EXPECT_EQ(parseTime("19970714"), at(1997, 7, 14, 0, 0, 0, TimeForm::Date));
    EXPECT_EQ(parseTime("19970714T173012"), at(1997, 7, 14, 17, 30, 12, TimeForm::Local));
    EXPECT_EQ(parseTime("19970714T173012Z"), at(1997, 7, 14, 17, 30, 12, TimeForm::Utc));
    EXPECT_EQ(parseTime("20240229"), at(2024, 2, 29, 0, 0, 0, TimeForm::Date));
    EXPECT_EQ(parseTime("99991231T235959Z"), at(9999, 12, 31, 23, 59, 59, TimeForm::Utc));
}

TEST(TimeValue, ReadsSecondSixtyAsFiftyNine)
{
    EXPECT_EQ(parseTime("20161231T235960Z"), at(2016, 12, 31, 23, 59, 59, TimeForm::Utc));
}

TEST(TimeValue, RefusesDaysAndTimesThatDoNotExist)
{
    for (const auto* text :
        {"", "1997", "19970230", "19971301", "19970001", "19970100", "19970714T240000", "19970714T250000",
            "19970714T106000", "19970714T100061", "19970714T", "19970714Z", "19970714X101010", "1997071a",
            "19970714T10101", "19970714T101010ZZ", "-9970714", "20240101T090000+2500", "99999999999999999"})
        EXPECT_FALSE(parseTime(text)) << text;
}

TEST(TimeValue, ToleratesOtherWaysToWriteTheSame)
{
    const auto utc = at(1997, 7, 14, 17, 30, 0, TimeForm::Utc);
    for (const auto* text : {" 19970714T173000Z ", "19970714t173000z", "1997-07-14T17:30:00Z",
             "19970714T1730Z", "1997-07-14T17:30:00.000Z", "19970714T193000+0200",
             "1997-07-14T13:30:00-04:00", "1997-07-14 17:30Z"})
        EXPECT_EQ(parseTime(text), utc) << text;
    EXPECT_EQ(parseTime("1997-07-14"), at(1997, 7, 14, 0, 0, 0, TimeForm::Date));
}

TEST(TimeValue, ReadsDurationsWithDaysApartFromHours)
{
    EXPECT_EQ(parseDuration("P15DT5H0M20S"), (Duration{days{15}, hours{5} + seconds{20}}));
    EXPECT_EQ(parseDuration("P7W"), (Duration{days{49}, seconds{0}}));
    EXPECT_EQ(parseDuration("PT36H"), (Duration{days{0}, hours{36}}));
    EXPECT_EQ(parseDuration("-PT15M"), (Duration{days{0}, minutes{-15}}));
    EXPECT_EQ(parseDuration("+p1dt1h"), (Duration{days{1}, hours{1}}));
}

TEST(TimeValue, RefusesWhatIsNoDuration)
{
    for (const auto* text : {"", "P", "PT", "1H", "PT1", "PTH", "P1M", "P1X", "P-1D"})
        EXPECT_FALSE(parseDuration(text)) << text;
}

TEST(TimeValue, CutsDurationsBeyondTenThousandYears)
{
    const auto huge = parseDuration("P99999999999999999999WT99999999999999999999H");
    ASSERT_TRUE(huge);
    EXPECT_EQ(huge->nominal, days{3'659'999}); // whole weeks
    EXPECT_EQ(huge->exact, seconds{days{3'660'000}});
}

TEST(TimeValue, ReadsUtcOffsets)
{
    EXPECT_EQ(parseUtcOffset("+0100"), hours{1});
    EXPECT_EQ(parseUtcOffset("-050030"), -(hours{5} + seconds{30}));
    EXPECT_EQ(parseUtcOffset("+05:30"), hours{5} + minutes{30});
    EXPECT_EQ(parseUtcOffset("+02"), hours{2});
    for (const auto* text : {"", "0100", "+1", "+2500", "+01000000", "+0a00"})
        EXPECT_FALSE(parseUtcOffset(text)) << text;
}

}
