#include "TinkraSystemMac/UnbundledNotificationCenter.h"

#include <stdexcept>

namespace Tinkra::System {

namespace {

[[noreturn]] void refuse()
{
    throw std::runtime_error(
        "Notifications need the application bundle. Start the program that is inside it.");
}

}

Task<bool> UnbundledNotificationCenter::requestAuthorization(std::uint32_t /*options*/)
{
    refuse();
    co_return false;
}

Task<NotificationAuthorization> UnbundledNotificationCenter::authorizationStatus()
{
    co_return NotificationAuthorization::Denied;
}

Task<std::vector<NotificationRequest>> UnbundledNotificationCenter::pendingRequests()
{
    co_return std::vector<NotificationRequest>{};
}

Task<> UnbundledNotificationCenter::add(NotificationRequest /*request*/)
{
    refuse();
    co_return;
}

Task<> UnbundledNotificationCenter::removePending(std::vector<std::string> /*identifiers*/)
{
    co_return;
}

void UnbundledNotificationCenter::setDelegate(
    std::weak_ptr<NotificationCenterDelegate>, Executor, std::function<bool()>)
{
}

}
