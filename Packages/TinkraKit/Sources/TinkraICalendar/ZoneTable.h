#pragma once

#include "TinkraICalendar/Zone.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace Tinkra::ICalendar {

/// From `at` on the local clock is `offset` ahead of UTC.
struct ZoneChange {
    UtcSeconds at;
    std::chrono::seconds offset{0};

    friend bool operator==(const ZoneChange&, const ZoneChange&) = default;
};

/// What a zone does after its last listed change.
enum class AfterLastChange : std::uint8_t {
    Stays, ///< the last offset stands
    RepeatsByYear, ///< each year is like the year of the same length and weekdays in 2101...2128
};

/// The first year that is no longer listed in a table that repeats; the 28 years before it hold every kind of
/// Gregorian year, so that what rules such as "the last Sunday of March" do can be read from them.
inline constexpr std::chrono::year kFirstRepeatedYear{2129};

/// A step function of seconds: which of its steps a moment belongs to, found through a bucket per half a
/// year.
class StepIndex {
public:
    StepIndex() = default;
    explicit StepIndex(std::vector<std::int64_t> steps); ///< ascending

    std::size_t stepsUntil(std::int64_t moment) const; ///< how many steps are not after `moment`

private:
    static constexpr int kBucketBits = 24; // 194 days: rarely more than one change in it

    std::vector<std::int64_t> m_steps;
    std::vector<std::uint32_t> m_buckets; // steps before the start of each bucket
};

/// A zone as a list of its changes.
class ZoneTable final : public Zone {
public:
    /// `changes` in any order; of several at the same moment the last one counts.
    ZoneTable(std::string name, std::chrono::seconds initialOffset, std::vector<ZoneChange> changes,
        AfterLastChange after);

    LocalSeconds toLocal(UtcSeconds utc) const override;
    UtcSeconds toUtc(LocalSeconds local) const override;
    const std::string& name() const override { return m_name; }

private:
    std::string m_name;
    AfterLastChange m_after;
    std::vector<std::int32_t> m_offsets; // before the first change, after it, after the second...
    StepIndex m_utcChanges;
    StepIndex m_localChanges;
};

}
