#pragma once

#include "TinkraSystem/PowerAssertions.h"

namespace Tinkra::System {

/// IOKit's power assertions.
class PowerAssertionsMac final : public PowerAssertions {
public:
    std::optional<PowerAssertionID> create(
        std::string_view type, std::uint32_t level, std::string_view name) override;
    void release(PowerAssertionID assertion) override;
};

}
