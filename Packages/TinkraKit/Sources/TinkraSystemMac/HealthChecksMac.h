#pragma once

#include "TinkraSystem/EventStore.h"
#include "TinkraSystem/HealthChecks.h"
#include "TinkraSystem/NotificationCenter.h"

#include <memory>

namespace Tinkra::System {

/// Looks at the two permissions, which are all that can be missing on macOS: the system itself keeps and
/// shows the notifications.
class HealthChecksMac final : public HealthChecks {
public:
    HealthChecksMac(
        std::shared_ptr<EventStore> eventStore, std::shared_ptr<NotificationCenter> notificationCenter);

    Task<std::vector<HealthFinding>> run() override;
    Task<HealthFinding> notificationService() override;
    Task<std::vector<std::string>> filesLeftOut() override;
    Task<> acknowledgeRearmed() override;

private:
    HealthFinding calendars();

    std::shared_ptr<EventStore> m_eventStore;
    std::shared_ptr<NotificationCenter> m_notificationCenter;
};

}
