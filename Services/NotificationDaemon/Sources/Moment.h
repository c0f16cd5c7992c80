#pragma once

#include <cstdint>

namespace Tinkra::NotificationDaemon {

/// Now, by both clocks. The wall clock decides what is due; the other one measures waits and cannot be set.
struct Moment {
    std::int64_t wall = 0; ///< seconds since 1970 UTC, rounded down
    std::int64_t elapsed = 0; ///< milliseconds since boot, suspended time included
};

}
