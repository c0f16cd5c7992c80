#pragma once

#include "TinkraSystem/NotificationCenter.h"
#include "TinkraSystem/NotificationCenterDelegate.h"

#include <memory>

#import <UserNotifications/UserNotifications.h>

@class TinkraNotificationDelegate;

namespace Tinkra::System {

/// UNUserNotificationCenter, which only an application in a bundle has.
class NotificationCenterMac final : public NotificationCenter {
public:
    explicit NotificationCenterMac(UNUserNotificationCenter* _Nonnull center);

    /// To be set before the application has finished launching, so that a response that starts it is heard.
    /// The system knows by itself when the application is active.
    void setDelegate(std::weak_ptr<NotificationCenterDelegate> delegate, Executor mainThread,
        std::function<bool()> isActive) override;

    Task<bool> requestAuthorization(std::uint32_t options) override;
    Task<NotificationAuthorization> authorizationStatus() override;
    Task<std::vector<NotificationRequest>> pendingRequests() override;
    Task<> add(NotificationRequest request) override;
    Task<> removePending(std::vector<std::string> identifiers) override;

private:
    UNUserNotificationCenter* _Nonnull m_center;
    TinkraNotificationDelegate* _Nullable m_delegate = nil; // the centre does not keep it
};

}
