#pragma once

#include "TinkraConcurrency/Task.h"

#include <functional>
#include <stop_token>

namespace Tinkra {

/// The one owner of a long-lived task. Letting go of it requests the task's cancellation.
///
/// Cancellation is cooperative: the task is handed a `std::stop_token`, passes it to each sleep of its
/// `Clock`, and asks it right after each sleep. A sleep whose token is stopped ends early.
class [[nodiscard]] TaskHandle {
public:
    TaskHandle() = default;
    TaskHandle(TaskHandle&& other) noexcept;
    TaskHandle& operator=(TaskHandle&& other) noexcept;
    TaskHandle(const TaskHandle&) = delete;
    TaskHandle& operator=(const TaskHandle&) = delete;
    ~TaskHandle();

    /// Requests cancellation now; the handle is empty afterwards.
    void cancel();

    /// True while the handle owns a task, finished or not.
    explicit operator bool() const { return m_stop.stop_possible(); }

private:
    friend TaskHandle spawn(Executor, std::function<Task<>(std::stop_token)>);
    explicit TaskHandle(std::stop_source stop);

    std::stop_source m_stop{std::nostopstate};
};

/// Starts `task` on `executor` and gives its owner. The function is called, on the executor, with the
/// token of the new handle; it must be a named function bound to values, not a capturing lambda
/// coroutine. An exception that leaves the task is a broken assumption and ends the program: a
/// long-lived task handles its own trouble.
TaskHandle spawn(Executor executor, std::function<Task<>(std::stop_token)> task);

}
