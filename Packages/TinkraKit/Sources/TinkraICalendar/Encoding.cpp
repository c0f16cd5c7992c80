#include "TinkraICalendar/Encoding.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Tinkra::ICalendar {

namespace {

constexpr char32_t replacement = 0xFFFD;

/// Windows-1252 from 0x80 to 0x9F; the rest of it is Latin-1.
constexpr std::array<char16_t, 32> windows1252{
    0x20AC, replacement, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, //
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, replacement, 0x017D, replacement, //
    replacement, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, //
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, replacement, 0x017E, 0x0178, //
};

std::uint8_t byteAt(std::string_view text, std::size_t index)
{
    return static_cast<std::uint8_t>(text[index]);
}

void appendCodePoint(std::string& out, char32_t c)
{
    const auto tail = [&out](char32_t bits) { out += static_cast<char>(0x80U | (bits & 0x3FU)); };
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0U | (c >> 6U));
        tail(c);
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0U | (c >> 12U));
        tail(c >> 6U);
        tail(c);
    } else {
        out += static_cast<char>(0xF0U | (c >> 18U));
        tail(c >> 12U);
        tail(c >> 6U);
        tail(c);
    }
}

/// The length of the well-formed character at `at` (Unicode, table 3-7), or 0.
std::size_t characterLength(std::string_view bytes, std::size_t at)
{
    const auto lead = byteAt(bytes, at);
    if (lead < 0x80)
        return 1;
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || at + length > bytes.size())
        return 0;
    const auto second = byteAt(bytes, at + 1);
    const std::uint8_t lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const std::uint8_t highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (second < lowest || second > highest)
        return 0;
    for (std::size_t i = at + 2; i < at + length; ++i) {
        if ((byteAt(bytes, i) & 0xC0U) != 0x80)
            return 0;
    }
    return length;
}

bool isPlainAscii(std::string_view bytes)
{
    // Zero wraps around to the largest value, so one comparison refuses it together with 0x80 and above.
    return std::all_of(
        bytes.begin(), bytes.end(), [](char c) { return static_cast<std::uint8_t>(c - 1) < 0x7F; });
}

enum class Kind { Utf8, DamagedUtf8, SingleByte };

Kind kindOf(std::string_view bytes)
{
    bool anyMultiByte = false;
    bool anyDamage = false;
    for (std::size_t at = 0; at < bytes.size();) {
        const auto length = characterLength(bytes, at);
        anyMultiByte |= length > 1;
        anyDamage |= length == 0;
        at += std::max<std::size_t>(length, 1);
    }
    if (!anyDamage)
        return Kind::Utf8;
    return anyMultiByte ? Kind::DamagedUtf8 : Kind::SingleByte;
}

char32_t fromSingleByte(std::uint8_t byte)
{
    if (byte == 0)
        return replacement;
    return byte >= 0x80 && byte < 0xA0 ? windows1252[byte - 0x80U] : byte;
}

enum class ByteOrder { Little, Big };

std::string fromUtf16(std::string_view bytes, ByteOrder order)
{
    const auto unitAt = [bytes, order](std::size_t at) {
        const char32_t first = byteAt(bytes, at);
        const char32_t second = byteAt(bytes, at + 1);
        return order == ByteOrder::Little ? first | second << 8U : first << 8U | second;
    };
    const auto isBetween = [](char32_t unit, char32_t low, char32_t high) {
        return unit >= low && unit <= high;
    };

    std::string out;
    out.reserve(bytes.size());
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        const auto unit = unitAt(at);
        if (isBetween(unit, 0xD800, 0xDBFF) && at + 3 < bytes.size()
            && isBetween(unitAt(at + 2), 0xDC00, 0xDFFF)) {
            appendCodePoint(out, 0x10000 + ((unit - 0xD800) << 10U) + (unitAt(at + 2) - 0xDC00));
            at += 2;
        } else {
            appendCodePoint(out, isBetween(unit, 0xD800, 0xDFFF) ? replacement : unit);
        }
    }
    return out;
}

}

std::string_view withoutByteOrder(std::string_view text, std::string& buffer)
{
    using namespace std::string_view_literals;
    if (text.starts_with("\xEF\xBB\xBF"))
        return text.substr(3);
    if (text.starts_with("\xFF\xFE") || text.starts_with("B\0E\0"sv)) {
        buffer = fromUtf16(text.front() == 'B' ? text : text.substr(2), ByteOrder::Little);
        return buffer;
    }
    if (text.starts_with("\xFE\xFF") || text.starts_with("\0B\0E"sv)) {
        buffer = fromUtf16(text.front() == '\0' ? text : text.substr(2), ByteOrder::Big);
        return buffer;
    }
    return text;
}

void appendUtf8(std::string& out, std::string_view bytes)
{
    if (isPlainAscii(bytes)) {
        out += bytes;
        return;
    }
    const auto kind = kindOf(bytes);
    for (std::size_t at = 0; at < bytes.size();) {
        const auto length = kind == Kind::SingleByte ? 0 : characterLength(bytes, at);
        if (length > 1 || (length == 1 && bytes[at] != '\0'))
            out += bytes.substr(at, length);
        else
            appendCodePoint(out, kind == Kind::SingleByte ? fromSingleByte(byteAt(bytes, at)) : replacement);
        at += std::max<std::size_t>(length, 1);
    }
}

}
