#pragma once

#include "TinkraConcurrency/Continuation.h"

#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace Tinkra {

/// "[a, b]", as lists stand in a log.
std::string listed(const std::vector<std::string>& names);

/// The calls that fakes received, in order; and a gate that keeps calls waiting until the test lets them go.
///
/// One log may serve several fakes, so that the order among them can be seen. Safe to use from any thread.
class CallLog {
public:
    /// For fakes: notes the call, then waits while calls are held.
    Task<> record(std::string call);

    /// Every call so far, whether it waits or not.
    std::vector<std::string> calls() const;

    /// How many calls so far are exactly this.
    std::size_t count(const std::string& call) const;

    void clear();

    /// From now on each call waits until it is let go.
    void hold();

    /// Lets calls through again, those that wait included.
    void letAllGo();

    /// Lets the one go that has waited longest; an error when none waits.
    void letGo();

    /// Lets the one at this place among the waiting go, 0 being the one that has waited longest.
    void letGo(std::size_t index);

    /// The calls that wait now, in the order in which they came.
    std::vector<std::string> waiting() const;

private:
    struct Waiting {
        std::string call;
        Continuation<> continuation;
    };

    mutable std::mutex m_mutex;
    std::vector<std::string> m_calls;
    bool m_isHolding = false;
    std::deque<Waiting> m_waiting;
};

}
