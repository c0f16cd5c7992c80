#pragma once

#include "WakeHelper/Descriptor.h"

#include <cstdint>
#include <filesystem>
#include <optional>

namespace Tinkra::WakeHelper {

/// Wakes the machine at one time: by a timer of the kernel (CLOCK_REALTIME_ALARM, which needs
/// CAP_WAKE_ALARM), else by the alarm of the real-time clock itself. What is set ends with the helper where
/// the kernel's timer does it.
class WakeAlarmLinux {
public:
    enum class Means { KernelTimer, RealTimeClock, Nothing };

    /// `clock` is the file that takes the real-time clock's alarm.
    explicit WakeAlarmLinux(std::filesystem::path clock);

    Means means() const { return m_means; }

    /// At these seconds since 1970, or not at all. False when the system refuses.
    bool set(std::optional<std::int64_t> seconds);

    /// Becomes readable when the time has come; -1 when no kernel's timer is used.
    int descriptor() const { return m_timer.get(); }
    void acknowledge() const;

private:
    bool setTimer(std::optional<std::int64_t> seconds) const;
    bool setClock(std::optional<std::int64_t> seconds) const;

    std::filesystem::path m_clock;
    Descriptor m_timer;
    Means m_means;
};

}
