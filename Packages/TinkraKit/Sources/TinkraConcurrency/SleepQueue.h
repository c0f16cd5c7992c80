#pragma once

#include "TinkraConcurrency/Continuation.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>

namespace Tinkra {

/// The coroutines that sleep on one clock, in the order in which they are to wake: by deadline, and those of
/// equal deadline in the order in which they went to sleep. Safe to use from any thread. For clocks alone.
class SleepQueue {
public:
    /// When a sleeper is due. `order` counts sleepers over all queues of the process.
    struct Place {
        double deadline = 0;
        std::uint64_t order = 0;

        friend auto operator<=>(const Place&, const Place&) = default;
    };

    /// `earliestChanged` is called, outside the lock, after somebody lay down before all others.
    explicit SleepQueue(std::function<void()> earliestChanged = {});
    /// Destroys those who still sleep where they stand, through their executors, which must be there yet.
    ~SleepQueue();
    SleepQueue(const SleepQueue&) = delete;
    SleepQueue& operator=(const SleepQueue&) = delete;

    /// Sleeps until it is woken, or until `stop` is stopped, whichever comes first. A sleeper whose token is
    /// stopped leaves the queue at once.
    Task<> sleep(double deadline, std::stop_token stop);

    /// The place of the sleeper that is to wake first.
    std::optional<Place> earliest() const;

    /// Wakes the first sleeper if its deadline is not after `now`; false when nobody is due.
    bool wakeFirstDue(double now);

    std::size_t count() const;

private:
    struct Leave;
    struct LieDown;
    struct Sleepers {
        mutable std::mutex mutex;
        std::map<Place, Continuation<>> byPlace;
    };

    // Shared with the stop callbacks of sleepers, which may run while the clock goes.
    std::shared_ptr<Sleepers> m_sleepers = std::make_shared<Sleepers>();
    std::function<void()> m_earliestChanged;
};

}
