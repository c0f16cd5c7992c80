#pragma once

#include "TinkraICalendar/Zone.h"

#include <string>
#include <string_view>

namespace Tinkra::ICalendar {

/// The zone that the bytes of a compiled zone file (RFC 8536, version 2 and newer) describe. Nothing when
/// they are not one.
ZonePtr readZoneFile(std::string name, std::string_view bytes);

/// The zone that a POSIX TZ text describes (IEEE 1003.1, section 8.3, with the extensions of RFC 8536), such
/// as "CET-1CEST,M3.5.0,M10.5.0/3". Nothing when it is not one.
ZonePtr readPosixZone(std::string name, std::string_view text);

}
