#include "AlarmInfrastructure/NotificationCoordinator.h"

#include <utility>
#include <variant>

namespace Tinkra {

NotificationCoordinator::NotificationCoordinator(std::shared_ptr<Clock> clock)
    : m_clock(std::move(clock))
{
}

Task<std::uint32_t> NotificationCoordinator::willPresent(System::NotificationRequest request)
{
    if (auto alarm = payload(request, m_clock->now()); alarm && onForegroundAlarm)
        onForegroundAlarm(std::move(*alarm));
    co_return System::BannerPresentation | System::ListPresentation | System::SoundPresentation;
}

Task<> NotificationCoordinator::didReceive(System::NotificationResponse)
{
    if (onOpenApp)
        onOpenApp();
    co_return;
}

std::optional<AlarmPayload> NotificationCoordinator::payload(
    const System::NotificationRequest& request, Instant now)
{
    const auto& userInfo = request.content.userInfo;

    const auto title = userInfo.find("title");
    if (title == userInfo.end() || !std::holds_alternative<std::string>(title->second))
        return std::nullopt;

    const auto start = userInfo.find("meetingStart");
    const auto* seconds = start == userInfo.end() ? nullptr : std::get_if<double>(&start->second);
    return AlarmPayload{
        .id = request.identifier,
        .title = std::get<std::string>(title->second),
        .meetingStart = seconds ? instantAt(*seconds) : now,
    };
}

}
