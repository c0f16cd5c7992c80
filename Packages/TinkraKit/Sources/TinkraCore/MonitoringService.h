#pragma once

#include "TinkraCore/AlarmEngine.h"
#include "TinkraCore/Models/TinkraConfiguration.h"
#include "TinkraCore/Protocols/AlarmScheduler.h"
#include "TinkraCore/Protocols/CalendarProvider.h"
#include "TinkraCore/SyncReconciler.h"

#include <asio/strand.hpp>

#include <memory>

namespace Tinkra {

/// Runs one synchronisation pass on demand: fetches meetings, computes the alarms, reconciles them with
/// those that are armed, cancels the stale ones and arms the missing ones.
///
/// An actor: its state is touched on its own strand alone, one step at a time, and it is re-entrant at every
/// await: while a pass waits for a port, the configuration may change and a second pass may run. The
/// operations may be awaited from any executor; the caller resumes on its own. The service must outlive
/// its pending operations.
class MonitoringService {
public:
    /// `executor` carries the strand. Construction starts nothing.
    MonitoringService(std::shared_ptr<CalendarProvider> provider, std::shared_ptr<AlarmScheduler> scheduler,
        TinkraConfiguration configuration, Seconds horizon, Executor executor);

    /// A copy of the configuration that the next step of a pass would read.
    Task<TinkraConfiguration> configuration();

    /// Replaces the configuration. Starts no pass, though a pass that waits for meetings will use it.
    Task<> updateConfiguration(TinkraConfiguration configuration);

    /// One pass; `now` counts as the present. Gives what was cancelled and armed. An error of a port ends
    /// the pass and reaches the caller unchanged; what was done before it stays done.
    Task<ReconcileResult> sync(Instant now);

private:
    Task<TinkraConfiguration> configurationOnStrand();
    Task<> updateConfigurationOnStrand(TinkraConfiguration configuration);
    Task<ReconcileResult> syncOnStrand(Instant now);
    Task<ReconcileResult> runActivePass(Instant now);
    Task<ReconcileResult> runClearingPass();

    std::shared_ptr<CalendarProvider> m_provider;
    std::shared_ptr<AlarmScheduler> m_scheduler;
    AlarmEngine m_engine;
    SyncReconciler m_reconciler;
    Seconds m_horizon;
    TinkraConfiguration m_configuration;
    asio::strand<Executor> m_strand;
};

}
