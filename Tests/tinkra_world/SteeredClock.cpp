// A preloaded library that shows a program clocks which a test can set while the program runs: real time and
// the time since boot, plus the offsets in the file named by TINKRA_CLOCK (two std::int64_t, nanoseconds),
// which is shared memory. Covers CLOCK_REALTIME as read by clock_gettime(2), gettimeofday(2) and time(2), its
// absolute timers by timerfd_create(2), a set clock's ECANCELED (TFD_TIMER_CANCEL_ON_SET) included, and the
// reading of CLOCK_BOOTTIME, which goes on while a machine sleeps. CLOCK_MONOTONIC, which does not, stays. It
// neither allocates nor looks up symbols, so that it works below the sanitizers' own start-up.

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/timerfd.h>
#include <unistd.h>

namespace {

constexpr std::int64_t kSecond = 1'000'000'000;
constexpr std::size_t kTrackedDescriptors = 1024;

struct Timer {
    std::atomic<bool> onRealTime = false;
    std::atomic<bool> cancelOnSet = false;
    std::atomic<std::int64_t> offset = 0; ///< The clock's offset when the timer was set.
    std::atomic<std::int64_t> target = 0; ///< In nanoseconds of the shown clock; 0 when disarmed.
};

struct Offsets {
    std::atomic<std::int64_t> realTime = 0;
    std::atomic<std::int64_t> bootTime = 0;
};

std::array<Timer, kTrackedDescriptors> g_timers;
std::atomic<const Offsets*> g_offsets = nullptr;

const Offsets& offsets()
{
    const auto* offsets = g_offsets.load();
    if (offsets == nullptr) {
        static const Offsets none;
        offsets = &none;
        if (const char* path = std::getenv("TINKRA_CLOCK")) {
            const auto file = syscall(SYS_openat, AT_FDCWD, path, O_RDONLY | O_CLOEXEC);
            void* memory = mmap(nullptr, sizeof(Offsets), PROT_READ, MAP_SHARED, static_cast<int>(file), 0);
            if (memory != MAP_FAILED)
                offsets = static_cast<const Offsets*>(memory);
            syscall(SYS_close, file);
        }
        g_offsets = offsets;
    }
    return *offsets;
}

std::int64_t toNanoseconds(const timespec& time)
{
    return time.tv_sec * kSecond + time.tv_nsec;
}

timespec toTimespec(std::int64_t nanoseconds)
{
    const auto fraction = ((nanoseconds % kSecond) + kSecond) % kSecond;
    return {.tv_sec = (nanoseconds - fraction) / kSecond, .tv_nsec = fraction};
}

std::int64_t offsetNow()
{
    return offsets().realTime;
}

std::int64_t shownTime(clockid_t clock, std::int64_t offset)
{
    timespec real{};
    syscall(SYS_clock_gettime, clock, &real);
    return toNanoseconds(real) + offset;
}

Timer* trackedTimer(int descriptor)
{
    if (descriptor < 0 || static_cast<std::size_t>(descriptor) >= kTrackedDescriptors)
        return nullptr;
    auto& timer = g_timers.at(static_cast<std::size_t>(descriptor));
    return timer.onRealTime ? &timer : nullptr;
}

int armAgain(int descriptor, Timer& timer, const timespec& interval)
{
    timer.offset = offsetNow();
    itimerspec real{.it_interval = interval, .it_value = {}};
    if (timer.target != 0) {
        // A value of zero would disarm; a moment before 1970 is simply due.
        const auto value = timer.target - timer.offset;
        real.it_value = toTimespec(value > 0 ? value : 1);
    }
    const int flags = TFD_TIMER_ABSTIME | (timer.cancelOnSet ? TFD_TIMER_CANCEL_ON_SET : 0);
    return static_cast<int>(syscall(SYS_timerfd_settime, descriptor, flags, &real, nullptr));
}

}

extern "C" {

int clock_gettime(clockid_t clock, timespec* time) noexcept
{
    if (clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE)
        *time = toTimespec(shownTime(CLOCK_REALTIME, offsetNow()));
    else if (clock == CLOCK_BOOTTIME)
        *time = toTimespec(shownTime(CLOCK_BOOTTIME, offsets().bootTime));
    else
        return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    return 0;
}

int gettimeofday(timeval* __restrict time, void* __restrict) noexcept
{
    const auto now = toTimespec(shownTime(CLOCK_REALTIME, offsetNow()));
    *time = {.tv_sec = now.tv_sec, .tv_usec = now.tv_nsec / 1000};
    return 0;
}

time_t time(time_t* result) noexcept
{
    const auto now = toTimespec(shownTime(CLOCK_REALTIME, offsetNow())).tv_sec;
    if (result != nullptr)
        *result = now;
    return now;
}

int timerfd_create(int clock, int flags) noexcept
{
    const auto descriptor = static_cast<int>(syscall(SYS_timerfd_create, clock, flags));
    if (descriptor >= 0 && static_cast<std::size_t>(descriptor) < kTrackedDescriptors)
        g_timers.at(static_cast<std::size_t>(descriptor)).onRealTime = clock == CLOCK_REALTIME;
    return descriptor;
}

int timerfd_settime(int descriptor, int flags, const itimerspec* fresh, itimerspec* old) noexcept
{
    auto* timer = trackedTimer(descriptor);
    if (timer == nullptr || (flags & TFD_TIMER_ABSTIME) == 0)
        return static_cast<int>(syscall(SYS_timerfd_settime, descriptor, flags, fresh, old));
    timer->cancelOnSet = (flags & TFD_TIMER_CANCEL_ON_SET) != 0;
    timer->target = toNanoseconds(fresh->it_value);
    return armAgain(descriptor, *timer, fresh->it_interval);
}

ssize_t read(int descriptor, void* buffer, size_t size)
{
    const auto count = syscall(SYS_read, descriptor, buffer, size);
    auto* timer = trackedTimer(descriptor);
    const bool wasSet = timer != nullptr && timer->offset != offsetNow();
    if (!wasSet || (count < 0 && errno != ECANCELED))
        return count;
    // The kernel keeps such a timer on its wall-clock target, so re-aim it, as well as reporting the step.
    armAgain(descriptor, *timer, {});
    errno = timer->cancelOnSet ? ECANCELED : EAGAIN;
    return -1;
}
}
