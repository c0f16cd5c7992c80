#pragma once

#include "TinkraSystem/NotificationCenter.h"

#include <chrono>
#include <memory>
#include <stdexcept>

namespace Tinkra::System {

class MessageBus;

/// What kept the notification daemon from doing what it was asked, as a sentence that says what to do.
class NotificationCenterError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The client of tinkra-notifierd (interface co.calendarmurkel.NotificationCenter1 on the session bus). The
/// bus starts the daemon when a call needs it.
class NotificationCenterLinux final : public NotificationCenter {
public:
    /// How long a list is waited for, and everything else.
    struct Limits {
        std::chrono::milliseconds listing{2500};
        std::chrono::milliseconds other{10000};
    };

    explicit NotificationCenterLinux(std::shared_ptr<MessageBus> sessionBus);
    NotificationCenterLinux(std::shared_ptr<MessageBus> sessionBus, Limits limits);

    /// Throws `NotificationCenterError`.
    Task<bool> requestAuthorization(std::uint32_t options) override;

    /// Denied while the daemon cannot be reached.
    Task<NotificationAuthorization> authorizationStatus() override;

    Task<std::vector<NotificationRequest>> pendingRequests() override;

    /// Throws `NotificationCenterError`. Text that is not UTF-8 is replaced by U+FFFD before it is sent.
    Task<> add(NotificationRequest request) override;

    void setDelegate(std::weak_ptr<NotificationCenterDelegate> delegate, Executor mainThread,
        std::function<bool()> isActive) override;

    /// A failure is written to standard error and not reported otherwise.
    Task<> removePending(std::vector<std::string> identifiers) override;

private:
    struct Delegation;

    std::shared_ptr<MessageBus> m_bus;
    Limits m_limits;
    std::shared_ptr<Delegation> m_delegation; ///< observers of the bus hold it weakly
};

}
