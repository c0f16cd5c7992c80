#pragma once

#include "TinkraSystem/ServiceStatus.h"

namespace Tinkra::System {

/// The application as something that starts when its user logs in. The system's record is the only truth.
/// Main thread only.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    /// Read afresh at each call.
    virtual ServiceStatus status() = 0;

    /// Throws when the system refuses.
    virtual void registerItem() = 0;

    /// Throws when the system refuses.
    virtual void unregisterItem() = 0;
};

}
