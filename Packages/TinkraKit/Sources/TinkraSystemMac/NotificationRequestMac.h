#pragma once

#include "TinkraSystem/NotificationCenter.h"

#import <UserNotifications/UserNotifications.h>

namespace Tinkra::System {

/// Throws `std::invalid_argument` when a text is not UTF-8.
UNNotificationRequest* _Nonnull nativeRequest(const NotificationRequest& request);

/// User info that is neither text nor number is left out; so are the components of a trigger that is not a
/// calendar trigger.
NotificationRequest requestFrom(UNNotificationRequest* _Nonnull request);

}
