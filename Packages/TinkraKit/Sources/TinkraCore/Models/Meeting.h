#pragma once

#include "TinkraConcurrency/Instant.h"
#include "TinkraCore/Models/Text.h"

namespace Tinkra {

/// One occurrence of a calendar event in a monitored calendar.
struct Meeting {
    Text id; ///< stable for the occurrence; the prefix of every alarm identifier made for it
    Text calendarID; ///< `CalendarRef::id`
    Text title;
    Instant start;
    Instant end;
    bool isAllDay = false;

    friend bool operator==(const Meeting&, const Meeting&) = default;
};

}

template <> struct std::hash<Tinkra::Meeting> {
    std::size_t operator()(const Tinkra::Meeting& meeting) const;
};
