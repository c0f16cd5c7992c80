#include "TinkraCore/SyncReconciler.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>

namespace Tinkra {

ReconcileResult SyncReconciler::reconcile(
    const std::vector<ScheduledAlarm>& desired, const std::vector<Text>& currentIDs) const
{
    const std::unordered_set<Text> armed(currentIDs.begin(), currentIDs.end());
    std::unordered_set<Text> wanted;
    for (const auto& alarm : desired)
        wanted.insert(alarm.id);

    ReconcileResult result;
    std::ranges::copy_if(desired, std::back_inserter(result.toAdd),
        [&armed](const ScheduledAlarm& alarm) { return !armed.contains(alarm.id); });
    std::ranges::copy_if(currentIDs, std::back_inserter(result.toRemove),
        [&wanted](const Text& id) { return !wanted.contains(id); });
    return result;
}

}
