#pragma once

#include "TinkraCore/Models/Text.h"

#include <optional>

namespace Tinkra {

/// A calendar that can be monitored.
struct CalendarRef {
    Text id; ///< the calendar store's stable identifier
    Text title;
    Text accountName; ///< the calendar list groups by it
    std::optional<Text> colorHex; ///< "#RRGGBB"; absent when the store gives no colour

    friend bool operator==(const CalendarRef&, const CalendarRef&) = default;
};

}

template <> struct std::hash<Tinkra::CalendarRef> {
    std::size_t operator()(const Tinkra::CalendarRef& calendar) const;
};
