#pragma once

#include "TinkraSystem/Observation.h"

#include <functional>
#include <string>
#include <string_view>

namespace Tinkra::System {

/// The desktop session around the application. No call throws.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// Calls `awake` after each time that the machine has slept, on a thread of its own, until the result is
    /// dropped. Where the system does not tell, it is never called.
    [[nodiscard]] virtual Observation observeDidWake(std::function<void()> awake) = 0;

    /// Opens an address in the program that the user has chosen for it; false when it could not be handed on.
    virtual bool open(std::string_view address) = 0;

    /// The user's own name in full; the account's name when there is none.
    virtual std::string fullUserName() = 0;

    /// Writes one line to the system log. Safe to use from any thread.
    virtual void log(std::string_view line) = 0;
};

}
