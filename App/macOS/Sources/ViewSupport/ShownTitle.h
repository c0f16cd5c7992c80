#pragma once

#include <string>
#include <string_view>

namespace Tinkra {

/// A meeting's title as it may stand on one line of the screen, whoever wrote it: valid UTF-8 in which
/// control characters and line breaks are spaces, bidirectional controls and invisible characters are gone,
/// and no more than eight combining marks sit on one character. Longer than 500 UTF-16 units it is cut where
/// a grapheme ends (UAX #29), and gets an ellipsis.
std::string shownTitle(std::string_view titleUtf8);

}
