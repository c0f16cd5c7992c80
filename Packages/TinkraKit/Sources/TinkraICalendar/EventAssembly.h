#pragma once

#include "TinkraICalendar/EventDraft.h"
#include "TinkraICalendar/Notices.h"
#include "TinkraICalendar/PackedEvents.h"

namespace Tinkra::ICalendar {

/// Puts the events of one text in relation to each other: which of several versions counts (RFC 5545, section
/// 3.8.7.4), which instances of a series are replaced (3.8.4.4), moved or left out (3.8.5.1).
PackedEvents::Parts assembleEvents(Drafts drafts, Notices& notices);

}
