#pragma once

#include "TinkraConcurrency/Continuation.h"

#include <atomic>
#include <exception>
#include <stdexcept>
#include <utility>

namespace Tinkra::System {

/// The task that waits for one query. Letting go of it without an answer fails it, so that no task waits for
/// ever.
template <typename Result> class PendingQuery {
public:
    explicit PendingQuery(Continuation<Result> continuation)
        : m_continuation(std::move(continuation))
    {
    }
    PendingQuery(const PendingQuery&) = delete;
    PendingQuery& operator=(const PendingQuery&) = delete;
    ~PendingQuery() { fail(std::make_exception_ptr(std::runtime_error("the calendar store was closed"))); }

    /// The first answer counts, from whichever thread it comes.
    void answer(Result result)
    {
        if (!m_isAnswered.exchange(true))
            m_continuation.resume(std::move(result));
    }

    void fail(std::exception_ptr error)
    {
        if (!m_isAnswered.exchange(true))
            m_continuation.fail(std::move(error));
    }

    bool isAnswered() const { return m_isAnswered; }

private:
    Continuation<Result> m_continuation;
    std::atomic<bool> m_isAnswered{false};
};

}
