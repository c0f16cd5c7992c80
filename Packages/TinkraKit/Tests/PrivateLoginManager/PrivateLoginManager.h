#pragma once

#include "TinkraTestSupport/TemporaryFolder.h"

#include <sys/types.h>

#include <memory>
#include <string>
#include <vector>

namespace sdbus {
class IConnection;
class IProxy;
}

namespace Tinkra {

/// A system bus of the test's own. While it lives, DBUS_SYSTEM_BUS_ADDRESS leads to it.
class PrivateLoginManager {
public:
    enum class Service {
        Working,
        Missing, ///< a bus without logind
    };

    /// Returns when logind can be called. Throws when it does not start.
    explicit PrivateLoginManager(Service service = Service::Working);
    PrivateLoginManager(const PrivateLoginManager&) = delete;
    PrivateLoginManager& operator=(const PrivateLoginManager&) = delete;
    ~PrivateLoginManager();

    /// One inhibitor lock as "what|who|why|mode".
    std::vector<std::string> inhibitors();
    /// Waits until there are so many locks; false when that takes more than ten seconds.
    bool hasInhibitors(std::size_t count);

    /// Tells everybody that the machine is about to sleep, or has woken.
    void prepareForSleep(bool isGoingToSleep);

private:
    void startBus();
    void startService();

    TemporaryFolder m_folder;
    std::string m_address;
    pid_t m_bus = -1;
    pid_t m_service = -1;
    std::unique_ptr<sdbus::IConnection> m_connection;
    std::unique_ptr<sdbus::IProxy> m_manager;
};

}
