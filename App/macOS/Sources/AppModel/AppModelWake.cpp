#include "AppModel/AppModel.h"

#include <asio/post.hpp>

#include <algorithm>
#include <utility>

namespace Tinkra {

void AppModel::startKeepAwakeEvaluator()
{
    m_keepAwakeTask.cancel();
    m_keepAwakeTask = spawn(m_services.mainExecutor,
        std::bind_front(&AppModel::keepEvaluating, weak_from_this(), m_services.clock));
}

Task<> AppModel::keepEvaluating(WeakModel model, std::shared_ptr<Clock> clock, std::stop_token stop)
{
    for (;;) {
        co_await clock->sleepFor(keepAwakePeriod, stop);
        if (stop.stop_requested())
            co_return;
        const auto self = model.lock();
        if (!self)
            co_return;
        self->evaluateKeepAwake();
    }
}

void AppModel::evaluateKeepAwake()
{
    if (!m_configuration.masterEnabled || !m_configuration.settings.keepAwake) {
        m_sleepGuard.setActive(false);
        return;
    }
    const auto now = m_services.clock->now();
    const bool isImminent = std::ranges::any_of(m_upcoming, [now](const ScheduledAlarm& alarm) {
        return alarm.fireDate > now && alarm.fireDate <= now + keepAwakeWindow;
    });
    m_sleepGuard.setActive(isImminent, "Tinkra alarm is imminent");
}

void AppModel::scheduleNextWake()
{
    const auto now = m_services.clock->now();
    const auto next =
        std::ranges::find_if(m_upcoming, [now](const ScheduledAlarm& alarm) { return alarm.fireDate > now; });
    m_wakeFromSleep.schedule(next == m_upcoming.end() ? std::nullopt : std::optional(next->fireDate));
}

void AppModel::observeSystemWake()
{
    if (m_wakeObserver)
        return;
    m_wakeObserver =
        m_services.workspace->observeDidWake([executor = m_services.mainExecutor, weak = weak_from_this()] {
            asio::post(executor, [weak] {
                if (const auto self = weak.lock())
                    self->handleDidWake();
            });
        });
}

void AppModel::handleDidWake()
{
    const auto now = m_services.clock->now();
    for (const auto& alarm : m_upcoming) {
        if (alarm.fireDate > now)
            continue;
        const bool hasRung = hasRungSinceWake(alarm.id);
        if (!hasRung && alarm.fireDate > now - missedAlarmGrace)
            presentAlarm({alarm.id, alarm.title, alarm.meetingStart});
    }
    evaluateKeepAwake();
    scheduleNextWake();
}

/// Ends the alarm's timer, whose turn it is no more. True when the timer has gone off before the system told
/// of the wake, and has rung: an alarm rings once for each wake.
bool AppModel::hasRungSinceWake(const Text& id)
{
    auto* task = alarmTask(id);
    if (task == nullptr)
        return false;
    task->isOver = true;
    task->timer.cancel();
    return std::exchange(task->hasRungLate, false);
}

}
