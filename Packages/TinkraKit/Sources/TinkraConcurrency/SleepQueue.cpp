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

Task<> SleepQueue::sleep(double deadline, std::stop_token stop)
{
    if (stop.stop_requested())
        co_return;

    const auto sleepers = m_sleepers;
    const Place place{deadline, nextOrder()};
    const auto leave = [sleepers, place] {
        std::unique_lock lock(sleepers->mutex);
        const auto sleeper = sleepers->byPlace.extract(place);
        lock.unlock();
        if (sleeper)
            sleeper.mapped().resume();
    };
    std::optional<std::stop_callback<decltype(leave)>> leaveOnStop;

    co_await suspend([this, &leaveOnStop, &leave, &stop, sleepers, place](Continuation<> continuation) {
        std::unique_lock lock(sleepers->mutex);
        const auto isFirst =
            sleepers->byPlace.emplace(place, std::move(continuation)).first == sleepers->byPlace.begin();
        lock.unlock();
        leaveOnStop.emplace(stop, leave);
        if (isFirst && m_earliestChanged)
            m_earliestChanged();
    });
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
