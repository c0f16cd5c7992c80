#include "TinkraICalendar/ComponentStack.h"

#include <algorithm>

namespace Tinkra::ICalendar {

/// FNV-1a over the lower-case name.
std::uint64_t ComponentStack::hash(std::string_view name)
{
    std::uint64_t value = 0xCBF29CE484222325;
    for (const char c : name) {
        value ^= static_cast<unsigned char>(c) | 0x20U;
        value *= 0x100000001B3;
    }
    return value;
}

void ComponentStack::push(std::string_view name)
{
    if (m_depth < m_names.size())
        m_names[m_depth] = hash(name);
    ++m_depth;
}

void ComponentStack::pop(std::string_view name)
{
    if (m_depth > m_names.size()) {
        --m_depth;
        return;
    }
    const auto wanted = hash(name);
    for (auto depth = m_depth; depth > 0; --depth) {
        if (m_names[depth - 1] == wanted) {
            m_depth = depth - 1;
            return;
        }
    }
}

}
