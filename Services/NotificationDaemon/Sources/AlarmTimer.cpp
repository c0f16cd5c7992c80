#include "NotificationDaemon/AlarmTimer.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <sys/timerfd.h>
#include <system_error>
#include <unistd.h>

namespace Tinkra::NotificationDaemon {

namespace {

/// A timer that is not armed does not report that the clock was set.
constexpr std::int64_t kTenYears = 10LL * 366 * 86400;

}

AlarmTimer::AlarmTimer()
    : m_descriptor(timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC))
{
    if (m_descriptor < 0)
        throw std::system_error(errno, std::generic_category(), "timerfd_create");
    arm(std::nullopt);
}

AlarmTimer::~AlarmTimer()
{
    close(m_descriptor);
}

void AlarmTimer::arm(std::optional<std::int64_t> instant)
{
    // 0 would disarm it; anything in the past fires at once.
    const auto wanted = std::max<std::int64_t>(instant.value_or(std::time(nullptr) + kTenYears), 1);
    if (instant && m_armed == wanted)
        return;
    if (!instant && m_armed && *m_armed > std::time(nullptr) + kTenYears / 2)
        return;
    itimerspec when{};
    when.it_value.tv_sec = wanted;
    // Fails with ECANCELED when the clock was set a moment ago; it is armed nevertheless.
    if (timerfd_settime(m_descriptor, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &when, nullptr) != 0
        && errno != ECANCELED)
        throw std::system_error(errno, std::generic_category(), "timerfd_settime");
    m_armed = wanted;
}

void AlarmTimer::acknowledge()
{
    std::uint64_t expirations = 0;
    [[maybe_unused]] const auto got = read(m_descriptor, &expirations, sizeof expirations);
    m_armed.reset();
}

}
