#pragma once

#include "TinkraSystem/HelperService.h"

#include <optional>
#include <stdexcept>
#include <string>

namespace Tinkra::System {

/// A helper in memory; not registered at the start.
class FakeHelperService final : public HelperService {
public:
    ServiceStatus status() override { return current; }

    void registerService() override
    {
        ++registrations;
        if (refusal)
            throw std::runtime_error(*refusal);
        current = ServiceStatus::Enabled;
    }

    ServiceStatus current = ServiceStatus::NotRegistered;
    std::optional<std::string> refusal; ///< registering throws this
    int registrations = 0; ///< how often it was tried
};

}
