#include "TinkraICalendar/CalendarReach.h"

#include <algorithm>

namespace Tinkra::ICalendar {

namespace {

using namespace std::chrono;

/// All that calendars can express.
constexpr UtcSeconds beginningOfTime = sys_days{year{-100} / January / 1};
constexpr UtcSeconds endOfTime = sys_days{year{12'000} / January / 1};

/// Any two clocks differ by less than a day, and a length in days by an hour or so: ample.
constexpr days slack{3};

UtcSeconds onAnyClock(LocalSeconds time)
{
    return std::clamp(UtcSeconds{time.time_since_epoch()}, beginningOfTime, endOfTime);
}

UtcSeconds later(UtcSeconds time, std::int64_t length)
{
    return length < (endOfTime - time).count() ? time + seconds{length} : endOfTime;
}

TimeRange reachOf(const PackedEvents& events, const EventRecord& event)
{
    auto first = event.start;
    auto last = event.start;
    auto length = event.lengthSeconds;
    if (const auto* series = events.series(event)) {
        // Instances that another event moves may go anywhere.
        if (series->splitCount > 0)
            return {beginningOfTime, endOfTime};
        last = std::max(last, series->lastStart);
        for (const auto& extra : events.extras(*series)) {
            first = std::min(first, extra.start);
            last = std::max(last, extra.start);
            length = std::max(length, extra.lengthSeconds);
        }
    }
    return {onAnyClock(first) - slack, later(onAnyClock(last), length) + slack};
}

}

TimeRange reachOf(const PackedEvents& events)
{
    if (events.events().empty())
        return {};
    TimeRange reach{endOfTime + slack, beginningOfTime - slack};
    for (const auto& event : events.events()) {
        const auto own = reachOf(events, event);
        reach.from = std::min(reach.from, own.from);
        reach.to = std::max(reach.to, own.to);
    }
    return reach;
}

}
