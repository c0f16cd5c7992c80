// Bytes where a compiled zone file should be, and texts where a POSIX TZ value should be.

#include "TinkraICalendar/ZoneFile.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace Tinkra::ICalendar;

namespace {

/// Whatever the data says, a clock is less than a day from UTC and a moment comes back to its first like.
void checkZone(const ZonePtr& zone)
{
    constexpr std::array<std::int64_t, 6> kMoments{
        -99'999'999'999, -2'000'000'000, 0, 1'790'000'000, 9'999'999'999, 253'402'300'799};
    for (const auto moment : kMoments) {
        const UtcSeconds utc{std::chrono::seconds{moment}};
        const auto offset = zone->toLocal(utc).time_since_epoch() - utc.time_since_epoch();
        const auto back = zone->toUtc(zone->toLocal(utc)).time_since_epoch() - utc.time_since_epoch();
        if (abs(offset) > std::chrono::hours{25} || abs(back) > std::chrono::hours{50})
            std::abort();
    }
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (const auto zone = readZoneFile("fuzz", bytes))
        checkZone(zone);
    if (const auto zone = readPosixZone("fuzz", bytes))
        checkZone(zone);
    return 0;
}
