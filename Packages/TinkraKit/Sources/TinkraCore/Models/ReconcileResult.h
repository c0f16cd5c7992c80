#pragma once

#include "TinkraCore/Models/ScheduledAlarm.h"

#include <vector>

namespace Tinkra {

/// What one reconciliation, or one synchronisation pass, adds and removes. Order matters.
struct ReconcileResult {
    std::vector<ScheduledAlarm> toAdd; ///< in the order in which they are to be armed
    std::vector<Text> toRemove; ///< identifiers to cancel

    bool isNoOp() const { return toAdd.empty() && toRemove.empty(); }

    friend bool operator==(const ReconcileResult&, const ReconcileResult&) = default;
};

}
