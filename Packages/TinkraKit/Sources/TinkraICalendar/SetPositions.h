#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Tinkra::ICalendar {

/// BYSETPOS: which members of a period's set count.
class SetPositions {
public:
    explicit SetPositions(const std::vector<std::int16_t>& positions)
        : m_positions(positions)
    {
    }

    bool chooseAll() const { return m_positions.empty(); }

    /// The chosen places, from 0, in a set of `size` members, in order. Good until the next call.
    const std::vector<std::size_t>& of(std::size_t size);

private:
    const std::vector<std::int16_t>& m_positions;
    std::vector<std::size_t> m_places;
};

}
