#pragma once

#include "TinkraSystem/Workspace.h"
#include "TinkraTestSupport/FakeObservers.h"

#include <vector>

namespace Tinkra::System {

/// A desktop session in memory.
class FakeWorkspace final : public Workspace {
public:
    Observation observeDidWake(std::function<void()> awake) override
    {
        return m_observers.add(std::move(awake));
    }

    bool open(std::string_view address) override
    {
        opened.emplace_back(address);
        return !refusesToOpen;
    }

    std::string fullUserName() override { return userName; }

    void log(std::string_view line) override { logged.emplace_back(line); }

    /// The machine has woken: tells the observers, on this thread.
    void wake() const { m_observers.notify(); }
    std::size_t observerCount() const { return m_observers.count(); }

    std::vector<std::string> opened; ///< the addresses, in order
    std::vector<std::string> logged; ///< the lines, in order
    bool refusesToOpen = false;
    std::string userName = "Mia Murkel";

private:
    FakeObservers m_observers;
};

}
