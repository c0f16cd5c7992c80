#pragma once

#include "TinkraSystem/Workspace.h"

namespace Tinkra::System {

/// NSWorkspace, and the system log through NSLog.
class WorkspaceMac final : public Workspace {
public:
    Observation observeDidWake(std::function<void()> awake) override;
    bool open(std::string_view address) override;
    std::string fullUserName() override;
    void log(std::string_view line) override;
};

}
