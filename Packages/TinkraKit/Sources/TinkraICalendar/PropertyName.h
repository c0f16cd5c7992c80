#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Tinkra::ICalendar {

/// The properties that are read; there are many more.
enum class PropertyName : std::uint8_t {
    Other,
    Begin,
    DateTimeEnd,
    DateTimeStamp,
    DateTimeStart,
    DefaultZone, ///< X-WR-TIMEZONE
    Duration,
    End,
    ExceptionDates,
    ExceptionRule,
    LastModified,
    RecurrenceDates,
    RecurrenceId,
    RecurrenceRule,
    Sequence,
    Summary,
    Uid,
};

/// No name that is read is longer ("RECURRENCE-ID", "LAST-MODIFIED", "X-WR-TIMEZONE").
constexpr std::size_t longestPropertyName = 13;

struct NamedProperty {
    PropertyName name = PropertyName::Other;
    std::size_t length = 0; ///< of the name on the line
};

/// The name that the content line begins with, in any case.
NamedProperty propertyName(std::string_view line);

}
