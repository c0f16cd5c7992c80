#pragma once

#include "TinkraSystem/PowerAssertions.h"

#include <memory>

namespace Tinkra::System {

/// Inhibitor locks of logind (org.freedesktop.login1.Manager.Inhibit, what "idle", mode "block"). A lock
/// lasts as long as its descriptor is open, so it ends with the process. Types without a counterpart are
/// refused.
class PowerAssertionsLinux final : public PowerAssertions {
public:
    PowerAssertionsLinux();
    ~PowerAssertionsLinux() override;
    PowerAssertionsLinux(const PowerAssertionsLinux&) = delete;
    PowerAssertionsLinux& operator=(const PowerAssertionsLinux&) = delete;

    std::optional<PowerAssertionID> create(
        std::string_view type, std::uint32_t level, std::string_view name) override;
    void release(PowerAssertionID assertion) override;

private:
    struct Locks;

    std::unique_ptr<Locks> m_locks;
};

}
