#pragma once

#include "TinkraConcurrency/Continuation.h"

#include <exception>
#include <utility>

namespace Tinkra::System {

/// Runs a job that blocks on `executor` and hands its result, or its exception, to the caller, who waits
/// without holding a thread.
template <typename Result, typename Job> Task<Result> runOn(Executor executor, Job job)
{
    return suspend<Result>(
        [executor = std::move(executor), job = std::move(job)](Continuation<Result> waiting) {
            asio::post(executor, [job, waiting = std::move(waiting)] {
                try {
                    waiting.resume(job());
                } catch (...) {
                    waiting.fail(std::current_exception());
                }
            });
        });
}

}
