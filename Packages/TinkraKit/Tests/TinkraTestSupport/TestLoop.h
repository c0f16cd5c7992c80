#pragma once

#include "TinkraConcurrency/Task.h"

#include <asio/co_spawn.hpp>
#include <asio/io_context.hpp>

#include <exception>
#include <memory>
#include <optional>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace Tinkra {

/// A task that a test has started and looks at later.
template <typename T> class StartedTask {
public:
    bool isDone() const { return m_outcome->isDone; }

    /// The task's result, or its exception; an error when it has not ended.
    T result() const
    {
        if (!isDone())
            throw std::logic_error("the task has not ended: it waits for something that nobody gave it");
        if (m_outcome->error)
            std::rethrow_exception(m_outcome->error);
        if constexpr (!std::is_void_v<T>)
            return *m_outcome->value;
    }

private:
    friend class TestLoop;
    struct Outcome {
        using Value = std::conditional_t<std::is_void_v<T>, bool, T>;
        bool isDone = false;
        std::exception_ptr error;
        std::optional<Value> value;
    };

    std::shared_ptr<Outcome> m_outcome = std::make_shared<Outcome>();
};

/// The executor of a test, turned by hand on the test's own thread.
class TestLoop {
public:
    Executor executor() { return m_context.get_executor(); }

    /// Runs everything that can run now, without waiting for anything.
    void drain();

    /// Starts a task and runs it as far as it gets.
    template <typename T> StartedTask<T> start(Task<T> task)
    {
        StartedTask<T> started;
        spawn(std::move(task), started);
        drain();
        return started;
    }

    /// Runs a task to its end and gives its result or its exception. An error when it gets stuck.
    template <typename T> T run(Task<T> task) { return start(std::move(task)).result(); }

    /// As `run`, for a task that waits for real services: blocks until it ends, or fails after ten seconds.
    template <typename T> T runInRealTime(Task<T> task)
    {
        StartedTask<T> started;
        spawn(std::move(task), started);
        waitFor(started.m_outcome->isDone);
        return started.result();
    }

private:
    template <typename T> void spawn(Task<T> task, const StartedTask<T>& started)
    {
        if constexpr (std::is_void_v<T>)
            asio::co_spawn(
                m_context, std::move(task), [outcome = started.m_outcome](std::exception_ptr error) {
                    outcome->error = std::move(error);
                    outcome->isDone = true;
                });
        else
            asio::co_spawn(
                m_context, std::move(task), [outcome = started.m_outcome](std::exception_ptr error, T value) {
                    outcome->error = std::move(error);
                    outcome->value = std::move(value);
                    outcome->isDone = true;
                });
    }

    void waitFor(const bool& isDone);

    asio::io_context m_context{1};
};

/// Runs a task to its end on a loop of its own.
template <typename T> T run(Task<T> task)
{
    return TestLoop{}.run(std::move(task));
}

}
