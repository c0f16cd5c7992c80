#pragma once

#include "TinkraConcurrency/Instant.h"
#include "TinkraCore/Models/Text.h"

#include <functional>
#include <string>
#include <string_view>

namespace Tinkra {

/// What rings: the one record of every in-application alarm, wherever it came from.
struct AlarmPayload {
    Text id; ///< for a notification its request's identifier, which is the alarm's
    Text title; ///< the meeting's title
    Instant meetingStart;

    friend bool operator==(const AlarmPayload&, const AlarmPayload&) = default;
};

/// The payload as a JSON object with the keys "id", "title" and "meetingStart" (seconds since 1970).
/// Throws `EncodingError` when the start is not finite.
std::string encode(const AlarmPayload& payload);

/// Throws `DecodingError` when a key is missing, null or of another type; unknown keys are ignored.
AlarmPayload decodeAlarmPayload(std::string_view document);

}

template <> struct std::hash<Tinkra::AlarmPayload> {
    std::size_t operator()(const Tinkra::AlarmPayload& payload) const;
};
