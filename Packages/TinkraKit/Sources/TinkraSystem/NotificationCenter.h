#pragma once

#include "TinkraConcurrency/Task.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace Tinkra::System {

/// What an authorisation request asks for; values are the platform's (UNAuthorizationOptions).
enum NotificationAuthorizationOption : std::uint32_t {
    BadgeOption = 1,
    SoundOption = 2,
    AlertOption = 4,
};

/// Whether the user lets us notify. The values are the platform's (UNAuthorizationStatus).
enum class NotificationAuthorization {
    NotDetermined = 0,
    Denied = 1,
    Authorized = 2,
    Provisional = 3,
    Ephemeral = 4,
};

/// How urgent a notification is. The values are the platform's (UNNotificationInterruptionLevel).
enum class InterruptionLevel {
    Passive = 0,
    Active = 1,
    TimeSensitive = 2,
    Critical = 3,
};

enum class NotificationSound {
    None,
    Default,
};

/// A wall-clock time in the Gregorian calendar, without a zone.
struct DateComponents {
    int year = 0;
    int month = 0; ///< 1...12
    int day = 0; ///< 1...31
    int hour = 0; ///< 0...23
    int minute = 0; ///< 0...59
    int second = 0; ///< 0...59

    friend bool operator==(const DateComponents&, const DateComponents&) = default;
};

/// Fires once, or again and again, when the wall clock of the zone then in force shows the components.
struct CalendarTrigger {
    DateComponents components;
    bool repeats = false;

    friend bool operator==(const CalendarTrigger&, const CalendarTrigger&) = default;
};

using UserInfo = std::map<std::string, std::variant<std::string, double>>;

struct NotificationContent {
    std::string title;
    std::string body;
    NotificationSound sound = NotificationSound::None;
    InterruptionLevel interruptionLevel = InterruptionLevel::Active;
    UserInfo userInfo;

    friend bool operator==(const NotificationContent&, const NotificationContent&) = default;
};

struct NotificationRequest {
    std::string identifier;
    NotificationContent content;
    CalendarTrigger trigger;

    friend bool operator==(const NotificationRequest&, const NotificationRequest&) = default;
};

class NotificationCenterDelegate;

/// The service that shows notifications at their time, whether or not the application runs.
/// Callable from any executor; the caller resumes on its own.
class NotificationCenter {
public:
    virtual ~NotificationCenter() = default;

    /// Asks for the given `NotificationAuthorizationOption`s, joined by "or"; true when granted. May throw.
    virtual Task<bool> requestAuthorization(std::uint32_t options) = 0;

    virtual Task<NotificationAuthorization> authorizationStatus() = 0;

    /// Every request that was added and not yet delivered, in the centre's own order. Empty when the centre
    /// cannot be reached.
    virtual Task<std::vector<NotificationRequest>> pendingRequests() = 0;

    /// Adds a request; one that is pending under the same identifier is replaced. Throws when it is not
    /// durably kept.
    virtual Task<> add(NotificationRequest request) = 0;

    /// Who hears of notifications from now on; it is not kept alive. Its entries are called on `mainThread`;
    /// responses that came before there was a delegate are held for it. `isActive` tells, on `mainThread`,
    /// whether a window of the application has the keyboard.
    virtual void setDelegate(std::weak_ptr<NotificationCenterDelegate> delegate, Executor mainThread,
        std::function<bool()> isActive) = 0;

    /// Removes the pending requests of these identifiers; unknown ones are ignored, delivered ones stay.
    virtual Task<> removePending(std::vector<std::string> identifiers) = 0;
};

}
