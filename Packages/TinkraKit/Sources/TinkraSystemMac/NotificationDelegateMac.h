#pragma once

#include "TinkraSystemMac/NotificationCalls.h"

#import <UserNotifications/UserNotifications.h>

/// Hands what the notification centre says to a delegate of ours. The centre does not keep it: its owner
/// does.
@interface TinkraNotificationDelegate : NSObject <UNUserNotificationCenterDelegate> {
    std::unique_ptr<Tinkra::System::NotificationCalls> _calls;
}
- (nonnull instancetype)initWithCalls:(Tinkra::System::NotificationCalls)calls;
@end
