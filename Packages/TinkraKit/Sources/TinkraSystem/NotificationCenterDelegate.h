#pragma once

#include "TinkraConcurrency/Task.h"
#include "TinkraSystem/NotificationCenter.h"

#include <cstdint>
#include <string>

namespace Tinkra::System {

/// How a notification that arrives in the foreground is shown all the same; values are the platform's
/// (UNNotificationPresentationOptions).
enum NotificationPresentationOption : std::uint32_t {
    BadgePresentation = 1,
    SoundPresentation = 2,
    ListPresentation = 8,
    BannerPresentation = 16,
};

/// The action of a click on the notification itself (UNNotificationDefaultActionIdentifier).
inline constexpr auto kDefaultActionIdentifier = "com.apple.UNNotificationDefaultActionIdentifier";

/// What the user did with a notification.
struct NotificationResponse {
    std::string actionIdentifier;
    NotificationRequest request;
};

/// Hears of notifications while the application runs. Both entries are called on the main thread.
class NotificationCenterDelegate {
public:
    virtual ~NotificationCenterDelegate() = default;

    /// A notification arrives while the application is active. Gives the `NotificationPresentationOption`s.
    virtual Task<std::uint32_t> willPresent(NotificationRequest request) = 0;

    /// The user has responded to a notification.
    virtual Task<> didReceive(NotificationResponse response) = 0;
};

}
