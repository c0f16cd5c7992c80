#pragma once

#include <string>

#import <UserNotifications/UserNotifications.h>

namespace Tinkra::System {

/// What the stand-in of UserNotifications does when it is asked.
struct StandInNotifications {
    UNAuthorizationStatus status = UNAuthorizationStatusNotDetermined;
    bool answer = true; ///< what the user answers when asked
    bool requestFails = false;
    std::string addingFailsWith; ///< a sentence; empty when adding succeeds
    UNAuthorizationOptions askedFor = 0;

    /// Those of this process, as the system's are.
    static StandInNotifications& shared();
};

}

/// Objects of kinds that only the system makes.
@interface StandInNotification : UNNotification {
@public
    UNNotificationRequest* _request;
}
@end

@interface StandInResponse : UNNotificationResponse {
@public
    UNNotification* _notification;
}
@end
