#include "TinkraSystemMac/NotificationCenterMac.h"

#include "TinkraConcurrency/Continuation.h"
#include "TinkraSystemMac/FoundationValues.h"
#include "TinkraSystemMac/NotificationDelegateMac.h"
#include "TinkraSystemMac/NotificationRequestMac.h"

namespace Tinkra::System {

namespace {

NotificationAuthorization authorizationFrom(UNAuthorizationStatus status)
{
    switch (status) {
    case UNAuthorizationStatusNotDetermined:
        return NotificationAuthorization::NotDetermined;
    case UNAuthorizationStatusDenied:
        return NotificationAuthorization::Denied;
    case UNAuthorizationStatusAuthorized:
        return NotificationAuthorization::Authorized;
    case UNAuthorizationStatusProvisional:
        return NotificationAuthorization::Provisional;
    }
    return NotificationAuthorization::Denied; // a value that this program does not know yet
}

}

NotificationCenterMac::NotificationCenterMac(UNUserNotificationCenter* center)
    : m_center(center)
{
}

void NotificationCenterMac::setDelegate(
    std::weak_ptr<NotificationCenterDelegate> delegate, Executor mainThread, std::function<bool()>)
{
    m_delegate = [[TinkraNotificationDelegate alloc]
        initWithCalls:NotificationCalls(std::move(mainThread), std::move(delegate))];
    m_center.delegate = m_delegate;
}

Task<bool> NotificationCenterMac::requestAuthorization(std::uint32_t options)
{
    UNUserNotificationCenter* center = m_center;
    return suspend<bool>([center, options](Continuation<bool> waiting) {
        [center requestAuthorizationWithOptions:options
                              completionHandler:^(BOOL granted, NSError* error) {
                                  if (error != nil)
                                      waiting.fail(exceptionFrom(error));
                                  else
                                      waiting.resume(granted != NO);
                              }];
    });
}

Task<NotificationAuthorization> NotificationCenterMac::authorizationStatus()
{
    UNUserNotificationCenter* center = m_center;
    return suspend<NotificationAuthorization>([center](Continuation<NotificationAuthorization> waiting) {
        [center getNotificationSettingsWithCompletionHandler:^(UNNotificationSettings* settings) {
            waiting.resume(authorizationFrom(settings.authorizationStatus));
        }];
    });
}

Task<std::vector<NotificationRequest>> NotificationCenterMac::pendingRequests()
{
    using Requests = std::vector<NotificationRequest>;
    UNUserNotificationCenter* center = m_center;
    return suspend<Requests>([center](Continuation<Requests> waiting) {
        [center
            getPendingNotificationRequestsWithCompletionHandler:^(NSArray<UNNotificationRequest*>* pending) {
                Requests requests;
                for (UNNotificationRequest* request in pending)
                    requests.push_back(requestFrom(request));
                waiting.resume(std::move(requests));
            }];
    });
}

Task<> NotificationCenterMac::add(NotificationRequest request)
{
    UNUserNotificationCenter* center = m_center;
    UNNotificationRequest* native = nativeRequest(request);
    return suspend([center, native](Continuation<> waiting) {
        [center addNotificationRequest:native
                 withCompletionHandler:^(NSError* error) {
                     if (error != nil)
                         waiting.fail(exceptionFrom(error));
                     else
                         waiting.resume();
                 }];
    });
}

Task<> NotificationCenterMac::removePending(std::vector<std::string> identifiers)
{
    @autoreleasepool {
        NSMutableArray<NSString*>* native = [NSMutableArray array];
        for (const auto& identifier : identifiers)
            [native addObject:stringFrom(identifier)];
        [m_center removePendingNotificationRequestsWithIdentifiers:native];
    }
    co_return;
}

}
