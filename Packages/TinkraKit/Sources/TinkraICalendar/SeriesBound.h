#pragma once

#include "TinkraICalendar/RecurrenceRule.h"
#include "TinkraICalendar/Time.h"

namespace Tinkra::ICalendar {

/// A time after which no instance of the rule starts, by arithmetic alone: cheap, and rather too late than
/// too early. `LocalSeconds::max()` for rules without end and those that are not simple enough.
LocalSeconds lastPossibleStart(const RecurrenceRule& rule, LocalSeconds start);

}
