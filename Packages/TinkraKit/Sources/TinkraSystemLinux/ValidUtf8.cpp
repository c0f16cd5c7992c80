#include "TinkraSystemLinux/ValidUtf8.h"

#include <unicode/utf8.h>

#include <cstdint>

namespace Tinkra::System {

std::string validUtf8(std::string_view text)
{
    constexpr UChar32 replacement = 0xFFFD;

    std::string valid;
    valid.reserve(text.size());
    const auto size = static_cast<std::int64_t>(text.size());
    for (std::int64_t next = 0; next < size;) {
        const auto start = next;
        UChar32 character = 0;
        U8_NEXT_OR_FFFD(text.data(), next, size, character);
        if (character != 0 && character != replacement) {
            valid.append(text, static_cast<std::size_t>(start), static_cast<std::size_t>(next - start));
        } else {
            valid.append("\xEF\xBF\xBD");
        }
    }
    return valid;
}

}
