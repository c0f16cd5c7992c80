#include "TinkraSystemLinux/LocalCalendarLinux.h"

#include <cmath>
#include <ctime>
#include <stdexcept>

namespace Tinkra::System {

namespace {

// About the year 285 million: far beyond any calendar, and exact in a double.
constexpr double farthestSecond = 9.0e15;

}

DateComponents LocalCalendarLinux::components(Instant instant)
{
    const double second = std::floor(secondsSince1970(instant));
    if (!(std::abs(second) <= farthestSecond))
        throw std::out_of_range("There is no such time of day.");

    const auto time = static_cast<std::time_t>(second);
    std::tm local = {};
    ::tzset(); // localtime_r alone need not notice that the zone has changed
    if (::localtime_r(&time, &local) == nullptr)
        throw std::out_of_range("There is no such time of day.");
    return {
        .year = local.tm_year + 1900,
        .month = local.tm_mon + 1,
        .day = local.tm_mday,
        .hour = local.tm_hour,
        .minute = local.tm_min,
        .second = local.tm_sec > 59 ? 59 : local.tm_sec,
    };
}

}
