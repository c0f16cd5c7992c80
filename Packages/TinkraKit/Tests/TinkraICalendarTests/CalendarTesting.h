#pragma once

#include "TinkraICalendar/Calendar.h"

#include <string>
#include <string_view>
#include <vector>

namespace Tinkra::ICalendar {

/// "2024-01-05T09:00:00Z".
UtcSeconds instant(std::string_view text);
std::string text(UtcSeconds time);

/// A whole calendar of `body`, whose lines end with a mere line feed.
std::string calendarWith(std::string_view body);

/// A whole calendar of one event that lasts an hour, on 2024-03-04 at 10:00 UTC unless `lines` say otherwise.
std::string calendarWithEvent(std::string_view lines);

/// How a test looks at a calendar.
struct View {
    std::string_view from = "2024-01-01T00:00:00Z";
    std::string_view to = "2025-01-01T00:00:00Z";
    std::string_view zone = "UTC";
};

/// Each occurrence as "start/end title" ("-" for none), in order; all-day ones with " (all day)" behind.
std::vector<std::string> occurrences(const Calendar& calendar, View view = {});
std::vector<std::string> occurrences(std::string_view text, View view = {});

/// The starts alone.
std::vector<std::string> starts(std::string_view text, View view = {});

/// The titles alone, in order of the starts.
std::vector<std::string> titles(std::string_view text, View view = {});

/// What was given up.
std::vector<std::string> noticesOfQuery(const Calendar& calendar, View view = {});

using Lines = std::vector<std::string>;

}
