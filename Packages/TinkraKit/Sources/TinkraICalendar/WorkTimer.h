#pragma once

#include <chrono>
#include <optional>

namespace Tinkra::ICalendar {

/// How much processor time this thread has used since it was first asked.
class WorkTimer {
public:
    std::chrono::nanoseconds elapsed();

private:
    std::optional<std::chrono::nanoseconds> m_began;
};

}
