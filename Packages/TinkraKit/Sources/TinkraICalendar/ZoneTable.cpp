#include "TinkraICalendar/ZoneTable.h"

#include <algorithm>
#include <array>

namespace Tinkra::ICalendar {

namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::January;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::weekday;
using std::chrono::year;
using std::chrono::year_month_day;

sys_days newYear(year of)
{
    return sys_days{of / January / 1};
}

constexpr UtcSeconds kFirstChange{sys_days{year{-1} / 1 / 1}};
constexpr UtcSeconds kLastChange{sys_days{year{10'001} / 1 / 1}};
const std::int64_t kRepeatsFrom = newYear(kFirstRepeatedYear).time_since_epoch() / seconds{1};

/// The listed year that has the same days as the year `cycle` years after 2000.
year likeYear(std::size_t cycle)
{
    static const auto likes = [] {
        std::array<year, 400> found{};
        for (int i = 0; i < 400; ++i) {
            const year wanted{2000 + i};
            for (year like = kFirstRepeatedYear - std::chrono::years{28}; like < kFirstRepeatedYear; ++like) {
                if (like.is_leap() == wanted.is_leap() && weekday{newYear(like)} == weekday{newYear(wanted)})
                    found[static_cast<std::size_t>(i)] = like;
            }
        }
        return found;
    }();
    return likes[cycle];
}

/// Seconds to take away from `moment` to come to the same day of a like year that is listed.
std::int64_t distanceToLikeYear(std::int64_t moment)
{
    const auto day = floor<days>(std::chrono::sys_seconds{seconds{moment}});
    const year of = year_month_day{day}.year();
    const auto cycle = static_cast<std::size_t>((static_cast<int>(of) % 400 + 400) % 400);
    return (newYear(of) - newYear(likeYear(cycle))) / seconds{1};
}

}

StepIndex::StepIndex(std::vector<std::int64_t> steps)
    : m_steps(std::move(steps))
{
    if (m_steps.empty())
        return;
    const auto count = static_cast<std::size_t>((m_steps.back() - m_steps.front()) >> kBucketBits) + 2;
    m_buckets.resize(count);
    std::size_t before = 0;
    for (std::size_t bucket = 0; bucket < count; ++bucket) {
        const auto start = m_steps.front() + (static_cast<std::int64_t>(bucket) << kBucketBits);
        while (before < m_steps.size() && m_steps[before] < start)
            ++before;
        m_buckets[bucket] = static_cast<std::uint32_t>(before);
    }
}

std::size_t StepIndex::stepsUntil(std::int64_t moment) const
{
    if (m_steps.empty() || moment < m_steps.front())
        return 0;
    if (moment >= m_steps.back())
        return m_steps.size();
    const auto bucket = static_cast<std::size_t>((moment - m_steps.front()) >> kBucketBits);
    const auto first = m_steps.begin() + m_buckets[bucket];
    const auto last = m_steps.begin() + m_buckets[bucket + 1];
    return static_cast<std::size_t>(std::upper_bound(first, last, moment) - m_steps.begin());
}

ZoneTable::ZoneTable(
    std::string name, seconds initialOffset, std::vector<ZoneChange> changes, AfterLastChange after)
    : m_name(std::move(name))
    , m_after(after)
{
    const auto isOutside = [](const ZoneChange& change) {
        return change.at < kFirstChange || change.at >= kLastChange;
    };
    std::erase_if(changes, isOutside); // a damaged file; the years that count are before 10000
    std::stable_sort(changes.begin(), changes.end(), [](auto& a, auto& b) { return a.at < b.at; });

    std::vector<std::int64_t> utcSteps;
    std::vector<std::int64_t> localSteps;
    const auto offsetOf = [](seconds offset) { return static_cast<std::int32_t>(offset.count()); };
    m_offsets.push_back(offsetOf(initialOffset));
    for (std::size_t i = 0; i < changes.size(); ++i) {
        const bool isReplaced = i + 1 < changes.size() && changes[i + 1].at == changes[i].at;
        const auto before = m_offsets.back();
        const auto offset = offsetOf(changes[i].offset);
        if (isReplaced || offset == before)
            continue;
        const auto at = changes[i].at.time_since_epoch().count();
        // The new offset begins on the local clock where the skipped time ends, or where the repeated time
        // has passed for the first time. Changes closer together than the clock moves must not cross.
        const auto local = at + std::max(before, offset);
        utcSteps.push_back(at);
        localSteps.push_back(localSteps.empty() ? local : std::max(local, localSteps.back()));
        m_offsets.push_back(offset);
    }
    m_utcChanges = StepIndex(std::move(utcSteps));
    m_localChanges = StepIndex(std::move(localSteps));
}

LocalSeconds ZoneTable::toLocal(UtcSeconds utc) const
{
    auto moment = utc.time_since_epoch().count();
    if (moment >= kRepeatsFrom && m_after == AfterLastChange::RepeatsByYear)
        moment -= distanceToLikeYear(moment);
    return LocalSeconds{utc.time_since_epoch() + seconds{m_offsets[m_utcChanges.stepsUntil(moment)]}};
}

UtcSeconds ZoneTable::toUtc(LocalSeconds local) const
{
    auto moment = local.time_since_epoch().count();
    if (moment >= kRepeatsFrom && m_after == AfterLastChange::RepeatsByYear)
        moment -= distanceToLikeYear(moment);
    return UtcSeconds{local.time_since_epoch() - seconds{m_offsets[m_localChanges.stepsUntil(moment)]}};
}

}
