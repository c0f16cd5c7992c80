#include "TinkraCore/Models/AlarmStyle.h"

#include <algorithm>

namespace Tinkra {

std::string_view rawValue(AlarmStyle style)
{
    switch (style) {
    case AlarmStyle::notificationOnly:
        return "notificationOnly";
    case AlarmStyle::notificationAndWindow:
        return "notificationAndWindow";
    }
    return {};
}

std::optional<AlarmStyle> alarmStyleFromRawValue(std::string_view raw)
{
    const auto* const style =
        std::ranges::find(allAlarmStyles, raw, [](AlarmStyle each) { return rawValue(each); });
    if (style == allAlarmStyles.end())
        return std::nullopt;
    return *style;
}

}
