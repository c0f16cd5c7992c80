#pragma once

#include "TinkraICalendar/RuleExpansion.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Tinkra::ICalendar::Test {

/// "19970902T090000" or "19970902"; the calendar's own way to write a local time.
LocalSeconds local(std::string_view text);

/// The same, as a time of UTC.
UtcSeconds utc(std::string_view text);

/// "19970902T090000"
std::string written(LocalSeconds time);

/// From the year 1600 until after the last year that counts.
TimeRange allTime();

RecurrenceRule rule(std::string_view text);

/// What to expand, and how far.
struct Series {
    std::string_view start; ///< as for local(); a date makes a series of dates
    std::string_view rule;
    std::string_view zone = "America/New_York";
    std::size_t atMost = 100'000; ///< instances; the rest is not looked at
    TimeRange range = allTime();
};

struct Expansion {
    std::vector<RuleInstance> instances;
    ExpansionEnd end = ExpansionEnd::Complete;
};

Expansion expansionOf(const Series& series);

/// The local times of the instances as the rule names them, written.
std::vector<std::string> localTimes(const Series& series);

/// The instants of the instances in UTC, written with a "Z".
std::vector<std::string> instants(const Series& series);

/// The days "1997 Sep 2-4,9 Oct 1 1998 Jan 5", each at the time of `start`, written.
std::vector<std::string> daysAt(std::string_view start, std::string_view days);

}
