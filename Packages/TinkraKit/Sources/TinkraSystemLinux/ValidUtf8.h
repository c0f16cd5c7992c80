#pragma once

#include <string>
#include <string_view>

namespace Tinkra::System {

/// The text as D-Bus takes it: what is not valid UTF-8, and NUL, is replaced by U+FFFD. One byte that is
/// neither makes the bus drop the whole connection.
std::string validUtf8(std::string_view text);

}
