#include "TinkraCore/MonitoringService.h"

#include <asio/co_spawn.hpp>
#include <asio/use_awaitable.hpp>

#include <utility>

namespace Tinkra {

namespace {

bool monitorsAnything(const TinkraConfiguration& configuration)
{
    return configuration.masterEnabled && !configuration.monitoring.selectedCalendarIDs.empty();
}

}

MonitoringService::MonitoringService(std::shared_ptr<CalendarProvider> provider,
    std::shared_ptr<AlarmScheduler> scheduler, TinkraConfiguration configuration, Seconds horizon,
    Executor executor)
    : m_provider(std::move(provider))
    , m_scheduler(std::move(scheduler))
    , m_horizon(horizon)
    , m_configuration(std::move(configuration))
    , m_strand(std::move(executor))
{
}

// The public operations hop onto the strand; asio brings the caller back to its own executor.

Task<TinkraConfiguration> MonitoringService::configuration()
{
    co_return co_await asio::co_spawn(m_strand, configurationOnStrand(), asio::use_awaitable);
}

Task<> MonitoringService::updateConfiguration(TinkraConfiguration configuration)
{
    co_await asio::co_spawn(
        m_strand, updateConfigurationOnStrand(std::move(configuration)), asio::use_awaitable);
}

Task<ReconcileResult> MonitoringService::sync(Instant now)
{
    co_return co_await asio::co_spawn(m_strand, syncOnStrand(now), asio::use_awaitable);
}

Task<TinkraConfiguration> MonitoringService::configurationOnStrand()
{
    co_return m_configuration;
}

Task<> MonitoringService::updateConfigurationOnStrand(TinkraConfiguration configuration)
{
    m_configuration = std::move(configuration);
    co_return;
}

Task<ReconcileResult> MonitoringService::syncOnStrand(Instant now)
{
    if (!monitorsAnything(m_configuration))
        co_return co_await runClearingPass();
    co_return co_await runActivePass(now);
}

Task<ReconcileResult> MonitoringService::runActivePass(Instant now)
{
    const auto meetings =
        co_await m_provider->meetings(m_configuration.monitoring.selectedCalendarIDs, now, now + m_horizon);

    // The configuration may have changed while we waited; the newest one decides.
    auto desired = m_engine.desiredAlarms(
        meetings, m_configuration.settings, m_configuration.monitoring.selectedCalendarIDs, now);
    const auto armed = co_await m_scheduler->scheduledAlarmIDs();
    auto result = m_reconciler.reconcile(std::move(desired), armed);

    co_await m_scheduler->cancel(result.toRemove);
    for (const auto& alarm : result.toAdd)
        co_await m_scheduler->schedule(alarm);
    co_return result;
}

Task<ReconcileResult> MonitoringService::runClearingPass()
{
    auto armed = co_await m_scheduler->scheduledAlarmIDs();
    co_await m_scheduler->cancel(armed);
    co_return ReconcileResult{.toAdd = {}, .toRemove = std::move(armed)};
}

}
