#pragma once

#include "AlarmInfrastructure/AlarmPayload.h"

#include "TinkraConcurrency/Clock.h"
#include "TinkraSystem/NotificationCenterDelegate.h"

#include <functional>
#include <memory>
#include <optional>

namespace Tinkra {

/// Turns a notification that arrives while the application is active into an in-application alarm, and any
/// response to a notification into opening the application. The last callback set counts. Main thread only.
class NotificationCoordinator final : public System::NotificationCenterDelegate {
public:
    /// `clock` tells the start of a meeting whose notification does not.
    explicit NotificationCoordinator(std::shared_ptr<Clock> clock);

    std::function<void(AlarmPayload)> onForegroundAlarm;
    std::function<void()> onOpenApp;

    /// Rings what has a usable payload. In every case the system still shows its banner, lists the
    /// notification and plays its sound.
    Task<std::uint32_t> willPresent(System::NotificationRequest request) override;

    /// Every response opens the application, whatever its action.
    Task<> didReceive(System::NotificationResponse response) override;

private:
    static std::optional<AlarmPayload> payload(const System::NotificationRequest& request, Instant now);

    std::shared_ptr<Clock> m_clock;
};

}
