#include "TinkraCore/Models/Text.h"

#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include <cassert>

namespace Tinkra {

namespace {

bool isASCII(std::string_view bytes)
{
    unsigned char all = 0;
    for (const char byte : bytes)
        all |= static_cast<unsigned char>(byte);
    return all < 0x80;
}

const icu::Normalizer2& canonicalDecomposition()
{
    UErrorCode status = U_ZERO_ERROR;
    const auto* normalizer = icu::Normalizer2::getNFDInstance(status);
    assert(U_SUCCESS(status) && normalizer); // the data is compiled into the library
    return *normalizer;
}

/// The canonical decomposition in UTF-8, in which the order of bytes is that of scalar values. UTF-16, by
/// contrast, sorts U+10000 and above before U+E000.
std::string canonicalForm(const std::string& utf8)
{
    if (isASCII(utf8))
        return utf8;
    const auto text = icu::UnicodeString::fromUTF8(utf8); // bytes that are not UTF-8 become U+FFFD
    UErrorCode status = U_ZERO_ERROR;
    const auto decomposed = canonicalDecomposition().normalize(text, status);
    assert(U_SUCCESS(status));
    std::string form;
    decomposed.toUTF8String(form);
    return form;
}

}

bool operator==(const Text& left, const Text& right)
{
    if (left.m_utf8 == right.m_utf8)
        return true;
    if (isASCII(left.m_utf8) && isASCII(right.m_utf8))
        return false;
    return canonicalForm(left.m_utf8) == canonicalForm(right.m_utf8);
}

std::strong_ordering operator<=>(const Text& left, const Text& right)
{
    if (isASCII(left.m_utf8) && isASCII(right.m_utf8))
        return left.m_utf8 <=> right.m_utf8;
    return canonicalForm(left.m_utf8) <=> canonicalForm(right.m_utf8);
}

std::size_t Text::hash() const
{
    if (isASCII(m_utf8))
        return std::hash<std::string>{}(m_utf8);
    return std::hash<std::string>{}(canonicalForm(m_utf8));
}

}
