#include "TinkraICalendar/WorkTimer.h"

#include <ctime>

namespace Tinkra::ICalendar {

std::chrono::nanoseconds WorkTimer::elapsed()
{
    std::timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    const auto now = std::chrono::seconds{time.tv_sec} + std::chrono::nanoseconds{time.tv_nsec};
    if (!m_began)
        m_began = now;
    return now - *m_began;
}

}
