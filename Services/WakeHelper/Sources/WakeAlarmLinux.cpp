#include "WakeHelper/WakeAlarmLinux.h"

#include <fcntl.h>
#include <sys/timerfd.h>

#include <string>
#include <utility>

namespace Tinkra::WakeHelper {

namespace {

bool writeTo(const std::filesystem::path& file, const std::string& text)
{
    const Descriptor opened(::open(file.c_str(), O_WRONLY | O_CLOEXEC));
    return opened && ::write(opened.get(), text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

}

WakeAlarmLinux::WakeAlarmLinux(std::filesystem::path clock)
    : m_clock(std::move(clock))
    , m_timer(::timerfd_create(CLOCK_REALTIME_ALARM, TFD_CLOEXEC | TFD_NONBLOCK))
    , m_means(m_timer                                ? Means::KernelTimer
              : ::access(m_clock.c_str(), W_OK) == 0 ? Means::RealTimeClock
                                                     : Means::Nothing)
{
}

bool WakeAlarmLinux::set(std::optional<std::int64_t> seconds)
{
    switch (m_means) {
    case Means::KernelTimer:
        return setTimer(seconds);
    case Means::RealTimeClock:
        return setClock(seconds);
    case Means::Nothing:
        break;
    }
    return false;
}

void WakeAlarmLinux::acknowledge() const
{
    std::uint64_t count = 0;
    [[maybe_unused]] const auto bytes = ::read(m_timer.get(), &count, sizeof count);
}

bool WakeAlarmLinux::setTimer(std::optional<std::int64_t> seconds) const
{
    itimerspec setting{}; // all zero: disarmed
    setting.it_value.tv_sec = seconds.value_or(0);
    return ::timerfd_settime(m_timer.get(), TFD_TIMER_ABSTIME, &setting, nullptr) == 0;
}

/// The clock takes no new alarm while one is set.
bool WakeAlarmLinux::setClock(std::optional<std::int64_t> seconds) const
{
    return writeTo(m_clock, "0") && (!seconds || writeTo(m_clock, std::to_string(*seconds)));
}

}
