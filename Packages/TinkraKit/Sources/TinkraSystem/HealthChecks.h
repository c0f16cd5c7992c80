#pragma once

#include "TinkraConcurrency/Task.h"

#include <string>
#include <vector>

namespace Tinkra::System {

/// What one look at one service of the machine showed.
struct HealthFinding {
    enum class Level {
        Ok,
        Warning, ///< works, but not everything or not for long
        Failure, ///< alarms may not ring
    };

    std::string subject; ///< what was looked at, "Session bus"
    Level level = Level::Ok;
    std::string finding; ///< one sentence
    std::string remedy; ///< how to mend it, one sentence; empty when there is nothing to mend

    friend bool operator==(const HealthFinding&, const HealthFinding&) = default;
};

/// Looks at the services of the machine that the product needs. Works when every one of them is missing, ends
/// within seconds when one hangs, and does not throw.
class HealthChecks {
public:
    virtual ~HealthChecks() = default;

    /// Everything, in an order that puts causes before consequences.
    virtual Task<std::vector<HealthFinding>> run() = 0;

    /// Whether the service that keeps alarms can be reached; it is started when need be.
    virtual Task<HealthFinding> notificationService() = 0;

    /// Calendar files of which nothing was used when events were last asked for, one sentence each.
    virtual Task<std::vector<std::string>> filesLeftOut() = 0;

    /// Tells the service that keeps alarms that all of them have been armed again, after it had lost some.
    virtual Task<> acknowledgeRearmed() = 0;
};

}
