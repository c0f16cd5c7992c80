#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace Tinkra {

/// How an alarm is presented.
enum class AlarmStyle {
    notificationOnly, ///< only the system notification is armed
    notificationAndWindow, ///< and the banner rings while the application runs
};

/// Both styles, in the order in which they are offered.
inline constexpr std::array allAlarmStyles{AlarmStyle::notificationOnly, AlarmStyle::notificationAndWindow};

/// The style's coded form.
std::string_view rawValue(AlarmStyle style);

/// The style of exactly this coded form; nothing for any other text.
std::optional<AlarmStyle> alarmStyleFromRawValue(std::string_view rawValue);

}
