#include "AppModel/AppModel.h"

#include "ErrorText.h"

#include "TinkraCore/UsableSettings.h"

#include <algorithm>
#include <utility>

namespace Tinkra {

Task<> AppModel::syncNow()
{
    // The alarm of this very instant goes before the tick of this very instant.
    ringDueAlarms();

    co_await m_service.updateConfiguration(usable(m_configuration));
    try {
        co_await m_service.sync(m_services.clock->now());
    } catch (...) {
        publish(m_statusMessage, "Sync failed: " + currentErrorText(), Property::statusMessage);
        co_return;
    }
    publish(m_lastSync, std::optional(m_services.clock->now()), Property::lastSync);
    co_await refreshUpcoming();
    updateStatus();
}

namespace {

/// A query that fails finds nothing.
Task<std::vector<Meeting>> meetingsOrNone(
    std::shared_ptr<CalendarProvider> provider, CalendarIDs in, Instant from, Instant to)
{
    try {
        co_return co_await provider->meetings(std::move(in), from, to);
    } catch (...) {
        co_return std::vector<Meeting>{};
    }
}

}

Task<> AppModel::refreshUpcoming()
{
    if (!m_configuration.masterEnabled || m_configuration.monitoring.selectedCalendarIDs.empty()) {
        publishUpcoming({});
        rescheduleAlarmWindows();
        m_wakeFromSleep.schedule(std::nullopt);
        co_return;
    }

    const auto now = m_services.clock->now();
    const auto meetings = co_await meetingsOrNone(
        m_services.provider, m_configuration.monitoring.selectedCalendarIDs, now, now + upcomingHorizon);

    // What fell due while we waited rings before its timer goes: a cancellation is final.
    ringDueAlarms();

    // The configuration may have changed while we waited; the newest one decides.
    publishUpcoming(m_engine.desiredAlarms(
        meetings, usable(m_configuration).settings, m_configuration.monitoring.selectedCalendarIDs, now));
    rescheduleAlarmWindows();
    evaluateKeepAwake();
    scheduleNextWake();
}

void AppModel::publishUpcoming(std::vector<ScheduledAlarm> alarms)
{
    alarms.resize(std::min(alarms.size(), upcomingLimit));
    publishAlways(m_upcoming, std::move(alarms), Property::upcoming);
}

void AppModel::startTicking()
{
    m_tickTask.cancel();
    m_tickTask =
        spawn(m_services.mainExecutor, std::bind_front(&AppModel::tick, weak_from_this(), m_services.clock));
}

Task<> AppModel::tick(WeakModel model, std::shared_ptr<Clock> clock, std::stop_token stop)
{
    for (;;) {
        co_await clock->sleepFor(tickPeriod, stop);
        if (stop.stop_requested())
            co_return;
        const auto self = model.lock();
        if (!self)
            co_return;
        co_await self->syncNow();
    }
}

}
