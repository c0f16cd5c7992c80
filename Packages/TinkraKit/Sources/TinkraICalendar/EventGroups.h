#pragma once

#include "TinkraICalendar/EventDraft.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace Tinkra::ICalendar {

/// The events of one UID. Numbers are positions in `Drafts::events`.
struct EventGroup {
    std::optional<std::uint32_t> master; ///< the series, or the only event
    std::vector<std::uint32_t> exceptions; ///< those with a RECURRENCE-ID, in the order of the text
    std::vector<std::uint32_t> namesakes; ///< events that share the UID and nothing else
};

/// Calls `sink` for each UID, in the order in which it first appears. Of several masters the newest version
/// counts: the highest SEQUENCE, then the latest DTSTAMP, then LAST-MODIFIED. Where those say nothing and the
/// starts differ, the events are taken as unrelated ones of a producer that does not make its UIDs unique.
void forEachUid(const Drafts& drafts, const std::function<void(const EventGroup&)>& sink);

/// Whether `a` is an older version than `b`; a tie goes to the one that comes later in the text.
bool isOlderVersion(const EventDraft& a, const EventDraft& b);

}
