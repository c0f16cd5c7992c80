#pragma once

#include "TinkraConcurrency/Continuation.h"

#include <atomic>
#include <exception>
#include <stdexcept>
#include <utility>

namespace Tinkra::System {

/// A query that can be ended from outside.
class EndableQuery {
public:
    virtual ~EndableQuery() = default;
    virtual void fail(std::exception_ptr error) = 0;

    static std::exception_ptr closed()
    {
        return std::make_exception_ptr(std::runtime_error("the calendar store was closed"));
    }
};

/// The task that waits for one query. Letting go of it without an answer fails it, so that no task waits for
/// ever.
template <typename Result> class PendingQuery final : public EndableQuery {
public:
    explicit PendingQuery(Continuation<Result> continuation)
        : m_continuation(std::move(continuation))
    {
    }
    PendingQuery(const PendingQuery&) = delete;
    PendingQuery& operator=(const PendingQuery&) = delete;
    ~PendingQuery() override { end(closed()); }

    /// The first answer counts, from whichever thread it comes.
    void answer(Result result)
    {
        if (!m_isAnswered.exchange(true))
            m_continuation.resume(std::move(result));
    }

    void fail(std::exception_ptr error) override { end(std::move(error)); }

    bool isAnswered() const { return m_isAnswered; }

private:
    void end(std::exception_ptr error)
    {
        if (!m_isAnswered.exchange(true))
            m_continuation.fail(std::move(error));
    }

    Continuation<Result> m_continuation;
    std::atomic<bool> m_isAnswered{false};
};

}
