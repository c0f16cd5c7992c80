#include "NotificationDaemon/TriggerTime.h"

#include <chrono>
#include <cmath>

namespace Tinkra::NotificationDaemon {

namespace {

constexpr std::int64_t kDay = 86400;

std::optional<std::int64_t> wholeSecond(std::optional<double> fireDate)
{
    // Beyond this no date of the calendar is meant, and the conversion would be undefined.
    constexpr double kFarAway = 1e12;
    if (!fireDate || !std::isfinite(*fireDate) || std::abs(*fireDate) > kFarAway)
        return std::nullopt;
    return static_cast<std::int64_t>(std::floor(*fireDate));
}

}

std::int64_t secondsOf(const NotificationDaemonProtocol::WallClock& components)
{
    using namespace std::chrono;
    const sys_days date = year{components.year} / month{static_cast<unsigned>(components.month)}
        / day{static_cast<unsigned>(components.day)};
    const auto time = hours{components.hour} + minutes{components.minute} + seconds{components.second};
    return duration_cast<seconds>(date.time_since_epoch() + time).count();
}

std::int64_t triggerTime(const NotificationDaemonProtocol::WallClock& components,
    std::optional<double> fireDate, const LocalZone& zone)
{
    const auto wall = secondsOf(components);

    // Offsets are less than a day, and zones change far less often than every other day: one of these two is
    // in force when the clock shows the components.
    const auto earlier = wall - zone.utcOffset(wall - kDay);
    const auto later = wall - zone.utcOffset(wall + kDay);
    const bool earlierShows = earlier + zone.utcOffset(earlier) == wall;
    const bool laterShows = later + zone.utcOffset(later) == wall;
    const auto named = wholeSecond(fireDate);

    if (earlierShows && laterShows)
        return named == later ? later : earlier;
    if (earlierShows || laterShows)
        return earlierShows ? earlier : later;

    // Skipped: `later` is still before the skip, `earlier` already behind it.
    return named && later <= *named && *named <= earlier ? *named : earlier;
}

}
