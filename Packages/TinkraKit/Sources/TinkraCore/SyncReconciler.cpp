#include "TinkraCore/SyncReconciler.h"

#include "TinkraCore/Models/FetchAhead.h"
#include "TinkraCore/Models/TextIndex.h"

#include <cstddef>
#include <iterator>
#include <utility>

namespace Tinkra {

namespace {

// How far ahead the memory is asked for what will be read.
constexpr std::size_t turnsAhead = 12;

std::vector<std::size_t> hashesOf(const std::vector<ScheduledAlarm>& alarms)
{
    std::vector<std::size_t> hashes;
    hashes.reserve(alarms.size());
    for (const auto& alarm : alarms)
        hashes.push_back(std::hash<Text>{}(alarm.id));
    return hashes;
}

}

ReconcileResult SyncReconciler::reconcile(
    std::vector<ScheduledAlarm> desired, const std::vector<Text>& currentIDs) const
{
    TextIndex armed(currentIDs.size());
    std::vector<std::size_t> firstOfEqual(currentIDs.size());
    for (std::size_t place = 0; place < currentIDs.size(); ++place) {
        if (place + turnsAhead < currentIDs.size())
            fetchAhead(currentIDs[place + turnsAhead]);
        firstOfEqual[place] = armed.insert(currentIDs[place], place);
    }

    const auto hashes = hashesOf(desired);
    std::vector<bool> isWanted(currentIDs.size());
    std::vector<bool> isArmed(desired.size());
    for (std::size_t turn = 0; turn < desired.size(); ++turn) {
        if (turn + 2 * turnsAhead < hashes.size())
            armed.fetchSlotAhead(hashes[turn + 2 * turnsAhead]);
        if (turn + turnsAhead < hashes.size())
            armed.fetchTextAhead(hashes[turn + turnsAhead]);
        if (const auto place = armed.placeOf(desired[turn].id, hashes[turn]))
            isArmed[turn] = isWanted[*place] = true;
    }

    ReconcileResult result;
    for (std::size_t place = 0; place < currentIDs.size(); ++place) {
        if (!isWanted[firstOfEqual[place]])
            result.toRemove.push_back(currentIDs[place]);
    }
    // Alarms are large: they stay in the memory that they came in.
    std::erase_if(desired, [&](const ScheduledAlarm& alarm) {
        return isArmed[static_cast<std::size_t>(std::distance(std::as_const(desired).data(), &alarm))];
    });
    result.toAdd = std::move(desired);
    return result;
}

}
