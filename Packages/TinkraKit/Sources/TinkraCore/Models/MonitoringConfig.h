#pragma once

#include "TinkraCore/Models/Text.h"

#include <unordered_set>

namespace Tinkra {

/// Identifiers of calendars, in no order.
using CalendarIDs = std::unordered_set<Text>;

/// Which calendars are monitored.
struct MonitoringConfig {
    CalendarIDs selectedCalendarIDs; ///< empty: nothing is monitored; it never stands for all calendars

    friend bool operator==(const MonitoringConfig&, const MonitoringConfig&) = default;
};

}
