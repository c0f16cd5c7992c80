#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace Tinkra {

/// An opaque colour in sRGB; each component 0...255, that is 255 times its share.
struct HexColor {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    friend bool operator==(const HexColor&, const HexColor&) = default;
};

/// The colour that "#C95B4B" or "c95b4b" names, with white space (any that Unicode knows, line ends too)
/// around it. Nothing for an absent text and for everything but six hexadecimal digits after at most one "#".
std::optional<HexColor> parseHexColor(std::optional<std::string_view> utf8);

}
