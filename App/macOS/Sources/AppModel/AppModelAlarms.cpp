#include "AppModel/AppModel.h"

#include "AppModel/StatusText.h"

#include "TinkraCore/UsableSettings.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace Tinkra {

namespace {

// A timer that goes off later has been held up, by a machine that slept for instance.
constexpr Seconds kPunctual{1};

}

void AppModel::rescheduleAlarmWindows()
{
    m_alarmTasks.clear();
    if (!ringsInApplication())
        return;

    const auto now = m_services.clock->now();
    for (const auto& alarm : m_upcoming) {
        if (alarm.fireDate <= now || alarm.fireDate >= now + timerWindow)
            continue;
        keep({
            .kind = AlarmTask::Kind::Scheduled,
            .payload = {alarm.id, alarm.title, alarm.meetingStart},
            .ringDate = alarm.fireDate,
            .timer = spawn(m_services.mainExecutor,
                std::bind_front(
                    &AppModel::ringAt, weak_from_this(), m_services.clock, alarm.fireDate, alarm.id)),
        });
    }
}

bool AppModel::ringsInApplication() const
{
    return m_configuration.masterEnabled
        && m_configuration.settings.style == AlarmStyle::notificationAndWindow;
}

void AppModel::keep(AlarmTask task)
{
    std::erase_if(
        m_alarmTasks, [&task](const AlarmTask& other) { return other.payload.id == task.payload.id; });
    m_alarmTasks.push_back(std::move(task));
}

// Waits for the wall clock: neither a sleep of the machine nor a clock that is set makes it late.
Task<> AppModel::ringAt(
    WeakModel model, std::shared_ptr<Clock> clock, Instant ringDate, Text id, std::stop_token stop)
{
    co_await clock->sleepUntil(ringDate, stop);
    if (stop.stop_requested())
        co_return;
    if (const auto self = model.lock())
        self->timerWentOff(id);
}

// Waits for time to pass: a clock that is set back cannot stall it.
Task<> AppModel::ringAfter(
    WeakModel model, std::shared_ptr<Clock> clock, Seconds interval, Text id, std::stop_token stop)
{
    co_await clock->sleepFor(interval, stop);
    if (stop.stop_requested())
        co_return;
    if (const auto self = model.lock())
        self->timerWentOff(id);
}

void AppModel::timerWentOff(const Text& id)
{
    if (auto* task = alarmTask(id); task != nullptr && !task->isOver)
        takeTurn(*task);
}

void AppModel::takeTurn(AlarmTask& task)
{
    task.isOver = true;
    task.timer.cancel();

    // Settings may have changed since the timer was set, and the refresh that obeys them may not have come.
    const bool isWanted = task.kind == AlarmTask::Kind::Snoozed || ringsInApplication();
    const auto delay = m_services.clock->now() - task.ringDate;
    if (!isWanted || delay > missedAlarmGrace)
        return;
    task.hasRungLate = delay > kPunctual;
    presentAlarm(task.payload);
}

void AppModel::ringDueAlarms()
{
    const auto now = m_services.clock->now();
    std::vector<AlarmTask*> due;
    for (auto& task : m_alarmTasks) {
        if (task.ringDate <= now && !task.isOver)
            due.push_back(&task);
    }
    std::ranges::stable_sort(due, {}, &AlarmTask::ringDate);
    for (auto* task : due)
        takeTurn(*task);
}

AlarmTask* AppModel::alarmTask(const Text& id)
{
    const auto task =
        std::ranges::find_if(m_alarmTasks, [&id](const AlarmTask& each) { return each.payload.id == id; });
    return task == m_alarmTasks.end() ? nullptr : &*task;
}

std::vector<Text> AppModel::alarmTaskIDs() const
{
    std::vector<Text> ids;
    for (const auto& task : m_alarmTasks)
        ids.push_back(task.payload.id);
    return ids;
}

void AppModel::presentAlarm(AlarmPayload payload)
{
    auto onSnooze = [weak = weak_from_this(), payload] {
        if (const auto self = weak.lock())
            self->snooze(payload);
    };
    const auto& settings = m_configuration.settings;
    m_presenter.present(
        std::move(payload), settings.soundName.utf8(), settings.raiseVolume, std::move(onSnooze), [] {});
}

void AppModel::snooze(AlarmPayload payload)
{
    const auto interval = usable(m_configuration).settings.snoozeInterval;
    const auto ringDate = m_services.clock->now() + interval;
    const auto seconds = static_cast<std::int64_t>(secondsSince1970(ringDate));
    payload.id = Text{payload.id.utf8() + "#snooze" + std::to_string(seconds)};

    const auto id = payload.id;
    keep({
        .kind = AlarmTask::Kind::Snoozed,
        .payload = std::move(payload),
        .ringDate = ringDate,
        .timer = spawn(m_services.mainExecutor,
            std::bind_front(&AppModel::ringAfter, weak_from_this(), m_services.clock, interval, id)),
    });
    publish(m_statusMessage, snoozedText(interval), Property::statusMessage);
}

}
