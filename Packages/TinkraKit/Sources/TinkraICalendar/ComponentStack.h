#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Tinkra::ICalendar {

/// The names of components that are open one inside the other. It keeps few of them, so that a text that
/// nests without end costs neither time nor memory: deeper levels are only counted.
class ComponentStack {
public:
    bool isEmpty() const { return m_depth == 0; }
    void clear() { m_depth = 0; }
    void push(std::string_view name);

    /// Closes the innermost component of that name and all inside it. One that is not open is ignored.
    void pop(std::string_view name);

private:
    static std::uint64_t hash(std::string_view name);

    std::array<std::uint64_t, 16> m_names{};
    std::size_t m_depth = 0;
};

}
