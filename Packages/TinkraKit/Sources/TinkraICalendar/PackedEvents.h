#pragma once

#include "TinkraICalendar/CalendarZones.h"
#include "TinkraICalendar/ExpansionLimits.h"
#include "TinkraICalendar/Time.h"
#include "TinkraICalendar/TimeValue.h"
#include "TinkraICalendar/Zone.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Tinkra::ICalendar {

/// How long an event lasts.
struct Length {
    std::int64_t seconds = 0; ///< in all, never negative
    std::int32_t nominalDays = 0; ///< the part of it that counts days on the wall clock
    bool isOnClock =
        false; ///< it leads to a time on the start's clock (DTEND), whatever the hours in between
};

/// One VEVENT.
struct EventRecord {
    LocalSeconds start;
    std::int64_t lengthSeconds = 0;
    std::int32_t lengthDays = 0;
    std::uint32_t text = 0; ///< where its UID begins in the texts; its title follows
    std::uint32_t uidLength = 0;
    std::uint32_t titleLength = 0;
    std::uint32_t series = 0; ///< the position of its series plus 1; 0 when it happens once
    ZoneIndex zone = ZoneIndex::Viewer;
    bool isDate : 1 = false;
    bool hasTitle : 1 = false;
    bool isLengthOnClock : 1 = false;
    bool isDeleted : 1 = false; ///< does not happen itself, but still moves the later instances of its series

    Length length() const { return {lengthSeconds, lengthDays, isLengthOnClock}; }
};

/// What makes an event happen more than once. The fields are parts of the lists of `PackedEvents`.
struct SeriesRecord {
    LocalSeconds lastStart; ///< none starts later than this
    std::uint32_t firstRule = 0;
    std::uint16_t ruleCount = 0; ///< RRULE
    std::uint16_t exclusionRuleCount = 0; ///< EXRULE, after those
    std::uint32_t firstExtra = 0;
    std::uint32_t extraCount = 0; ///< RDATE
    std::uint32_t firstSkip = 0;
    std::uint32_t skipCount = 0; ///< EXDATE and RECURRENCE-ID
    std::uint32_t firstSplit = 0;
    std::uint32_t splitCount = 0; ///< RECURRENCE-ID;RANGE=THISANDFUTURE
};

struct RuleText {
    std::uint32_t text = 0;
    std::uint32_t length = 0;
};

/// An RDATE.
struct ExtraRecord {
    LocalSeconds start;
    std::int64_t lengthSeconds = 0;
    std::int32_t lengthDays = 0;
    ZoneIndex zone = ZoneIndex::Viewer;
    bool hasLength : 1 = false; ///< a PERIOD; else it lasts as long as its event
    bool isLengthOnClock : 1 = false;

    Length length() const { return {lengthSeconds, lengthDays, isLengthOnClock}; }
};

/// How one instance of a series is named: the value of a RECURRENCE-ID or EXDATE. Ordered by time within a
/// form.
class InstanceKey {
public:
    static InstanceKey date(LocalSeconds time)
    {
        return {std::chrono::floor<std::chrono::days>(time), TimeForm::Date};
    }
    static InstanceKey local(LocalSeconds time) { return {time, TimeForm::Local}; }
    static InstanceKey utc(UtcSeconds time) { return {LocalSeconds{time.time_since_epoch()}, TimeForm::Utc}; }

    TimeForm form() const { return static_cast<TimeForm>(m_packed & 3); }
    LocalSeconds time() const { return LocalSeconds{std::chrono::seconds{m_packed >> 2}}; }

    friend auto operator<=>(const InstanceKey&, const InstanceKey&) = default;

private:
    InstanceKey(LocalSeconds time, TimeForm form)
        : m_packed{time.time_since_epoch().count() * 4 + static_cast<std::int64_t>(form)}
    {
    }

    std::int64_t m_packed;
};

/// From this instance on, the instances of the series move with, and take title and length of, another event.
struct SplitRecord {
    InstanceKey from;
    std::uint32_t event = 0;
};

/// The events of one text in a single block of memory: a folder with one file per event holds as many of
/// these.
class PackedEvents {
public:
    /// What goes in.
    struct Parts {
        std::vector<ZonePtr> zones;
        std::vector<EventRecord> events;
        std::vector<SeriesRecord> series;
        std::vector<RuleText> rules;
        std::vector<ExtraRecord> extras;
        std::vector<InstanceKey> skips; ///< sorted within each series
        std::vector<SplitRecord> splits; ///< likewise
        std::string texts;
        std::vector<std::string> notices;
        ExpansionLimits limits;
        bool isWhole = false;
    };

    static std::unique_ptr<const PackedEvents> make(Parts parts);
    ~PackedEvents();
    PackedEvents(const PackedEvents&) = delete;
    PackedEvents& operator=(const PackedEvents&) = delete;

    // The block is longer than the class says.
    static void operator delete(void* block) { ::operator delete(block); }

    std::span<const EventRecord> events() const { return part<EventRecord>(m_eventsAt, m_eventCount); }
    const SeriesRecord* series(const EventRecord& event) const;
    std::span<const RuleText> rules(const SeriesRecord& series) const;
    std::span<const RuleText> exclusionRules(const SeriesRecord& series) const;
    std::span<const ExtraRecord> extras(const SeriesRecord& series) const;
    std::span<const InstanceKey> skips(const SeriesRecord& series) const;
    std::span<const SplitRecord> splits(const SeriesRecord& series) const;

    /// Null for the viewer's; else it lives as long as this.
    const Zone* zone(ZoneIndex index) const;
    std::string_view text(std::uint32_t at, std::uint32_t length) const;
    const std::vector<std::string>& notices() const;
    const ExpansionLimits& limits() const;
    bool isWhole() const { return m_isWhole; }
    std::size_t memoryUse() const;

private:
    /// What most texts do without.
    struct Rarities {
        std::vector<std::string> notices;
        ExpansionLimits limits;
    };

    PackedEvents() = default;
    const Rarities& rarities() const;

    template <typename T> std::span<const T> part(std::uint32_t at, std::size_t count) const
    {
        return {reinterpret_cast<const T*>(reinterpret_cast<const char*>(this) + at), count};
    }

    std::unique_ptr<const Rarities> m_rarities;
    std::uint32_t m_eventCount = 0;
    // Where each list begins, in bytes from the beginning of the block; the zones come right after this
    // object.
    std::uint32_t m_eventsAt = 0;
    std::uint32_t m_seriesAt = 0;
    std::uint32_t m_rulesAt = 0;
    std::uint32_t m_extrasAt = 0;
    std::uint32_t m_skipsAt = 0;
    std::uint32_t m_splitsAt = 0;
    std::uint32_t m_textsAt = 0;
    std::uint32_t m_size = 0;
    std::uint16_t m_zoneCount = 0;
    bool m_isWhole = false;
};

}
