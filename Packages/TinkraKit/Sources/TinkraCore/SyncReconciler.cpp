#include "TinkraCore/SyncReconciler.h"

#include "TinkraCore/Models/FetchAhead.h"
#include "TinkraCore/Models/TextIndex.h"

#include <cstddef>
#include <utility>

namespace Tinkra {

namespace {

// How far ahead the memory is asked for what will be read.
constexpr std::size_t turnsAhead = 12;

std::vector<std::size_t> hashesOf(const std::vector<Text>& texts)
{
    std::vector<std::size_t> hashes(texts.size());
    for (std::size_t turn = 0; turn < texts.size(); ++turn) {
        if (turn + turnsAhead < texts.size())
            fetchAhead(texts[turn + turnsAhead]);
        hashes[turn] = std::hash<Text>{}(texts[turn]);
    }
    return hashes;
}

}

ReconcileResult SyncReconciler::reconcile(
    std::vector<ScheduledAlarm> desired, const std::vector<Text>& currentIDs) const
{
    TextIndex wanted(desired.size());
    std::vector<std::size_t> firstOfEqual(desired.size());
    for (std::size_t place = 0; place < desired.size(); ++place)
        firstOfEqual[place] = wanted.insert(desired[place].id, place);

    const auto hashes = hashesOf(currentIDs);
    ReconcileResult result;
    std::vector<bool> isArmed(desired.size());
    for (std::size_t turn = 0; turn < currentIDs.size(); ++turn) {
        if (turn + 2 * turnsAhead < hashes.size())
            wanted.fetchSlotAhead(hashes[turn + 2 * turnsAhead]);
        if (turn + turnsAhead < hashes.size()) {
            wanted.fetchTextAhead(hashes[turn + turnsAhead]);
            fetchAhead(currentIDs[turn + turnsAhead]);
        }
        if (const auto place = wanted.placeOf(currentIDs[turn], hashes[turn]))
            isArmed[*place] = true;
        else
            result.toRemove.push_back(currentIDs[turn]);
    }

    result.toAdd.reserve(desired.size());
    for (std::size_t place = 0; place < desired.size(); ++place) {
        if (!isArmed[firstOfEqual[place]])
            result.toAdd.push_back(std::move(desired[place]));
    }
    return result;
}

}
