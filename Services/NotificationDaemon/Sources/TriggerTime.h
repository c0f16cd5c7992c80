#pragma once

#include "NotificationDaemon/LocalZone.h"
#include "NotificationDaemonProtocol/Request.h"

#include <cstdint>
#include <optional>

namespace Tinkra::NotificationDaemon {

/// The instant (seconds since 1970 UTC) at which the wall clock of `zone` shows `components`.
///
/// Where the clock shows them twice, the one that `fireDate` names, else the first. Where it skips them, the
/// instant of `fireDate` if that lies at the skip, else they are read with the offset before the skip, which
/// moves them forward by its length (RFC 5545, 3.3.5). Everywhere else `fireDate` has no say, because the
/// user may have travelled since it was computed. `fireDate` is in seconds since 1970 UTC; its fraction is
/// cut off.
std::int64_t triggerTime(const NotificationDaemonProtocol::WallClock& components,
    std::optional<double> fireDate, const LocalZone& zone);

/// The components read as if they were UTC, in seconds since 1970.
std::int64_t secondsOf(const NotificationDaemonProtocol::WallClock& components);

}
