#pragma once

#include "TinkraICalendar/EventDraft.h"
#include "TinkraICalendar/Notices.h"

#include <cstddef>
#include <string_view>

namespace Tinkra::ICalendar {

/// Reads the VEVENTs of an iCalendar text (RFC 5545, section 3.6) in one pass. Other components are passed
/// over, those inside an event too; a component that is not ended ends with what surrounds it. Events without
/// a readable start are left out. Lines longer than `longestLine` are passed over.
Drafts readEvents(std::string_view text, std::size_t longestLine, Notices& notices);

}
