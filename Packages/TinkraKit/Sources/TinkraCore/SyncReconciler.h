#pragma once

#include "TinkraCore/Models/ReconcileResult.h"

#include <vector>

namespace Tinkra {

/// Compares the alarms that should be armed with those that are. Identifiers only: a moved meeting is one
/// removal and one addition, a renamed one is left alone.
class SyncReconciler {
public:
    ReconcileResult reconcile(
        const std::vector<ScheduledAlarm>& desired, const std::vector<Text>& currentIDs) const;
};

}
