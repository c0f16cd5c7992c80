#pragma once

#include <asio/any_io_executor.hpp>
#include <asio/awaitable.hpp>

namespace Tinkra {

/// Where a task's steps run: an io_context, a strand, or the main loop of the user interface.
using Executor = asio::any_io_executor;

/// A coroutine that ends with a `T` or with an exception. It starts when it is awaited or spawned.
///
/// Parameters are taken by value: the caller may be gone when the coroutine resumes.
template <typename T = void> using Task = asio::awaitable<T, Executor>;

}
