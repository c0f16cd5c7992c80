#include "NotificationDaemon/HeldResponses.h"

#include <iterator>
#include <utility>

namespace Tinkra::NotificationDaemon {

void HeldResponses::delivered(const NotificationDaemonProtocol::Request& request, std::uint32_t serverID)
{
    m_shown.insert_or_assign(serverID, request);
    if (m_shown.size() > kMostShown)
        m_shown.erase(m_shown.begin());
}

std::optional<std::string> HeldResponses::invoked(std::uint32_t serverID, const std::string& action)
{
    const auto shown = m_shown.find(serverID);
    if (shown == m_shown.end())
        return std::nullopt;
    m_held.push_back({.action = action, .request = shown->second});
    if (m_held.size() > kMostHeld)
        m_held.pop_front();
    return shown->second.identifier;
}

std::vector<HeldResponses::Response> HeldResponses::take()
{
    auto held = std::exchange(m_held, {});
    return {std::make_move_iterator(held.begin()), std::make_move_iterator(held.end())};
}

}
