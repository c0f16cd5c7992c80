#pragma once

#include "TinkraSystem/HealthChecks.h"

#include <memory>

namespace Tinkra::System {

class FolderEventStore;
class MessageBus;

/// Asks the two message buses and looks at the files that a desktop session needs to start the notification
/// daemon. Starts nothing but the daemon.
class HealthChecksLinux final : public HealthChecks {
public:
    HealthChecksLinux(std::shared_ptr<MessageBus> sessionBus, std::shared_ptr<MessageBus> systemBus,
        std::shared_ptr<FolderEventStore> calendars);

    Task<std::vector<HealthFinding>> run() override;
    Task<HealthFinding> notificationService() override;
    Task<std::vector<std::string>> filesLeftOut() override;
    Task<> acknowledgeRearmed() override;

private:
    Task<HealthFinding> sessionBus();
    Task<std::vector<HealthFinding>> notificationStore();
    Task<HealthFinding> notificationServer();
    Task<HealthFinding> serviceManager();
    Task<std::vector<HealthFinding>> calendarFolders();
    Task<HealthFinding> loginManager();

    std::shared_ptr<MessageBus> m_sessionBus;
    std::shared_ptr<MessageBus> m_systemBus;
    std::shared_ptr<FolderEventStore> m_calendars;
};

}
