#pragma once

#include "NotificationDaemon/NotificationServer.h"

#include <sdbus-c++/IConnection.h>
#include <sdbus-c++/IProxy.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Tinkra::NotificationDaemon {

/// The notification server of the desktop, behind org.freedesktop.Notifications.
/// https://specifications.freedesktop.org/notification-spec/1.2/
class DesktopNotificationServer final : public NotificationServer {
public:
    struct Handlers {
        std::function<void(std::int64_t token, std::uint32_t serverID)> answered; ///< 0 when it was refused
        std::function<void()> appeared;
        std::function<void()> vanished;
        std::function<void(std::uint32_t serverID, const std::string& action)> actionInvoked;
    };

    /// Calls back from the connection's event loop. Throws sdbus::Error when the bus is gone.
    DesktopNotificationServer(sdbus::IConnection& connection, Handlers handlers);

    void show(std::int64_t token, const Notification& notification) override;
    bool isAvailable() override;

    const std::string& name() const { return m_name; }
    const std::vector<std::string>& capabilities() const { return m_capabilities; }

private:
    enum class Knowledge {
        None, ///< nothing is known of the server, or there is none
        Asked,
        Complete,
    };

    void ownerChanged(const std::string& oldOwner, const std::string& newOwner);
    void askForCapabilities();
    void notify(std::int64_t token, const Notification& notification);

    Handlers m_handlers;
    std::unique_ptr<sdbus::IProxy> m_bus;
    std::unique_ptr<sdbus::IProxy> m_server;
    unsigned m_generation = 0; ///< counts the owners of the name
    Knowledge m_knowledge = Knowledge::None;
    bool m_hasOwner = false;
    bool m_readsMarkup = true; ///< until it is known, better a stray "&amp;" than a forged link
    std::string m_name;
    std::vector<std::string> m_capabilities;
    std::vector<std::pair<std::int64_t, Notification>> m_waiting; ///< for the capabilities
};

}
