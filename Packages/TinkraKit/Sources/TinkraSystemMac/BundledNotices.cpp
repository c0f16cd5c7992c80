#include "TinkraSystemMac/BundledNotices.h"

#include <asio/co_spawn.hpp>

#include <exception>
#include <utility>

namespace Tinkra::System {

BundledNotices::BundledNotices(Executor executor, std::shared_ptr<Clock> clock, std::function<void()> notify)
    : m_executor(std::move(executor))
    , m_clock(std::move(clock))
    , m_notify(std::move(notify))
{
}

void BundledNotices::changed()
{
    {
        const std::lock_guard lock(m_mutex);
        m_hasChanged = true;
        if (std::exchange(m_isTelling, true))
            return;
    }
    asio::co_spawn(m_executor, tell(shared_from_this()), [](const std::exception_ptr& error) {
        if (error)
            std::terminate();
    });
}

void BundledNotices::end()
{
    m_stop.request_stop();
    const std::lock_guard callIsOver(m_callMutex);
}

Task<> BundledNotices::tell(std::shared_ptr<BundledNotices> notices)
{
    const auto stop = notices->m_stop.get_token();
    while (notices->takeChange()) {
        notices->notify();
        co_await notices->m_clock->sleepFor(kInterval, stop);
        if (stop.stop_requested())
            co_return;
    }
}

bool BundledNotices::takeChange()
{
    const std::lock_guard lock(m_mutex);
    m_isTelling = std::exchange(m_hasChanged, false);
    return m_isTelling;
}

void BundledNotices::notify()
{
    const std::lock_guard lock(m_callMutex);
    if (!m_stop.stop_requested())
        m_notify();
}

}
