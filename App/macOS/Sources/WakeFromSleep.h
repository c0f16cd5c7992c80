#pragma once

#include "TinkraConcurrency/Clock.h"
#include "TinkraSystem/HelperService.h"
#include "TinkraSystem/SharedFolder.h"
#include "TinkraSystem/Workspace.h"

#include <memory>
#include <optional>

namespace Tinkra {

/// Tells the privileged wake helper, through the shared wake file, when the machine must be awake. Failures
/// are silent: the next schedule tries everything anew.
class WakeFromSleep {
public:
    /// The machine is to be awake this long before an alarm rings.
    static constexpr Seconds lead{60};

    WakeFromSleep(std::shared_ptr<System::SharedFolder> folder, std::shared_ptr<System::HelperService> helper,
        std::shared_ptr<System::Workspace> workspace, std::shared_ptr<Clock> clock);

    /// The next alarm rings then; a date that is not in the future, or none, means that no wake is wanted.
    void schedule(std::optional<Instant> date);

    /// Registers the helper unless it is, and logs what stands in the way.
    void registerHelper();

private:
    void ensureSharedFile();

    std::shared_ptr<System::SharedFolder> m_folder;
    std::shared_ptr<System::HelperService> m_helper;
    std::shared_ptr<System::Workspace> m_workspace;
    std::shared_ptr<Clock> m_clock;
};

}
