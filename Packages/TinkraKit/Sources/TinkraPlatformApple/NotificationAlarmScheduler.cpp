#include "TinkraPlatformApple/NotificationAlarmScheduler.h"

#include <utility>

namespace Tinkra {

namespace {

System::NotificationContent contentFor(const ScheduledAlarm& alarm)
{
    return {
        .title = "Meeting starting",
        .body = alarm.title.utf8(),
        .sound = System::NotificationSound::Default,
        .interruptionLevel = System::InterruptionLevel::TimeSensitive,
        .userInfo =
            {
                {"meetingID", alarm.meetingID.utf8()},
                {"title", alarm.title.utf8()},
                {"fireDate", secondsSince1970(alarm.fireDate)},
                {"meetingStart", secondsSince1970(alarm.meetingStart)},
            },
    };
}

}

NotificationAlarmScheduler::NotificationAlarmScheduler(
    std::shared_ptr<System::NotificationCenter> center, std::shared_ptr<System::LocalCalendar> calendar)
    : m_center(std::move(center))
    , m_calendar(std::move(calendar))
{
}

Task<bool> NotificationAlarmScheduler::requestAuthorization()
{
    try {
        co_return co_await m_center->requestAuthorization(
            System::BadgeOption | System::SoundOption | System::AlertOption);
    } catch (...) {
        co_return false;
    }
}

Task<std::vector<Text>> NotificationAlarmScheduler::scheduledAlarmIDs()
{
    const auto requests = co_await m_center->pendingRequests();
    std::vector<Text> ids;
    ids.reserve(requests.size());
    for (const auto& request : requests)
        ids.emplace_back(request.identifier);
    co_return ids;
}

Task<> NotificationAlarmScheduler::schedule(ScheduledAlarm alarm)
{
    System::NotificationRequest request{
        .identifier = alarm.id.utf8(),
        .content = contentFor(alarm),
        .trigger = {.components = m_calendar->components(alarm.fireDate), .repeats = false},
    };
    co_await m_center->add(std::move(request));
}

Task<> NotificationAlarmScheduler::cancel(std::vector<Text> ids)
{
    std::vector<std::string> identifiers;
    identifiers.reserve(ids.size());
    for (const auto& id : ids)
        identifiers.push_back(id.utf8());
    co_await m_center->removePending(std::move(identifiers));
}

}
