#pragma once

#include <compare>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace Tinkra {

/// Unicode text as a user means it: composed and decomposed forms of one character are the same text.
///
/// The bytes are kept as they were given (UTF-8). Equality, hash and order look at the canonical
/// decomposition (NFD, Unicode Standard Annex 15); the order is that of its Unicode scalar values, is
/// case-sensitive and knows no locale. Bytes that are not valid UTF-8 count as U+FFFD in comparisons.
class Text {
public:
    Text() = default;
    Text(std::string utf8)
        : m_utf8(std::move(utf8))
    {
    }
    Text(std::string_view utf8)
        : m_utf8(utf8)
    {
    }
    Text(const char* utf8)
        : m_utf8(utf8)
    {
    }

    const std::string& utf8() const { return m_utf8; }
    bool isEmpty() const { return m_utf8.empty(); }

    friend bool operator==(const Text& left, const Text& right);
    friend std::strong_ordering operator<=>(const Text& left, const Text& right);

private:
    friend struct std::hash<Text>;

    std::size_t hash() const;

    std::string m_utf8;
};

}

template <> struct std::hash<Tinkra::Text> {
    std::size_t operator()(const Tinkra::Text& text) const { return text.hash(); }
};
