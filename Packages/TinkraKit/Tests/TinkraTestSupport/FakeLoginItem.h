#pragma once

#include "TinkraSystem/LoginItem.h"

#include <stdexcept>

namespace Tinkra::System {

/// A login item in memory; not registered at the start.
class FakeLoginItem final : public LoginItem {
public:
    ServiceStatus status() override { return current; }

    void registerItem() override
    {
        ++registrations;
        failIfTold();
        current = statusOnceRegistered;
    }

    void unregisterItem() override
    {
        ++unregistrations;
        failIfTold();
        current = ServiceStatus::NotRegistered;
    }

    ServiceStatus current = ServiceStatus::NotRegistered;
    ServiceStatus statusOnceRegistered = ServiceStatus::Enabled;
    bool refuses = false; ///< from now on both operations throw
    int registrations = 0; ///< how often they were called
    int unregistrations = 0;

private:
    void failIfTold() const
    {
        if (refuses)
            throw std::runtime_error("The login items cannot be changed.");
    }
};

}
