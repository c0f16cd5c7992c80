#include "HexColor.h"

#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace Tinkra {

namespace {

/// All white space of Unicode is one UTF-16 unit each.
icu::UnicodeString trimmed(const icu::UnicodeString& text)
{
    auto begin = 0;
    auto end = text.length();
    while (begin < end && u_isUWhiteSpace(text[begin]))
        ++begin;
    while (begin < end && u_isUWhiteSpace(text[end - 1]))
        --end;
    return {text, begin, end - begin};
}

std::optional<std::uint32_t> hexDigit(char16_t character)
{
    if (character >= u'0' && character <= u'9')
        return character - u'0';
    if (character >= u'a' && character <= u'f')
        return character - u'a' + 10;
    if (character >= u'A' && character <= u'F')
        return character - u'A' + 10;
    return std::nullopt;
}

}

std::optional<HexColor> parseHexColor(std::optional<std::string_view> utf8)
{
    if (!utf8)
        return std::nullopt;
    auto digits = trimmed(icu::UnicodeString::fromUTF8({utf8->data(), static_cast<int32_t>(utf8->size())}));
    if (digits.startsWith(u"#", 1))
        digits.remove(0, 1);
    if (digits.length() != 6)
        return std::nullopt;
    std::uint32_t value = 0;
    for (int32_t i = 0; i < digits.length(); ++i) {
        const auto digit = hexDigit(digits[i]);
        if (!digit)
            return std::nullopt;
        value = value << 4 | *digit;
    }
    return HexColor{.red = static_cast<std::uint8_t>(value >> 16 & 0xFF),
        .green = static_cast<std::uint8_t>(value >> 8 & 0xFF),
        .blue = static_cast<std::uint8_t>(value & 0xFF)};
}

}
