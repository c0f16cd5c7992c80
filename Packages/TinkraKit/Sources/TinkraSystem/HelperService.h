#pragma once

#include "TinkraSystem/ServiceStatus.h"

#include <string_view>

namespace Tinkra::System {

/// The property list that describes the wake helper to the system.
inline constexpr std::string_view kWakeHelperPropertyList = "co.calendarmurkel.wakehelper.plist";

/// The privileged program that wakes the machine. Main thread only.
class HelperService {
public:
    virtual ~HelperService() = default;

    /// Read afresh at each call.
    virtual ServiceStatus status() = 0;

    /// Never prompts the user; throws when the system refuses.
    virtual void registerService() = 0;
};

}
