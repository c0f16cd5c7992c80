#pragma once

#include "TinkraCore/Models/CalendarRef.h"
#include "TinkraCore/Models/Meeting.h"
#include "TinkraCore/Models/ScheduledAlarm.h"
#include "TinkraCore/Models/TinkraConfiguration.h"

#include <stdexcept>
#include <string>
#include <string_view>

namespace Tinkra {

/// A JSON document that is not the record asked for. The text names the key and what is wrong with it.
class DecodingError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The record as a JSON document (RFC 8259, UTF-8, one line, every key written). Instants are numbers:
/// seconds since 1970. Throws `EncodingError` for a number that JSON cannot hold (NaN, infinity).
std::string encode(const TinkraConfiguration& configuration);
std::string encode(const CalendarRef& calendar);
std::string encode(const Meeting& meeting);
std::string encode(const ScheduledAlarm& alarm);

/// A record that has no JSON form.
class EncodingError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The record that the document holds; throws `DecodingError` and never gives half a record. Unknown keys
/// are ignored. Only the seven settings of a configuration, and a calendar's colour, may be missing or null.
template <typename Record> Record decode(std::string_view document);

template <> TinkraConfiguration decode<TinkraConfiguration>(std::string_view document);
template <> CalendarRef decode<CalendarRef>(std::string_view document);
template <> Meeting decode<Meeting>(std::string_view document);
template <> ScheduledAlarm decode<ScheduledAlarm>(std::string_view document);

}
