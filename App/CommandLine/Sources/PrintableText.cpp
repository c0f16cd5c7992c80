#include "PrintableText.h"

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>

namespace Tinkra::CommandLine {

namespace {

constexpr UChar32 replacement = 0xFFFD;
constexpr UChar32 emojiPresentation = 0xFE0F;

bool steersTerminal(UChar32 character)
{
    const auto type = u_charType(character);
    return type == U_CONTROL_CHAR || type == U_LINE_SEPARATOR || type == U_PARAGRAPH_SEPARATOR
        || u_hasBinaryProperty(character, UCHAR_BIDI_CONTROL) != 0;
}

std::string escaped(UChar32 character)
{
    switch (character) {
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        char text[16];
        std::snprintf(text, sizeof text, "\\u{%X}", static_cast<unsigned>(character));
        return text;
    }
}

std::size_t columns(UChar32 character)
{
    const auto type = u_charType(character);
    if (type == U_NON_SPACING_MARK || type == U_ENCLOSING_MARK || type == U_FORMAT_CHAR)
        return 0;
    if (u_hasBinaryProperty(character, UCHAR_REGIONAL_INDICATOR) != 0)
        return 2; // half of a flag
    const auto width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
    return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

bool isPlainAscii(std::string_view text)
{
    return std::ranges::all_of(text, [](char byte) { return byte >= ' ' && byte <= '~'; });
}

}

std::string printable(std::string_view text)
{
    if (isPlainAscii(text))
        return std::string(text);
    std::string result;
    result.reserve(text.size());
    const auto size = static_cast<std::int64_t>(text.size());
    for (std::int64_t next = 0; next < size;) {
        const auto start = next;
        UChar32 character = 0;
        U8_NEXT_OR_FFFD(text.data(), next, size, character);
        if (steersTerminal(character))
            result += escaped(character);
        else if (character == replacement)
            result += "\xEF\xBF\xBD";
        else
            result.append(text, static_cast<std::size_t>(start), static_cast<std::size_t>(next - start));
    }
    return result;
}

std::size_t displayWidth(std::string_view text)
{
    if (isPlainAscii(text))
        return text.size();
    const auto unicode = icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> clusters(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status))
        return static_cast<std::size_t>(unicode.countChar32());
    clusters->setText(unicode);

    // What a reader sees as one character is as wide as its widest part.
    std::size_t width = 0;
    auto start = clusters->first();
    for (auto end = clusters->next(); end != icu::BreakIterator::DONE; start = end, end = clusters->next()) {
        std::size_t widest = 0;
        for (auto at = start; at < end; at = unicode.moveIndex32(at, 1)) {
            const auto character = unicode.char32At(at);
            widest = std::max(widest, character == emojiPresentation ? std::size_t{2} : columns(character));
        }
        width += widest;
    }
    return width;
}

}
