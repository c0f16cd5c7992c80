#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Tinkra::CommandLine {

/// The text on one line that a terminal can show without being steered by it: control characters, line ends
/// and bidirectional controls are written as "\n", "\t" or "\u{1B}", bytes that are not UTF-8 as U+FFFD.
/// Everything else stays as it is.
std::string printable(std::string_view text);

/// How many columns of a terminal valid UTF-8 text fills: wide characters and emoji two, combining marks none
/// (Unicode Standard Annexes 11 and 29).
std::size_t displayWidth(std::string_view text);

}
