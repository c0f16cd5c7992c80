#pragma once

#include "TinkraSystem/PowerAssertions.h"

#include <map>
#include <string>

namespace Tinkra::System {

/// Power assertions in memory.
class FakePowerAssertions final : public PowerAssertions {
public:
    struct Assertion {
        std::string type;
        std::uint32_t level = 0;
        std::string name;

        friend bool operator==(const Assertion&, const Assertion&) = default;
    };

    std::optional<PowerAssertionID> create(
        std::string_view type, std::uint32_t level, std::string_view name) override
    {
        ++attempts;
        if (refuses)
            return std::nullopt;
        held.insert_or_assign(++m_last, Assertion{std::string(type), level, std::string(name)});
        return m_last;
    }

    void release(PowerAssertionID assertion) override { held.erase(assertion); }

    std::map<PowerAssertionID, Assertion> held;
    bool refuses = false; ///< from now on none is created
    int attempts = 0; ///< how often one was asked for

private:
    PowerAssertionID m_last = kNoPowerAssertion;
};

}
