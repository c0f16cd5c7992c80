#pragma once

#include "TinkraICalendar/Calendar.h"
#include "TinkraICalendar/Notices.h"
#include "TinkraICalendar/PackedEvents.h"
#include "TinkraICalendar/RecurrenceRule.h"
#include "TinkraICalendar/RuleExpansion.h"
#include "TinkraICalendar/WorkTimer.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tinkra::ICalendar {

/// One walk over packed events: every occurrence that overlaps a range.
class OccurrenceQuery {
public:
    using Sink = std::function<void(const Occurrence&)>;

    OccurrenceQuery(const PackedEvents& events, TimeRange range, ZonePtr viewer, const Sink& sink,
        const ExpansionLimits& limits);

    /// What was given up, one sentence each.
    std::vector<std::string> run();

private:
    /// One instance of a series.
    struct Instance {
        UtcSeconds utc;
        LocalSeconds local; ///< on the clock of the series, before a skipped time was moved
        const ExtraRecord* extra = nullptr; ///< the RDATE of type PERIOD that it comes from
    };

    /// The series at hand.
    struct Series {
        const EventRecord& event;
        const SeriesRecord& record;
        const Zone* zone;
        Length length;
        TimeRange range; ///< in which instances can start that matter
        std::chrono::nanoseconds began; ///< on the timer
    };

    bool isFirstAt(UtcSeconds utc);
    std::optional<RecurrenceRule> parsedRule(const RuleText& rule) const;
    static SeriesStart startOf(const Series& series);
    void addSingle(const EventRecord& event);
    void addSeries(const EventRecord& event, const SeriesRecord& record);
    bool isOutOfReach(const EventRecord& event, const SeriesRecord& record) const;
    TimeRange reach(const Series& series) const;
    std::vector<Instance> instancesOf(const Series& series);
    bool expand(const Series& series, const RuleText& rule, std::size_t most,
        const std::function<void(const RuleInstance&)>& sink);
    void addExtras(const Series& series, std::vector<Instance>& instances) const;
    void exclude(const Series& series, const RuleText& rule, std::vector<Instance>& instances);

    void giveInstance(const Series& series, const Instance& instance);
    void giveMoved(const Series& series, const SplitRecord& split, const Instance& instance);
    bool isSkipped(const Series& series, const Instance& instance) const;
    const SplitRecord* splitFor(const SeriesRecord& record, const Instance& instance) const;
    std::chrono::seconds shiftOf(const SplitRecord& split, const EventRecord& event) const;

    const Zone& zoneOf(const EventRecord& event) const;
    Length exactLength(const EventRecord& event) const;
    UtcSeconds endOf(
        const EventRecord& event, const Length& length, LocalSeconds local, UtcSeconds utc) const;
    void give(const EventRecord& event, UtcSeconds start, UtcSeconds end) const;
    void noteGivenUp(const EventRecord& event, std::string_view what);

    const PackedEvents& m_events;
    TimeRange m_range;
    ZonePtr m_viewer;
    const ExpansionLimits& m_limits;
    const Sink& m_sink;
    WorkTimer m_timer;
    bool m_hasMetSeries = false;
    Notices m_notices;
    std::size_t m_givenOfSeries = 0;
    std::vector<UtcSeconds> m_given; ///< by the series at hand
};

}
