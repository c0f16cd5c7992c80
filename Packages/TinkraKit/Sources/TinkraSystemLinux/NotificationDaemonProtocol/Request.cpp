#include "NotificationDaemonProtocol/Request.h"

#include <chrono>

namespace Tinkra::NotificationDaemonProtocol {

bool isValid(const WallClock& components)
{
    const auto within = [](std::int32_t value, std::int32_t low, std::int32_t high) {
        return value >= low && value <= high;
    };
    if (!within(components.year, 1, 9999) || !within(components.month, 1, 12)
        || !within(components.day, 1, 31))
        return false;
    const std::chrono::year_month_day date{std::chrono::year{components.year},
        std::chrono::month{static_cast<unsigned>(components.month)},
        std::chrono::day{static_cast<unsigned>(components.day)}};
    return date.ok() && within(components.hour, 0, 23) && within(components.minute, 0, 59)
        && within(components.second, 0, 59);
}

}
