#pragma once

#include "TinkraConcurrency/Instant.h"
#include "TinkraICalendar/Zone.h"
#include "TinkraSystem/NotificationCenter.h"

#include <optional>
#include <string>
#include <string_view>

namespace Tinkra::CommandLine {

/// The instant that a user wrote down: "2026-11-20" (midnight), "2026-11-20T09:00", "2026-11-20 09:00:30.5",
/// each also in ISO 8601's basic form without dashes and colons, with "Z" or an offset such as "+01:00" or
/// else in the zone of `viewer`; or "@1795165200", seconds since 1970. Nothing for any other text, and for
/// dates that do not exist.
std::optional<Instant> parseInstant(std::string_view text, const ICalendar::Zone& viewer);

/// "2026-11-20T09:00:00Z".
std::string utcText(ICalendar::UtcSeconds instant);

/// The same with milliseconds when there is a fraction: "2026-11-20T09:00:00.700Z". Beyond the years that a
/// calendar has (0...9999), the nearest one that it has.
std::string utcText(Instant instant);

/// "Fri 2026-11-20 10:00", with seconds when they are not zero.
std::string localText(const System::DateComponents& components);

/// "2026-11-20T10:00:00".
std::string isoText(const System::DateComponents& components);

}
