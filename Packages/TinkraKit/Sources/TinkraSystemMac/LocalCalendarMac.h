#pragma once

#include "TinkraSystem/LocalCalendar.h"

namespace Tinkra::System {

/// NSCalendar.currentCalendar, asked at each call: the calendar in which the system reads the components of a
/// notification's trigger, with the zone in force.
class LocalCalendarMac final : public LocalCalendar {
public:
    DateComponents components(Instant instant) override;
};

}
