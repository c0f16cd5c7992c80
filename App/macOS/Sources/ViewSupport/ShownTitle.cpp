#include "ViewSupport/ShownTitle.h"

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <memory>

namespace Tinkra {

namespace {

constexpr std::int32_t kMostUnits = 500;
constexpr int kMostMarks = 8;
constexpr UChar32 kZeroWidthNonJoiner = 0x200C;
constexpr UChar32 kZeroWidthJoiner = 0x200D;
constexpr UChar32 kEllipsis = 0x2026;

bool isBreakOrControl(UChar32 character)
{
    const auto type = u_charType(character);
    return type == U_CONTROL_CHAR || type == U_LINE_SEPARATOR || type == U_PARAGRAPH_SEPARATOR;
}

bool isMark(UChar32 character)
{
    const auto type = u_charType(character);
    return type == U_NON_SPACING_MARK || type == U_ENCLOSING_MARK;
}

// The joiners shape emoji and several scripts; the other format characters steer the line or hide in it.
bool isUnseen(UChar32 character)
{
    return u_charType(character) == U_FORMAT_CHAR && character != kZeroWidthJoiner
        && character != kZeroWidthNonJoiner;
}

icu::UnicodeString cutAtGrapheme(const icu::UnicodeString& text)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> graphemes(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status))
        return text.tempSubString(0, text.getChar32Start(kMostUnits));
    graphemes->setText(text);
    return text.tempSubString(0, std::max(graphemes->preceding(kMostUnits + 1), 0));
}

}

std::string shownTitle(std::string_view titleUtf8)
{
    // A unit comes from at most three bytes, and what is left out makes room; more than this is never looked
    // at.
    constexpr std::size_t kMostBytes = 64 * 1024;
    const auto looked = titleUtf8.substr(0, kMostBytes);
    const auto title =
        icu::UnicodeString::fromUTF8({looked.data(), static_cast<std::int32_t>(looked.size())});

    icu::UnicodeString shown;
    int marks = 0;
    for (std::int32_t at = 0; at < title.length() && shown.length() <= 2 * kMostUnits;
         at = title.moveIndex32(at, 1)) {
        const UChar32 character = title.char32At(at);
        if (isUnseen(character))
            continue;
        marks = isMark(character) ? marks + 1 : 0;
        if (marks <= kMostMarks)
            shown.append(isBreakOrControl(character) ? UChar32{' '} : character);
    }
    if (shown.length() > kMostUnits)
        shown = cutAtGrapheme(shown).append(kEllipsis);

    std::string utf8;
    return shown.toUTF8String(utf8);
}

}
