#pragma once

#include "TinkraICalendar/Zone.h"

#include <string>

namespace Tinkra::ICalendar {

/// The zone as ICU's own data has it, for machines without zone files. Nothing when ICU does not know the
/// name.
ZonePtr makeIcuZone(const std::string& name);

}
