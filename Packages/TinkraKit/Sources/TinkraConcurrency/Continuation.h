#pragma once

#include "TinkraConcurrency/Task.h"

#include <asio/associated_executor.hpp>
#include <asio/async_result.hpp>
#include <asio/post.hpp>
#include <asio/use_awaitable.hpp>

#include <atomic>
#include <exception>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace Tinkra {

namespace Detail {
template <typename T> struct Completion {
    using Signature = void(std::exception_ptr, T);
};
template <> struct Completion<void> {
    using Signature = void(std::exception_ptr);
};
}

/// Resumes one suspended coroutine, from any thread, on the coroutine's own executor.
///
/// The first call of `resume` or `fail` counts, later ones do nothing. Copies stand for the same
/// coroutine. When the last copy is dropped without a call, the coroutine is destroyed where it stands.
template <typename T = void> class Continuation {
public:
    /// The coroutine goes on, with this value if it waits for one.
    template <typename... Value> void resume(Value... value) const { complete(nullptr, std::move(value)...); }

    /// The coroutine goes on with an exception.
    void fail(std::exception_ptr error) const
    {
        if constexpr (std::is_void_v<T>)
            complete(std::move(error));
        else
            complete(std::move(error), T{});
    }

private:
    template <typename U, typename Start> friend Task<U> suspend(Start start);

    struct State {
        std::atomic_flag isDone;
        std::function<typename Detail::Completion<T>::Signature> complete;
    };

    template <typename Handler>
    explicit Continuation(Handler handler)
        : m_state(std::make_shared<State>())
    {
        auto executor = asio::get_associated_executor(handler);
        auto waiting = std::make_shared<Handler>(std::move(handler));
        m_state->complete = [executor, waiting](auto... result) {
            asio::post(executor, [handler = std::move(*waiting), ... result = std::move(result)]() mutable {
                std::move(handler)(std::move(result)...);
            });
        };
    }

    template <typename... Result> void complete(std::exception_ptr error, Result... result) const
    {
        if (!m_state->isDone.test_and_set())
            m_state->complete(std::move(error), std::move(result)...);
    }

    std::shared_ptr<State> m_state;
};

/// Suspends the calling coroutine and hands `start` the `Continuation<T>` that resumes it. `start` runs on
/// the coroutine's executor, which takes one step at a time, so that the coroutine goes on only after
/// `start` has returned. A `start` that throws ends the program.
template <typename T = void, typename Start> Task<T> suspend(Start start)
{
    co_return co_await asio::async_initiate<const asio::use_awaitable_t<Executor>,
        typename Detail::Completion<T>::Signature>(
        [start = std::move(start)](auto handler) mutable { start(Continuation<T>{std::move(handler)}); },
        asio::use_awaitable);
}

}
