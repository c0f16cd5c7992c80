#pragma once

#include "TinkraICalendar/PackedEvents.h"
#include "TinkraICalendar/Time.h"

namespace Tinkra::ICalendar {

/// A range that holds every occurrence of these events whatever the viewer's zone is, a few days wider than
/// need be; empty when there are no events.
TimeRange reachOf(const PackedEvents& events);

}
