// The colour that a calendar's file names: six digits or nothing, whatever stands around them.

#include "ViewSupport/HexColor.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto color = Tinkra::parseHexColor(text);
    if (!color)
        return 0;

    char digits[8];
    std::snprintf(digits, sizeof digits, "%02X%02X%02X", static_cast<unsigned>(color->red),
        static_cast<unsigned>(color->green), static_cast<unsigned>(color->blue));
    std::string upper(text);
    std::ranges::transform(upper, upper.begin(),
        [](char c) { return c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c; });
    require(upper.find(digits) != std::string::npos);
    require(Tinkra::parseHexColor(digits) == color);
    return 0;
}
