#pragma once

#include "TinkraSystem/LocalCalendar.h"

namespace Tinkra::System {

/// The C library's local time (localtime_r(3)). The zone is looked up at each call: TZ, else /etc/localtime,
/// else UTC.
class LocalCalendarLinux final : public LocalCalendar {
public:
    /// Throws `std::out_of_range` for an instant whose year does not fit, or that is not a number.
    DateComponents components(Instant instant) override;
};

}
