#pragma once

#include <cstdint>

namespace Tinkra::NotificationDaemon {

/// The time zone in force where the user is.
class LocalZone {
public:
    virtual ~LocalZone() = default;

    /// Seconds that the local wall clock is ahead of UTC at an instant (seconds since 1970 UTC).
    virtual std::int64_t utcOffset(std::int64_t instant) const = 0;
};

}
