#pragma once

#include "TinkraCore/Models/ReconcileResult.h"

#include <vector>

namespace Tinkra {

/// Compares the alarms that should be armed with those that are. Identifiers only: a moved meeting is one
/// removal and one addition, a renamed one is left alone.
class SyncReconciler {
public:
    /// Linear in the length of both lists. `desired` becomes `toAdd`: move it in to spare the copy.
    ReconcileResult reconcile(std::vector<ScheduledAlarm> desired, const std::vector<Text>& currentIDs) const;
};

}
