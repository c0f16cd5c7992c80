#pragma once

#include <cstdint>
#include <optional>

namespace Tinkra::NotificationDaemon {

/// Wakes at an instant of the wall clock (an absolute CLOCK_REALTIME timerfd), and whenever that clock is set
/// or the machine resumes (TFD_TIMER_CANCEL_ON_SET).
class AlarmTimer {
public:
    /// Throws std::system_error.
    AlarmTimer();
    ~AlarmTimer();
    AlarmTimer(const AlarmTimer&) = delete;
    AlarmTimer& operator=(const AlarmTimer&) = delete;

    /// Without an instant (seconds since 1970 UTC) it wakes only when the clock is set.
    void arm(std::optional<std::int64_t> instant);

    /// Takes note of a wake-up, so that the descriptor is no longer readable.
    void acknowledge();

    int descriptor() const { return m_descriptor; }

private:
    int m_descriptor;
    std::optional<std::int64_t> m_armed;
};

}
