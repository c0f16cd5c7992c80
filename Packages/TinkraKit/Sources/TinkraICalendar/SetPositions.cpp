#include "TinkraICalendar/SetPositions.h"

#include <algorithm>

namespace Tinkra::ICalendar {

const std::vector<std::size_t>& SetPositions::of(std::size_t size)
{
    m_places.clear();
    const auto length = static_cast<std::int64_t>(size);
    for (const std::int64_t position : m_positions) {
        const auto place = position > 0 ? position - 1 : length + position;
        if (place >= 0 && place < length)
            m_places.push_back(static_cast<std::size_t>(place));
    }
    std::sort(m_places.begin(), m_places.end());
    m_places.erase(std::unique(m_places.begin(), m_places.end()), m_places.end());
    return m_places;
}

}
