#include "QtExecutor.h"

#include <asio/execution.hpp>
#include <asio/execution_context.hpp>

#include <QCoreApplication>

#include <memory>
#include <utility>

namespace Tinkra {

namespace {

/// Timers of tasks keep their threads here.
asio::execution_context& timers()
{
    static asio::execution_context context;
    return context;
}

/// The least that asio asks of an executor; see the requirements "Executor" in its reference.
struct QtExecutor {
    static asio::execution_context& query(asio::execution::context_t) { return timers(); }
    static constexpr asio::execution::blocking_t query(asio::execution::blocking_t)
    {
        return asio::execution::blocking.never;
    }

    template <typename Step> void execute(Step step) const
    {
        // A step may be moved only; Qt wants to copy.
        auto shared = std::make_shared<Step>(std::move(step));
        const auto run = [shared] {
            Step once(std::move(*shared));
            once();
        };
        QMetaObject::invokeMethod(QCoreApplication::instance(), run, Qt::QueuedConnection);
    }

    friend bool operator==(const QtExecutor&, const QtExecutor&) = default;
};

}

Executor mainThreadExecutor()
{
    return QtExecutor{};
}

}
