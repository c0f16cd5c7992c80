// Bytes where a wake file should be.

#include "TinkraSystem/WakeFile.h"

#include <cstdint>
#include <cstdlib>

using namespace Tinkra::System;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::int64_t now = 1'700'049'600;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto wake = wakeSecondsFrom(text, now);
    if (!wake)
        return 0;
    // A wake is digits alone, within a year, and what a writer writes of it is read as the same.
    const bool isSound = *wake > 0 && *wake <= now + kFurthestWakeSeconds && size <= kMaximumWakeDigits
        && text.find_first_not_of("0123456789") == std::string_view::npos;
    if (!isSound || wakeSecondsFrom(wakeFileText(static_cast<double>(*wake)), now) != wake)
        std::abort();
    return 0;
}
