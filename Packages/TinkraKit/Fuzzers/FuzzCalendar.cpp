// Any text at all: it is read and asked for its occurrences, within the limits, and what it gives holds
// together.

#include "TinkraICalendar/Calendar.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <unicode/utf8.h>

namespace {

using namespace Tinkra::ICalendar;

void require(bool condition)
{
    if (!condition)
        std::abort();
}

bool isValidUtf8(std::string_view text)
{
    for (std::size_t at = 0; at < text.size();) {
        int character = 0;
        U8_NEXT(text.data(), at, text.size(), character);
        if (character <= 0) // NUL is refused too: it ends strings on its way to the desktop
            return false;
    }
    return true;
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace std::chrono;
    constexpr TimeRange window{sys_days{year{2024} / 1 / 1}, sys_days{year{2025} / 1 / 1}};
    static const auto viewer = findZone("Europe/Zurich");
    const Limits limits{.line = 4'096,
        .expansionTime = milliseconds{100},
        .perEvent = {.occurrences = 500, .time = milliseconds{20}}};

    const auto calendar = Calendar::read({reinterpret_cast<const char*>(data), size}, limits);
    const auto notices = calendar.forEachOccurrence(window, viewer, [&](const Occurrence& occurrence) {
        require(occurrence.start <= occurrence.end);
        require(occurrence.start < window.to);
        require(occurrence.end > window.from || occurrence.start == window.from);
        require(!occurrence.uid.empty() && isValidUtf8(occurrence.uid));
        require(!occurrence.title || isValidUtf8(*occurrence.title));
    });
    for (const auto& notice : notices)
        require(isValidUtf8(notice));
    for (const auto& notice : calendar.notices())
        require(isValidUtf8(notice));
    require(calendar.memoryUse() < (1U << 20U) + size * 20);
    return 0;
}
