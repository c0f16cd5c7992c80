#include "TinkraTestSupport/FakeDefaults.h"

namespace Tinkra::System {

std::optional<std::string> FakeDefaults::data(std::string_view key)
{
    const std::lock_guard lock(m_mutex);
    const auto value = m_values.find(key);
    if (value == m_values.end() || !std::holds_alternative<std::string>(value->second))
        return std::nullopt;
    return std::get<std::string>(value->second);
}

void FakeDefaults::setData(std::string_view key, std::string_view bytes)
{
    const std::lock_guard lock(m_mutex);
    if (m_failsWrites)
        return;
    m_values.insert_or_assign(std::string(key), std::string(bytes));
    ++m_writeCount;
}

void FakeDefaults::setSomethingElse(std::string_view key)
{
    const std::lock_guard lock(m_mutex);
    m_values.insert_or_assign(std::string(key), NotData{});
}

void FakeDefaults::failWrites(bool fails)
{
    const std::lock_guard lock(m_mutex);
    m_failsWrites = fails;
}

std::size_t FakeDefaults::writeCount() const
{
    const std::lock_guard lock(m_mutex);
    return m_writeCount;
}

std::vector<std::string> FakeDefaults::keys() const
{
    const std::lock_guard lock(m_mutex);
    std::vector<std::string> keys;
    for (const auto& [key, value] : m_values)
        keys.push_back(key);
    return keys;
}

}
