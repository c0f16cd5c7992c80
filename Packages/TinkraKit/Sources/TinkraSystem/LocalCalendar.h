#pragma once

#include "TinkraConcurrency/Instant.h"
#include "TinkraSystem/NotificationCenter.h"

namespace Tinkra::System {

/// The user's calendar and time zone, as they are now.
class LocalCalendar {
public:
    virtual ~LocalCalendar() = default;

    /// What the wall clock shows at `instant` in the zone in force; fractions of a second are cut off
    /// downwards.
    virtual DateComponents components(Instant instant) = 0;
};

}
