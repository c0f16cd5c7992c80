#pragma once

#include "TinkraSystem/Workspace.h"

#include <filesystem>

namespace Tinkra::System {

/// The desktop session: logind tells of wakes (org.freedesktop.login1.Manager.PrepareForSleep), xdg-open
/// opens web addresses, the account database has the name (the first field of GECOS), journald takes the log.
class WorkspaceLinux final : public Workspace {
public:
    /// `journal` is journald's socket for its native protocol. Without it the log goes to standard error.
    explicit WorkspaceLinux(std::filesystem::path journal = "/run/systemd/journal/socket");

    /// After a bus that is missing nothing is ever told. Each observation has a connection of its own.
    Observation observeDidWake(std::function<void()> awake) override;

    /// Addresses of the web, and that of the privacy settings, which opens the desktop's own settings of
    /// accounts.
    bool open(std::string_view address) override;

    std::string fullUserName() override;
    void log(std::string_view line) override;

private:
    std::filesystem::path m_journal;
};

}
