#include "TinkraConcurrency/TaskHandle.h"

#include <asio/co_spawn.hpp>

#include <exception>
#include <utility>

namespace Tinkra {

namespace {

// The function object lives in this frame for as long as the task that it started.
Task<> run(std::function<Task<>(std::stop_token)> task, std::stop_token stop)
{
    co_await task(std::move(stop));
}

void endOnEscapedException(const std::exception_ptr& error)
{
    if (error)
        std::terminate();
}

}

TaskHandle::TaskHandle(std::stop_source stop)
    : m_stop(std::move(stop))
{
}

TaskHandle::TaskHandle(TaskHandle&& other) noexcept
    : m_stop(std::exchange(other.m_stop, std::stop_source{std::nostopstate}))
{
}

TaskHandle& TaskHandle::operator=(TaskHandle&& other) noexcept
{
    if (this != &other) {
        cancel();
        m_stop = std::exchange(other.m_stop, std::stop_source{std::nostopstate});
    }
    return *this;
}

TaskHandle::~TaskHandle()
{
    cancel();
}

void TaskHandle::cancel()
{
    auto stop = std::exchange(m_stop, std::stop_source{std::nostopstate});
    stop.request_stop();
}

TaskHandle spawn(Executor executor, std::function<Task<>(std::stop_token)> task)
{
    std::stop_source stop;
    asio::co_spawn(executor, run(std::move(task), stop.get_token()), endOnEscapedException);
    return TaskHandle{std::move(stop)};
}

}
