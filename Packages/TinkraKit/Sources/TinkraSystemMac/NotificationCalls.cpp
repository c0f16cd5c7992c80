#include "TinkraSystemMac/NotificationCalls.h"

#include <asio/co_spawn.hpp>

#include <utility>

namespace Tinkra::System {

namespace {

Task<std::uint32_t> askDelegate(
    std::weak_ptr<NotificationCenterDelegate> delegate, NotificationRequest request)
{
    if (const auto strong = delegate.lock())
        co_return co_await strong->willPresent(std::move(request));
    co_return 0;
}

Task<> tellDelegate(std::weak_ptr<NotificationCenterDelegate> delegate, NotificationResponse response)
{
    if (const auto strong = delegate.lock())
        co_await strong->didReceive(std::move(response));
}

}

NotificationCalls::NotificationCalls(Executor mainThread, std::weak_ptr<NotificationCenterDelegate> delegate)
    : m_mainThread(std::move(mainThread))
    , m_delegate(std::move(delegate))
{
}

void NotificationCalls::willPresent(
    NotificationRequest request, std::function<void(std::uint32_t options)> done) const
{
    asio::co_spawn(m_mainThread, askDelegate(m_delegate, std::move(request)),
        [done = std::move(done)](
            const std::exception_ptr& error, std::uint32_t options) { done(error ? 0 : options); });
}

void NotificationCalls::didReceive(NotificationResponse response, std::function<void()> done) const
{
    asio::co_spawn(m_mainThread, tellDelegate(m_delegate, std::move(response)),
        [done = std::move(done)](const std::exception_ptr&) { done(); });
}

}
