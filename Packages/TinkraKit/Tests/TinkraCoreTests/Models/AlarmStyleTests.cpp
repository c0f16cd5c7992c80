#include "TinkraCore/Models/AlarmStyle.h"

#include <gtest/gtest.h>

#include <vector>

namespace Tinkra {
namespace {

TEST(AlarmStyle, OffersTheNotificationFirst)
{
    EXPECT_EQ(std::vector(allAlarmStyles.begin(), allAlarmStyles.end()),
        (std::vector{AlarmStyle::notificationOnly, AlarmStyle::notificationAndWindow}));
}

TEST(AlarmStyle, IsCodedByItsName)
{
    EXPECT_EQ(rawValue(AlarmStyle::notificationOnly), "notificationOnly");
    EXPECT_EQ(rawValue(AlarmStyle::notificationAndWindow), "notificationAndWindow");
}

TEST(AlarmStyle, ComesBackFromExactlyItsCodedForm)
{
    for (const auto style : allAlarmStyles)
        EXPECT_EQ(alarmStyleFromRawValue(rawValue(style)), style);
}

TEST(AlarmStyle, IsNothingForAnyOtherText)
{
    for (const auto* other : {"", "NotificationOnly", "notificationonly", " notificationOnly",
             "notificationOnly ", "notificationOnlyX", "window", "0"})
        EXPECT_EQ(alarmStyleFromRawValue(other), std::nullopt) << other;
}

}
}
