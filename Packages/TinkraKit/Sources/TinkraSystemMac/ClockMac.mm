#include "TinkraSystemMac/ClockMac.h"

#include "TinkraConcurrency/SleepQueue.h"
#include "TinkraSystemMac/TimerDelay.h"

#include <ctime>
#include <functional>
#include <utility>

#import <Foundation/Foundation.h>
#include <dispatch/dispatch.h>

/// Hears that somebody has set the wall clock.
@interface TinkraClockObserver : NSObject {
    std::function<void()> _clockWasSet;
}
- (nonnull instancetype)initWithHandler:(std::function<void()>)clockWasSet;
- (void)clockWasSet:(nonnull NSNotification*)notification;
@end

@implementation TinkraClockObserver

- (instancetype)initWithHandler:(std::function<void()>)clockWasSet
{
    self = [super init];
    if (self != nil)
        _clockWasSet = std::move(clockWasSet);
    return self;
}

- (void)clockWasSet:(NSNotification*)notification
{
    _clockWasSet();
}

@end

namespace Tinkra::System {

namespace {

double secondsOf(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// The sleepers by one time, and the timer for the first of them.
class SleepTimer {
public:
    explicit SleepTimer(clockid_t clock)
        : m_clock(clock)
        , m_queue(dispatch_queue_create("co.calendarmurkel.Tinkra.clock", DISPATCH_QUEUE_SERIAL))
        , m_timer(dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0, DISPATCH_TIMER_STRICT, m_queue))
        , m_sleepers([this] { serveSoon(); })
    {
        dispatch_set_context(m_timer, this);
        dispatch_source_set_event_handler_f(m_timer, serve);
        dispatch_activate(m_timer);
    }

    ~SleepTimer()
    {
        dispatch_source_cancel(m_timer);
        dispatch_sync_f(m_queue, nullptr, [](void*) {}); // what is under way ends before its sleepers go
    }
    SleepTimer(const SleepTimer&) = delete;
    SleepTimer& operator=(const SleepTimer&) = delete;

    SleepQueue& sleepers() { return m_sleepers; }
    void serveSoon() { dispatch_async_f(m_queue, this, serve); }

private:
    static void serve(void* context)
    {
        auto& self = *static_cast<SleepTimer*>(context);
        while (self.m_sleepers.wakeFirstDue(secondsOf(self.m_clock))) { }
        if (const auto first = self.m_sleepers.earliest()) {
            const auto delay = timerDelay(first->deadline - secondsOf(self.m_clock));
            dispatch_source_set_timer(
                self.m_timer, dispatch_walltime(nullptr, delay.count()), DISPATCH_TIME_FOREVER, 0);
        } else {
            dispatch_source_set_timer(self.m_timer, DISPATCH_TIME_FOREVER, DISPATCH_TIME_FOREVER, 0);
        }
    }

    clockid_t m_clock;
    dispatch_queue_t m_queue;
    dispatch_source_t m_timer;
    SleepQueue m_sleepers;
};

}

class ClockMac::Timers {
public:
    Timers()
        : m_observer([[TinkraClockObserver alloc] initWithHandler:[this] { byElapsedTime.serveSoon(); }])
    {
        [NSNotificationCenter.defaultCenter addObserver:m_observer
                                               selector:@selector(clockWasSet:)
                                                   name:NSSystemClockDidChangeNotification
                                                 object:nil];
    }

    ~Timers() { [NSNotificationCenter.defaultCenter removeObserver:m_observer]; }
    Timers(const Timers&) = delete;
    Timers& operator=(const Timers&) = delete;

    SleepTimer byWallClock{CLOCK_REALTIME};
    SleepTimer byElapsedTime{CLOCK_MONOTONIC_RAW};

private:
    TinkraClockObserver* _Nonnull m_observer;
};

ClockMac::ClockMac()
    : m_timers(std::make_unique<Timers>())
{
}

ClockMac::~ClockMac() = default;

Instant ClockMac::now() const
{
    return instantAt(secondsOf(CLOCK_REALTIME));
}

Task<> ClockMac::sleepUntil(Instant deadline, std::stop_token stop)
{
    if (deadline > now())
        co_await m_timers->byWallClock.sleepers().sleep(secondsSince1970(deadline), std::move(stop));
}

Task<> ClockMac::sleepFor(Seconds duration, std::stop_token stop)
{
    if (duration > Seconds{0})
        co_await m_timers->byElapsedTime.sleepers().sleep(
            secondsOf(CLOCK_MONOTONIC_RAW) + duration.count(), std::move(stop));
}

}
