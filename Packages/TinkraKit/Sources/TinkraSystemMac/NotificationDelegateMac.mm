#include "TinkraSystemMac/NotificationDelegateMac.h"

#include "TinkraSystemMac/FoundationValues.h"
#include "TinkraSystemMac/NotificationRequestMac.h"

using namespace Tinkra::System;

@implementation TinkraNotificationDelegate

- (instancetype)initWithCalls:(NotificationCalls)calls
{
    self = [super init];
    if (self != nil)
        _calls = std::make_unique<NotificationCalls>(std::move(calls));
    return self;
}

- (void)userNotificationCenter:(UNUserNotificationCenter*)center
       willPresentNotification:(UNNotification*)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions options))completionHandler
{
    _calls->willPresent(requestFrom(notification.request),
        [completionHandler](std::uint32_t options) { completionHandler(options); });
}

- (void)userNotificationCenter:(UNUserNotificationCenter*)center
    didReceiveNotificationResponse:(UNNotificationResponse*)response
             withCompletionHandler:(void (^)())completionHandler
{
    NotificationResponse received{
        .actionIdentifier = utf8From(response.actionIdentifier),
        .request = requestFrom(response.notification.request),
    };
    _calls->didReceive(std::move(received), [completionHandler] { completionHandler(); });
}

@end
