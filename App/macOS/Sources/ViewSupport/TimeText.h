#pragma once

#include "TinkraConcurrency/Instant.h"

#include <optional>
#include <string>
#include <string_view>

namespace Tinkra {

/// How a user writes times, and where.
struct TimeStyle {
    std::string locale; ///< as ICU and POSIX name it: "de_DE", "en_US@hours=h23", "ar_EG.UTF-8"
    std::string timeZone; ///< an IANA name such as "Europe/Berlin"; empty: the zone of the machine at the
                          ///< call; unknown: UTC
};

/// The user's locale for times, from the environment variables that name it, the strongest first (POSIX,
/// section 8.2): the first that is not empty counts. "C", "POSIX" and three empty ones are "en_US_POSIX".
std::string timeLocale(std::string_view lcAll, std::string_view lcTime, std::string_view lang);

/// The hour in the digits that the locale prefers, with its abbreviated AM/PM marker where it uses one, and
/// the minute: "9:30 AM", "09:30". The blank before the marker is the one the locale asks for, often U+202F.
std::string hourAndMinuteText(Instant instant, const TimeStyle& style);

/// The same after the abbreviated weekday: "Fri 9:30 AM", "Fr., 09:30".
std::string weekdayHourAndMinuteText(Instant instant, const TimeStyle& style);

/// The figure of the next alarm: hour and minute in two digits each, by a clock of 24 hours whatever the
/// locale prefers; an em dash when nothing is upcoming.
std::string nextAlarmText(std::optional<Instant> meetingStart, const TimeStyle& style);

}
