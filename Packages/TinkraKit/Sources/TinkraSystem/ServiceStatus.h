#pragma once

namespace Tinkra::System {

/// How far a service has been registered with the system. The values are the platform's
/// (SMAppServiceStatus).
enum class ServiceStatus {
    NotRegistered = 0,
    Enabled = 1,
    RequiresApproval = 2, ///< the user, or an administrator, has to allow it
    NotFound = 3,
};

}
