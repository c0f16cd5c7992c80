#pragma once

#include <algorithm>
#include <chrono>
#include <optional>

namespace Tinkra::System {

/// Turns any number of changes into at most one notice a second. Computes; whoever owns it waits.
class NoticeBundle {
public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::seconds kInterval{1};

    /// A change at `now` that may be told `delay` later. Gives when to notify, or nothing when a notice
    /// that is at least as early is on its way.
    std::optional<Clock::time_point> changed(Clock::time_point now, Clock::duration delay)
    {
        auto due = now + delay;
        if (m_last)
            due = std::max(due, *m_last + kInterval);
        if (m_due && *m_due <= due)
            return std::nullopt;
        m_due = due;
        return due;
    }

    /// True when a notice is due at `now`; it then counts as given.
    bool takeDue(Clock::time_point now)
    {
        if (!m_due || now < *m_due)
            return false;
        m_due.reset();
        m_last = now;
        return true;
    }

private:
    std::optional<Clock::time_point> m_last;
    std::optional<Clock::time_point> m_due;
};

}
