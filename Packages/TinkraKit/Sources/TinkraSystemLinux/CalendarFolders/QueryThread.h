#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <thread>

namespace Tinkra::System {

/// Runs blocking jobs one after the other on a thread of its own.
class QueryThread {
public:
    /// `patience` is how long the end waits for a job that hangs.
    explicit QueryThread(std::chrono::milliseconds patience);
    QueryThread(const QueryThread&) = delete;
    QueryThread& operator=(const QueryThread&) = delete;

    /// Drops the jobs that have not begun. One that hangs, in a file system that does not answer, is left
    /// behind, so that the program can end.
    ~QueryThread();

    void post(std::function<void()> job);

private:
    struct Queue;

    static void work(const std::shared_ptr<Queue>& queue);

    std::chrono::milliseconds m_patience;
    std::shared_ptr<Queue> m_queue;
    std::thread m_thread;
};

}
