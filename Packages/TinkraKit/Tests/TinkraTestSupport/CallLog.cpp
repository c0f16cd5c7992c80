#include "TinkraTestSupport/CallLog.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace Tinkra {

std::string listed(const std::vector<std::string>& names)
{
    std::string list;
    for (const auto& name : names)
        list += (list.empty() ? "" : ", ") + name;
    return "[" + list + "]";
}

Task<> CallLog::record(std::string call)
{
    std::unique_lock lock(m_mutex);
    m_calls.push_back(call);
    const bool isHolding = m_isHolding;
    lock.unlock();
    if (!isHolding)
        co_return;
    co_await suspend([this, call = std::move(call)](Continuation<> continuation) {
        std::unique_lock guard(m_mutex);
        if (m_isHolding) {
            m_waiting.push_back({call, std::move(continuation)});
            return;
        }
        guard.unlock(); // everybody was let go in the meantime
        continuation.resume();
    });
}

std::vector<std::string> CallLog::calls() const
{
    const std::lock_guard lock(m_mutex);
    return m_calls;
}

std::size_t CallLog::count(const std::string& call) const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<std::size_t>(std::ranges::count(m_calls, call));
}

void CallLog::clear()
{
    const std::lock_guard lock(m_mutex);
    m_calls.clear();
}

void CallLog::hold()
{
    const std::lock_guard lock(m_mutex);
    m_isHolding = true;
}

void CallLog::letAllGo()
{
    std::unique_lock lock(m_mutex);
    m_isHolding = false;
    const auto waiting = std::exchange(m_waiting, {});
    lock.unlock();
    for (const auto& each : waiting)
        each.continuation.resume();
}

void CallLog::letGo()
{
    letGo(0);
}

void CallLog::letGo(std::size_t index)
{
    std::unique_lock lock(m_mutex);
    if (index >= m_waiting.size())
        throw std::logic_error("no call waits there to be let go");
    const auto place = m_waiting.begin() + static_cast<std::ptrdiff_t>(index);
    const auto continuation = std::move(place->continuation);
    m_waiting.erase(place);
    lock.unlock();
    continuation.resume();
}

std::vector<std::string> CallLog::waiting() const
{
    const std::lock_guard lock(m_mutex);
    std::vector<std::string> calls;
    for (const auto& each : m_waiting)
        calls.push_back(each.call);
    return calls;
}

}
