#pragma once

#include "NotificationDaemon/LocalZone.h"

#include <string>

namespace Tinkra::NotificationDaemon {

/// The zone of the C library: the variable TZ, else /etc/localtime. UTC when there is neither.
class SystemZone final : public LocalZone {
public:
    SystemZone();

    std::int64_t utcOffset(std::int64_t instant) const override;

    /// Reads the zone again if its file was replaced, or changed; true when it was.
    bool reload();

    /// The file that describes the zone, for whoever watches it. Empty when TZ holds a rule instead of a
    /// name.
    const std::string& file() const { return m_file; }

private:
    std::string m_file;
    std::string m_stamp;
};

}
