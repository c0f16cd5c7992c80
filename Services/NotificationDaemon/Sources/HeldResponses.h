#pragma once

#include "NotificationDaemonProtocol/Request.h"

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Tinkra::NotificationDaemon {

/// What the user has answered to notifications, held until the application takes it.
///
/// Notifications are remembered by the server's number for them, which no server gives twice in its life;
/// that one was closed is no reason to forget it, since some servers close before they tell of the action.
class HeldResponses {
public:
    static constexpr std::size_t kMostShown = 200;
    static constexpr std::size_t kMostHeld = 100;

    struct Response {
        std::string action; ///< its key; "default" is a click on the notification
        NotificationDaemonProtocol::Request request;
    };

    void delivered(const NotificationDaemonProtocol::Request& request, std::uint32_t serverID);

    /// The identifier of the request; nothing when the notification is none of ours.
    std::optional<std::string> invoked(std::uint32_t serverID, const std::string& action);

    /// Its numbers mean nothing any more.
    void serverVanished() { m_shown.clear(); }

    /// In the order in which they came; they are held no longer.
    std::vector<Response> take();

private:
    std::map<std::uint32_t, NotificationDaemonProtocol::Request> m_shown; ///< oldest first
    std::deque<Response> m_held;
};

}
