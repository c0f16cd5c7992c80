#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Tinkra::NotificationDaemon {

/// What may be shown of a text that anybody could have written: one line of valid UTF-8 in which control
/// characters and line breaks are spaces, bidirectional controls and invisible characters are gone, and
/// combining marks do not pile up. Longer than `limit` code points it is cut where a grapheme certainly ends,
/// and gets an ellipsis.
std::string oneLine(std::string_view text, std::size_t limit);

/// For servers that read markup in a body (capability "body-markup").
std::string escapeMarkup(std::string_view text);

}
