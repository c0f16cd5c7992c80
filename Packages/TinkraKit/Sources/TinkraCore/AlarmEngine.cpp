#include "TinkraCore/AlarmEngine.h"

#include "TinkraCore/Models/FetchAhead.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <span>
#include <utility>

namespace Tinkra {

namespace {

/// A meeting that wants an alarm. Candidates are sorted and thinned out before any alarm is made, because
/// alarms are large: that halves the time of a pass over many meetings.
struct Candidate {
    Instant fireDate;
    std::size_t hashOfID; // taken while the meeting is at hand
    const Meeting* meeting; // a place in the input, so that comparing two of them tells their order there
};

// How far ahead the memory is asked for what will be read.
constexpr std::size_t turnsForMeeting = 24;
constexpr std::size_t turnsForTexts = 8;

double wholeSecond(const Candidate& candidate)
{
    return std::round(secondsSince1970(candidate.fireDate));
}

std::vector<Candidate> candidatesAmong(const std::vector<Meeting>& meetings, const AlarmSettings& settings,
    const CalendarIDs& monitored, Instant now)
{
    std::vector<Candidate> candidates;
    candidates.reserve(meetings.size());
    for (std::size_t turn = 0; turn < meetings.size(); ++turn) {
        const auto& meeting = meetings[turn];
        if (turn + turnsForTexts < meetings.size()) {
            fetchAhead(meetings[turn + turnsForTexts].id);
            fetchAhead(meetings[turn + turnsForTexts].calendarID);
        }
        if (!monitored.contains(meeting.calendarID))
            continue;
        if (settings.ignoreAllDay && meeting.isAllDay)
            continue;
        const auto fireDate = meeting.start - settings.leadTime;
        if (!(fireDate > now))
            continue;
        candidates.push_back({fireDate, std::hash<Text>{}(meeting.id), &meeting});
    }
    return candidates;
}

/// Of several candidates that ring in one second for one meeting, only the first of the input stays.
void removeTwins(std::span<Candidate> ofOneSecond)
{
    std::vector<Candidate*> byHash;
    for (auto& candidate : ofOneSecond)
        byHash.push_back(&candidate);
    std::ranges::sort(
        byHash, {}, [](const Candidate* each) { return std::pair(each->hashOfID, each->meeting); });

    std::vector<const Candidate*> keptOfHash; // more than one only when different texts share a hash
    for (auto* candidate : byHash) {
        if (!keptOfHash.empty() && keptOfHash.front()->hashOfID != candidate->hashOfID)
            keptOfHash.clear();
        if (std::ranges::any_of(keptOfHash,
                [candidate](const Candidate* kept) { return kept->meeting->id == candidate->meeting->id; }))
            candidate->meeting = nullptr;
        else
            keptOfHash.push_back(candidate);
    }
}

/// An identifier is made of the meeting's and of the whole second, and those of one second stand together
/// once candidates are sorted by fire time.
void keepTheFirstOfEachIdentifier(std::vector<Candidate>& sorted)
{
    for (auto first = sorted.begin(); first != sorted.end();) {
        const auto last = std::find_if(std::next(first), sorted.end(),
            [first](const Candidate& other) { return wholeSecond(other) != wholeSecond(*first); });
        if (std::distance(first, last) > 1)
            removeTwins({first, last});
        first = last;
    }
    std::erase_if(sorted, [](const Candidate& candidate) { return !candidate.meeting; });
}

/// Has the memory fetch first a meeting and then its texts before its turn comes.
void fetchAhead(const std::vector<Candidate>& candidates, std::size_t turn)
{
    if (turn + turnsForMeeting < candidates.size()) {
        const auto* bytes = reinterpret_cast<const char*>(candidates[turn + turnsForMeeting].meeting);
        for (std::size_t line = 0; line < sizeof(Meeting); line += 64)
            __builtin_prefetch(bytes + line);
    }
    if (turn + turnsForTexts < candidates.size()) {
        const auto& meeting = *candidates[turn + turnsForTexts].meeting;
        fetchAhead(meeting.id);
        fetchAhead(meeting.title);
        fetchAhead(meeting.calendarID);
    }
}

}

std::vector<ScheduledAlarm> AlarmEngine::desiredAlarms(const std::vector<Meeting>& meetings,
    const AlarmSettings& settings, const CalendarIDs& monitored, Instant now) const
{
    auto candidates = candidatesAmong(meetings, settings, monitored, now);
    std::ranges::stable_sort(candidates, {}, &Candidate::fireDate);
    keepTheFirstOfEachIdentifier(candidates);

    std::vector<ScheduledAlarm> alarms;
    alarms.reserve(candidates.size());
    for (std::size_t turn = 0; turn < candidates.size(); ++turn) {
        fetchAhead(candidates, turn);
        const auto& [fireDate, hashOfID, meeting] = candidates[turn];
        alarms.push_back({alarmID(meeting->id, fireDate), meeting->id, meeting->title, fireDate,
            meeting->start, meeting->calendarID});
    }
    return alarms;
}

}
