#pragma once

#include <string>

namespace Tinkra::NotificationDaemon {

/// Wakes when something happens in the folders of the file that describes the time zone. Where they cannot be
/// watched, the safety tick finds a change.
class ZoneWatch {
public:
    explicit ZoneWatch(const std::string& zoneFile);
    ~ZoneWatch();
    ZoneWatch(const ZoneWatch&) = delete;
    ZoneWatch& operator=(const ZoneWatch&) = delete;

    /// Whether something has happened since the last call: then it is worth a look at the file.
    bool takeNotice();

    int descriptor() const { return m_descriptor; }

private:
    int m_descriptor;
};

}
