#include "TinkraSystemLinux/ClockLinux.h"

#include "TinkraConcurrency/SleepQueue.h"
#include "TinkraSystemLinux/FileDescriptor.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <ctime>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

namespace Tinkra::System {

namespace {

double secondsOf(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

FileDescriptor opened(int descriptor)
{
    if (descriptor < 0)
        throw std::system_error(errno, std::system_category(), "the clock cannot make a timer");
    return FileDescriptor{descriptor};
}

/// Empties a descriptor's counter. Why it became readable does not matter: an expiry, a clock that was set
/// (ECANCELED), or nothing at all; whoever asks looks at the time anew.
void drain(const FileDescriptor& descriptor)
{
    std::uint64_t count = 0;
    [[maybe_unused]] const auto bytes = read(descriptor.get(), &count, sizeof count);
}

/// A deadline as timerfd_settime(2) takes it: rounded up, so that the timer is never early, kept within what
/// the kernel can count, and never zero, which would disarm it.
timespec timespecOf(double deadline)
{
    constexpr double furthest = 9e9; // the year 2255; the kernel ends in 2262
    const double seconds = std::clamp(deadline, 0.0, furthest);
    const double whole = std::floor(seconds);
    const auto nanoseconds = static_cast<long>(std::ceil((seconds - whole) * 1e9));
    timespec time{.tv_sec = static_cast<time_t>(whole), .tv_nsec = std::max(nanoseconds, 1L)};
    if (time.tv_nsec >= 1'000'000'000) {
        time.tv_sec += 1;
        time.tv_nsec = 0;
    }
    return time;
}

}

/// A queue of sleepers for each of the two times, a timer for the first of each, and the thread that waits.
class ClockLinux::Timers {
public:
    Timers()
        : m_wallTimer(opened(timerfd_create(CLOCK_REALTIME, TFD_CLOEXEC | TFD_NONBLOCK)))
        , m_elapsedTimer(opened(timerfd_create(CLOCK_BOOTTIME, TFD_CLOEXEC | TFD_NONBLOCK)))
        , m_changed(opened(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)))
        , m_byWallClock([this] { signal(); })
        , m_byElapsedTime([this] { signal(); })
        , m_thread([this] { serve(); })
    {
    }

    ~Timers()
    {
        m_isEnding = true;
        signal();
        m_thread.join();
    }
    Timers(const Timers&) = delete;
    Timers& operator=(const Timers&) = delete;

    SleepQueue& byWallClock() { return m_byWallClock; }
    SleepQueue& byElapsedTime() { return m_byElapsedTime; }

private:
    void signal() const
    {
        const std::uint64_t one = 1;
        [[maybe_unused]] const auto bytes = write(m_changed.get(), &one, sizeof one);
    }

    void serve()
    {
        while (!m_isEnding) {
            arm(m_wallTimer, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, m_byWallClock.earliest());
            arm(m_elapsedTimer, TFD_TIMER_ABSTIME, m_byElapsedTime.earliest());
            waitForAny({m_wallTimer.get(), m_elapsedTimer.get(), m_changed.get()});
            drain(m_wallTimer);
            drain(m_elapsedTimer);
            drain(m_changed);
            while (m_byWallClock.wakeFirstDue(secondsOf(CLOCK_REALTIME))) { }
            while (m_byElapsedTime.wakeFirstDue(secondsOf(CLOCK_BOOTTIME))) { }
        }
    }

    static void arm(const FileDescriptor& timer, int flags, const std::optional<SleepQueue::Place>& first)
    {
        itimerspec setting{}; // all zero: disarmed
        if (first)
            setting.it_value = timespecOf(first->deadline);
        timerfd_settime(timer.get(), flags, &setting, nullptr);
    }

    static void waitForAny(std::array<int, 3> descriptors)
    {
        std::array<pollfd, 3> ready{};
        std::ranges::transform(descriptors, ready.begin(), [](int each) { return pollfd{each, POLLIN, 0}; });
        poll(ready.data(), ready.size(), -1);
    }

    FileDescriptor m_wallTimer;
    FileDescriptor m_elapsedTimer;
    FileDescriptor m_changed;
    std::atomic<bool> m_isEnding = false;
    SleepQueue m_byWallClock; // deadlines in seconds since 1970
    SleepQueue m_byElapsedTime; // deadlines in seconds since the machine started
    std::thread m_thread; // last, because it uses all of the above
};

ClockLinux::ClockLinux()
    : m_timers(std::make_unique<Timers>())
{
}

ClockLinux::~ClockLinux() = default;

Instant ClockLinux::now() const
{
    return instantAt(secondsOf(CLOCK_REALTIME));
}

Task<> ClockLinux::sleepUntil(Instant deadline, std::stop_token stop)
{
    if (deadline > now())
        co_await m_timers->byWallClock().sleep(secondsSince1970(deadline), std::move(stop));
}

Task<> ClockLinux::sleepFor(Seconds duration, std::stop_token stop)
{
    if (duration > Seconds{0})
        co_await m_timers->byElapsedTime().sleep(
            secondsOf(CLOCK_BOOTTIME) + duration.count(), std::move(stop));
}

}
