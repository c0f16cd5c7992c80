#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace Tinkra::System {

using PowerAssertionID = std::uint32_t;

/// Stands for no assertion; no assertion has this identifier (kIOPMNullAssertionID).
inline constexpr PowerAssertionID kNoPowerAssertion = 0;

/// The type of an assertion that keeps an idle machine awake (kIOPMAssertionTypePreventUserIdleSystemSleep).
inline constexpr std::string_view kPreventUserIdleSystemSleep = "PreventUserIdleSystemSleep";

/// The level of an assertion that is in force (kIOPMAssertionLevelOn).
inline constexpr std::uint32_t kPowerAssertionLevelOn = 255;

/// Holds the machine's power management back. What is held ends with the process at the latest. Main thread
/// only; no call waits longer than a second for a system that does not answer.
class PowerAssertions {
public:
    virtual ~PowerAssertions() = default;

    /// Nothing when the system refuses, or cannot be asked. `name` is what the system shows as the reason.
    virtual std::optional<PowerAssertionID> create(
        std::string_view type, std::uint32_t level, std::string_view name) = 0;

    /// Unknown identifiers are ignored.
    virtual void release(PowerAssertionID assertion) = 0;
};

}
