#include "TinkraSystemLinux/CalendarFolders/QueryThread.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <utility>

namespace Tinkra::System {

struct QueryThread::Queue {
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::function<void()>> jobs;
    bool isClosed = false;
    bool hasEnded = false;
};

QueryThread::QueryThread(std::chrono::milliseconds patience)
    : m_patience(patience)
    , m_queue(std::make_shared<Queue>())
    , m_thread([queue = m_queue] { work(queue); })
{
}

QueryThread::~QueryThread()
{
    std::deque<std::function<void()>> dropped;
    std::unique_lock lock{m_queue->mutex};
    m_queue->isClosed = true;
    dropped.swap(m_queue->jobs);
    m_queue->changed.notify_all();
    const bool hasEnded = m_queue->changed.wait_for(lock, m_patience, [this] { return m_queue->hasEnded; });
    lock.unlock();
    if (hasEnded)
        m_thread.join();
    else
        m_thread.detach();
}

void QueryThread::post(std::function<void()> job)
{
    const std::lock_guard lock{m_queue->mutex};
    m_queue->jobs.push_back(std::move(job));
    m_queue->changed.notify_all();
}

void QueryThread::work(const std::shared_ptr<Queue>& queue)
{
    std::unique_lock lock{queue->mutex};
    for (;;) {
        queue->changed.wait(lock, [&] { return queue->isClosed || !queue->jobs.empty(); });
        if (queue->isClosed)
            break;
        auto job = std::move(queue->jobs.front());
        queue->jobs.pop_front();
        lock.unlock();
        job();
        job = nullptr;
        lock.lock();
    }
    queue->hasEnded = true;
    queue->changed.notify_all();
}

}
