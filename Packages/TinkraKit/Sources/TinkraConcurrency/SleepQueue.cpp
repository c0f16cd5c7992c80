#include "TinkraConcurrency/SleepQueue.h"

#include <atomic>
#include <utility>

namespace Tinkra {

namespace {

std::uint64_t nextOrder()
{
    static std::atomic<std::uint64_t> order = 0;
    return order++;
}

}

SleepQueue::SleepQueue(std::function<void()> earliestChanged)
    : m_earliestChanged(std::move(earliestChanged))
{
}

SleepQueue::~SleepQueue()
{
    // A sleeper's frame holds the map that holds the sleeper: only emptying it breaks the circle.
    std::unique_lock lock(m_sleepers->mutex);
    const auto sleepers = std::exchange(m_sleepers->byPlace, {});
    lock.unlock();
}

/// Takes a sleeper out of the queue when its token is stopped.
struct SleepQueue::Leave {
    std::shared_ptr<Sleepers> sleepers;
    Place place;

    void operator()() const
    {
        std::unique_lock lock(sleepers->mutex);
        const auto sleeper = sleepers->byPlace.extract(place);
        lock.unlock();
        if (sleeper)
            sleeper.mapped().resume();
    }
};

/// Puts a sleeper into the queue once it is suspended.
struct SleepQueue::LieDown {
    SleepQueue& queue;
    Place place;
    std::stop_token stop;
    std::optional<std::stop_callback<Leave>>& leaveOnStop;

    void operator()(Continuation<> continuation) const
    {
        const auto sleepers = queue.m_sleepers;
        std::unique_lock lock(sleepers->mutex);
        const auto isFirst =
            sleepers->byPlace.emplace(place, std::move(continuation)).first == sleepers->byPlace.begin();
        lock.unlock();
        leaveOnStop.emplace(stop, Leave{sleepers, place});
        if (isFirst && queue.m_earliestChanged)
            queue.m_earliestChanged();
    }
};

Task<> SleepQueue::sleep(double deadline, std::stop_token stop)
{
    if (stop.stop_requested())
        co_return;
    std::optional<std::stop_callback<Leave>> leaveOnStop;
    co_await suspend(LieDown{*this, {deadline, nextOrder()}, std::move(stop), leaveOnStop});
}

std::optional<SleepQueue::Place> SleepQueue::earliest() const
{
    const std::lock_guard lock(m_sleepers->mutex);
    if (m_sleepers->byPlace.empty())
        return std::nullopt;
    return m_sleepers->byPlace.begin()->first;
}

bool SleepQueue::wakeFirstDue(double now)
{
    std::unique_lock lock(m_sleepers->mutex);
    const auto first = m_sleepers->byPlace.begin();
    if (first == m_sleepers->byPlace.end() || first->first.deadline > now)
        return false;
    const auto sleeper = m_sleepers->byPlace.extract(first);
    lock.unlock();
    sleeper.mapped().resume();
    return true;
}

std::size_t SleepQueue::count() const
{
    const std::lock_guard lock(m_sleepers->mutex);
    return m_sleepers->byPlace.size();
}

}
