#pragma once

#include "TinkraICalendar/Zone.h"

#include <string>
#include <string_view>
#include <vector>

namespace Tinkra::ICalendar {

/// A VTIMEZONE as written (RFC 5545, section 3.6.5).
struct ZoneDefinition {
    std::string tzid;
    std::string location; ///< X-LIC-LOCATION, the IANA name that some producers add; else empty
    std::vector<Observance> observances;
};

/// Reads the content lines of one VTIMEZONE. Observances without a readable start and offset are left out.
ZoneDefinition readZoneDefinition(std::string_view text);

}
