#pragma once

#include <optional>
#include <string>

namespace Tinkra::NotificationDaemon {

/// `$XDG_STATE_HOME/tinkra`, or `~/.local/state/tinkra`, made and kept private to its owner (0700).
class StateDirectory {
public:
    /// Says in `problem()` why it cannot be used, and never throws.
    StateDirectory();
    ~StateDirectory();
    StateDirectory(const StateDirectory&) = delete;
    StateDirectory& operator=(const StateDirectory&) = delete;

    /// Empty when files can be kept here.
    const std::string& problem() const { return m_problem; }

    std::string file(const std::string& name) const { return m_path + "/" + name; }
    const std::string& path() const { return m_path; }

    /// Waits a moment for another daemon to end; false when it does not.
    bool lock();

private:
    void make();

    std::string m_path;
    std::string m_problem;
    int m_lock = -1;
};

}
