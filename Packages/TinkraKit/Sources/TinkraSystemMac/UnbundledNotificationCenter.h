#pragma once

#include "TinkraSystem/NotificationCenter.h"

namespace Tinkra::System {

/// Stands where a process has no notification centre: macOS gives one to applications in a bundle alone, and
/// ends a program that asks for it outside. Denied and empty; asking and adding throw.
class UnbundledNotificationCenter final : public NotificationCenter {
public:
    Task<bool> requestAuthorization(std::uint32_t options) override;
    Task<NotificationAuthorization> authorizationStatus() override;
    Task<std::vector<NotificationRequest>> pendingRequests() override;
    Task<> add(NotificationRequest request) override;
    Task<> removePending(std::vector<std::string> identifiers) override;
    /// Nothing is delivered, so that there is nothing to hear of.
    void setDelegate(std::weak_ptr<NotificationCenterDelegate> delegate, Executor mainThread,
        std::function<bool()> isActive) override;
};

}
