#pragma once

#include "TinkraICalendar/Time.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Tinkra::ICalendar {

/// The offsets of one time zone, through its history and future. Immutable, safe to share between threads.
class Zone {
public:
    virtual ~Zone() = default;

    virtual LocalSeconds toLocal(UtcSeconds utc) const = 0;

    /// A local time that occurs twice means its first occurrence; one that is skipped counts with the offset
    /// in force before the gap, so it moves forward by the gap's length (RFC 5545, section 3.3.5).
    virtual UtcSeconds toUtc(LocalSeconds local) const = 0;

    /// The IANA name, "UTC", or the TZID of the file's own definition.
    virtual const std::string& name() const = 0;
};

using ZonePtr = std::shared_ptr<const Zone>;

ZonePtr utcZone();

/// The zone of this name: an IANA name first (in any case, and with prefixes such as
/// "/freeassociation.sourceforge.net/Europe/Berlin"), then a Windows name. Nothing when neither knows it.
/// Zones are made once per process.
ZonePtr findZone(std::string_view tzid);

/// The zone that a text for people most likely means, such as "(UTC+01:00) Amsterdam, Berlin, Bern" or
/// "GMT+0200"; nothing when it names neither a known city nor an offset. A guess: a definition in the file is
/// better, so ask only when findZone knows nothing and the file defines no zone of this name.
ZonePtr guessZone(std::string_view displayName);

/// Looks whether the machine's zone data was updated or TZDIR names another folder, and if so has zones that
/// are found from now on read afresh; zones in use, those of calendars that were read among them, stay as
/// they are. Gives a number that is another one after each such change. For long-lived processes, once a
/// query: it costs one look at one folder.
std::uint64_t refreshZones();

/// The zone of the machine's user now (TZ, else /etc/localtime), read afresh: UTC when the machine does not
/// know.
ZonePtr viewerZone();

/// The same, but nothing when the machine does not know.
ZonePtr knownViewerZone();

/// One STANDARD or DAYLIGHT part of a VTIMEZONE (RFC 5545, section 3.6.5).
struct Observance {
    LocalSeconds start;
    std::chrono::seconds offsetFrom{0};
    std::chrono::seconds offsetTo{0};
    std::string rule; ///< the RRULE's value; empty when there is none
    std::vector<LocalSeconds> additionalOnsets; ///< RDATEs
};

/// The zone that a file defines itself; nothing when it has no observance. Before the first onset the zone
/// has that onset's `offsetFrom`.
ZonePtr makeZone(std::string tzid, std::vector<Observance> observances);

}
