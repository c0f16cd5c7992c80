#pragma once

#include "TinkraICalendar/RuleExpansion.h"

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace Tinkra::ICalendar::Test {

/// What a rule gives, found in the plainest way: every day (or every step of an hour, a minute, a second)
/// from DTSTART on is held against each part of the rule. Slow, and shares no code with the expansion.
std::vector<RuleInstance> plainExpansion(
    const RecurrenceRule& rule, const SeriesStart& start, UtcSeconds until);

/// A valid rule as text, a DTSTART that may or may not fit it, and a span that is long enough to show both.
struct RandomSeries {
    std::string rule;
    LocalSeconds start;
    bool isDate = false;
    std::string zone;
    TimeRange range;
};

RandomSeries randomSeries(std::mt19937_64& random);

/// The same, with a rule of that frequency and nothing on which engines may differ by design.
RandomSeries randomSeries(std::mt19937_64& random, Frequency frequency);

}
