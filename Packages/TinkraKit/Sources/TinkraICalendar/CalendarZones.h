#pragma once

#include "TinkraICalendar/Notices.h"
#include "TinkraICalendar/Zone.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Tinkra::ICalendar {

/// Names a zone of one text. The first two are the same in every text.
enum class ZoneIndex : std::uint16_t {
    Viewer = 0, ///< floating times
    Utc = 1,
};

/// The zones that one text refers to. A zone is known by its IANA name, else by its Windows name, else by the
/// text's own VTIMEZONE, which may follow the events, else by what its name says to people, else it is that
/// of X-WR-TIMEZONE, else the viewer's.
class CalendarZones {
public:
    /// The index for a TZID, read on `line` in the VCALENDAR with this number.
    ZoneIndex indexOf(std::string_view tzid, std::uint32_t calendar, std::size_t line);

    /// `definition` is the text of a VTIMEZONE; it must outlive `resolve`.
    void define(std::uint32_t calendar, std::string_view definition);

    /// X-WR-TIMEZONE: the zone in which the floating times of a calendar are meant.
    void setDefault(std::uint32_t calendar, ZoneIndex zone);

    /// Settles every index; to be called once, after reading.
    void resolve(Notices& notices);

    /// The zone of floating times.
    ZoneIndex defaultOf(std::uint32_t calendar) const;

    /// The index under which a zone is found now: `Viewer` for one that nobody knows.
    ZoneIndex settled(ZoneIndex index) const;

    /// Nothing for the viewer's zone.
    ZonePtr zone(ZoneIndex index) const;

    /// The zones from the first index after `Utc` on.
    const std::vector<ZonePtr>& named() const { return m_zones; }

private:
    struct Pending {
        std::string tzid;
        std::uint32_t calendar = 0;
        std::size_t line = 0;
        ZoneIndex index = ZoneIndex::Viewer;
    };

    ZoneIndex add(ZonePtr zone);
    void resolveDefinitions();
    void settle(ZoneIndex index, ZonePtr zone);

    std::string m_lastName;
    std::uint32_t m_lastCalendar = 0;
    ZoneIndex m_lastIndex = ZoneIndex::Viewer;
    bool m_hasLast = false;
    bool m_isFull = false;
    std::vector<ZonePtr> m_zones;
    std::map<std::string, ZoneIndex, std::less<>> m_known;
    std::map<std::pair<std::uint32_t, std::string>, ZoneIndex> m_unknown;
    std::vector<Pending> m_pending;
    std::vector<std::pair<std::uint32_t, std::string_view>> m_definitions;
    std::map<std::uint32_t, ZoneIndex> m_defaults;
};

}
