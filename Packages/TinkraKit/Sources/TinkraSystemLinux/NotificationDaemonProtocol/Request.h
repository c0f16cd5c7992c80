#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <variant>

namespace Tinkra::NotificationDaemonProtocol {

/// What the user's clock shows, in the Gregorian calendar and without a zone.
struct WallClock {
    std::int32_t year = 0; ///< 1...9999
    std::int32_t month = 0; ///< 1...12
    std::int32_t day = 0; ///< 1...31
    std::int32_t hour = 0; ///< 0...23
    std::int32_t minute = 0; ///< 0...59
    std::int32_t second = 0; ///< 0...59

    friend bool operator==(const WallClock&, const WallClock&) = default;
    friend auto operator<=>(const WallClock&, const WallClock&) = default;
};

/// Whether such a moment exists on the calendar (29 February only in leap years).
bool isValid(const WallClock& components);

enum class Sound {
    None,
    Default,
};

using UserInfo = std::map<std::string, std::variant<std::string, double>>;

/// One notification that waits for its time. Texts are UTF-8 without NUL, as D-Bus demands.
struct Request {
    std::string identifier;
    std::string title;
    std::string body;
    Sound sound = Sound::None;
    std::int32_t interruptionLevel = 1; ///< 0 passive, 1 active, 2 time-sensitive, 3 critical
    UserInfo userInfo;
    WallClock components;
    bool repeats = false;

    friend bool operator==(const Request&, const Request&) = default;
};

}
