#pragma once

#include <string>
#include <string_view>

namespace Tinkra::ICalendar {

/// `text` as bytes in which ASCII stands for itself: without a UTF-8 byte order mark, and UTF-16 (with a
/// mark, or recognised by its zero bytes) rewritten as UTF-8. The result is a part of `text`, or of `buffer`.
std::string_view withoutByteOrder(std::string_view text, std::string& buffer);

/// Appends `bytes` as valid UTF-8 without NUL. Bytes that are no UTF-8 at all are read as Windows-1252; in a
/// text that has multi-byte characters, what does not belong to one becomes U+FFFD.
void appendUtf8(std::string& out, std::string_view bytes);

}
