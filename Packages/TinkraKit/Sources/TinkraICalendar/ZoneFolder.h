#pragma once

#include "TinkraICalendar/Zone.h"

#include <string>

namespace Tinkra::ICalendar {

/// The zone in the machine's folder of zone files (TZDIR, else /usr/share/zoneinfo). Nothing when there is no
/// such file or it is not a zone's.
ZonePtr loadZoneFile(const std::string& name);

}
