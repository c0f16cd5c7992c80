#include "NotificationDaemon/NotificationText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace Tinkra::NotificationDaemon {

namespace {

using CodePoints = std::vector<char32_t>;

struct Range {
    char32_t first;
    char32_t last;
};

template <std::size_t Size> bool isIn(const std::array<Range, Size>& ranges, char32_t c)
{
    return std::any_of(
        ranges.begin(), ranges.end(), [c](Range range) { return c >= range.first && c <= range.last; });
}

constexpr char32_t kReplacement = 0xfffd;
constexpr char32_t kEllipsis = 0x2026;
constexpr char32_t kZeroWidthJoiner = 0x200d;

/// Bidirectional controls, zero-width characters that join nothing, line and paragraph annotations.
constexpr std::array kInvisible{Range{0x00ad, 0x00ad}, Range{0x061c, 0x061c}, Range{0x180e, 0x180e},
    Range{0x200b, 0x200b}, Range{0x200e, 0x200f}, Range{0x202a, 0x202e}, Range{0x2060, 0x206f},
    Range{0xfeff, 0xfeff}, Range{0xfff9, 0xfffb}};

constexpr std::array kLineBreaks{Range{0x0000, 0x001f}, Range{0x007f, 0x009f}, Range{0x2028, 0x2029}};

/// Marks that belong to the character before them, of the scripts in which they are piled up for fun.
constexpr std::array kCombining{Range{0x0300, 0x036f}, Range{0x0483, 0x0489}, Range{0x0591, 0x05bd},
    Range{0x0610, 0x061a}, Range{0x064b, 0x065f}, Range{0x0e47, 0x0e4e}, Range{0x1ab0, 0x1aff},
    Range{0x1dc0, 0x1dff}, Range{0x20d0, 0x20f0}, Range{0xfe00, 0xfe0f}, Range{0xfe20, 0xfe2f}};
constexpr std::size_t kMostMarks = 8;

/// Characters that begin a grapheme wherever they stand. Conservative: where a script is not listed, only a
/// space is taken for an end.
constexpr std::array kStarters{Range{0x0020, 0x007e}, Range{0x00a1, 0x00ac}, Range{0x00ae, 0x02ff},
    Range{0x0370, 0x0482}, Range{0x048a, 0x052f}, Range{0x05d0, 0x05ea}, Range{0x0620, 0x064a},
    Range{0x1e00, 0x1fff}, Range{0x2010, 0x2027}, Range{0x2030, 0x205e}, Range{0x2100, 0x2bff},
    Range{0x3001, 0x3029}, Range{0x3041, 0x3096}, Range{0x309b, 0x30ff}, Range{0x3400, 0x4dbf},
    Range{0x4e00, 0x9fff}, Range{0xac00, 0xd7a3}, Range{0x1f300, 0x1f3fa}, Range{0x1f400, 0x1faff},
    Range{0x20000, 0x3134f}};

/// The next code point, by the rule that a broken sequence is one replacement character.
char32_t nextCodePoint(std::string_view text, std::size_t& at)
{
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = byteAt(at++);
    if (lead < 0x80)
        return lead;
    const std::size_t more = lead >= 0xf0 ? 3 : lead >= 0xe0 ? 2 : 1;
    if (lead < 0xc2 || lead > 0xf4)
        return kReplacement;
    char32_t c = lead & (0x3fU >> more);
    for (std::size_t i = 0; i < more; ++i, ++at) {
        if (at >= text.size() || (byteAt(at) & 0xc0U) != 0x80)
            return kReplacement;
        c = (c << 6U) | (byteAt(at) & 0x3fU);
    }
    constexpr std::array<char32_t, 4> kSmallest{0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = c >= 0xd800 && c <= 0xdfff;
    return c < kSmallest[more] || c > 0x10ffff || isSurrogate ? kReplacement : c;
}

void append(std::string& out, char32_t c)
{
    const auto put = [&](char32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xc0U | (c >> 6U));
        put(0x80U | (c & 0x3fU));
    } else if (c < 0x10000) {
        put(0xe0U | (c >> 12U));
        put(0x80U | ((c >> 6U) & 0x3fU));
        put(0x80U | (c & 0x3fU));
    } else {
        put(0xf0U | (c >> 18U));
        put(0x80U | ((c >> 12U) & 0x3fU));
        put(0x80U | ((c >> 6U) & 0x3fU));
        put(0x80U | (c & 0x3fU));
    }
}

/// Reads at most `limit` code points that are fit to be shown.
CodePoints showable(std::string_view text, std::size_t limit)
{
    CodePoints shown;
    std::size_t marks = 0;
    for (std::size_t at = 0; at < text.size() && shown.size() < limit;) {
        auto c = nextCodePoint(text, at);
        if (isIn(kInvisible, c))
            continue;
        if (isIn(kLineBreaks, c))
            c = ' ';
        marks = isIn(kCombining, c) ? marks + 1 : 0;
        if (marks <= kMostMarks)
            shown.push_back(c);
    }
    return shown;
}

bool isRegionalIndicator(char32_t c)
{
    return c >= 0x1f1e6 && c <= 0x1f1ff;
}

/// Whether a grapheme certainly begins at `at`.
bool isBorder(const CodePoints& text, std::size_t at)
{
    if (text[at - 1] == kZeroWidthJoiner)
        return false;
    if (!isRegionalIndicator(text[at]))
        return isIn(kStarters, text[at]);
    // Flags are pairs.
    std::size_t run = 0;
    while (run < at && isRegionalIndicator(text[at - run - 1]))
        ++run;
    return run % 2 == 0;
}

}

std::string oneLine(std::string_view text, std::size_t limit)
{
    auto shown = showable(text, limit + 1);
    if (shown.size() > limit) {
        std::size_t end = limit - 1;
        while (end > 0 && !isBorder(shown, end))
            --end;
        // Not one certain border: then a broken grapheme is better than nothing.
        shown.resize(end > 0 ? end : limit - 1);
        shown.push_back(kEllipsis);
    }
    std::string out;
    for (const auto c : shown)
        append(out, c);
    return out;
}

std::string escapeMarkup(std::string_view text)
{
    std::string out;
    for (const char c : text) {
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        case '\'':
            out += "&#39;";
            break;
        default:
            out.push_back(c);
        }
    }
    return out;
}

}
