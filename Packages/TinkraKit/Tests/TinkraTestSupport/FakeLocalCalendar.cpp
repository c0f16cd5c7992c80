#include "TinkraTestSupport/FakeLocalCalendar.h"

#include <chrono>

namespace Tinkra::System {

DateComponents FakeLocalCalendar::components(Instant instant)
{
    using namespace std::chrono;
    const auto local = floor<seconds>(instant + Seconds{m_offset.load()});
    const auto midnight = floor<days>(local);
    const year_month_day date{midnight};
    const hh_mm_ss time{local - midnight};
    return {
        .year = static_cast<int>(date.year()),
        .month = static_cast<int>(static_cast<unsigned>(date.month())),
        .day = static_cast<int>(static_cast<unsigned>(date.day())),
        .hour = static_cast<int>(time.hours().count()),
        .minute = static_cast<int>(time.minutes().count()),
        .second = static_cast<int>(time.seconds().count()),
    };
}

}
