#pragma once

#include "TinkraICalendar/Notices.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace Tinkra::ICalendar {

/// Walks over the physical lines of a text, in time linear in its length, and unfolds content lines (RFC
/// 5545, section 3.1). A line ends with CR LF, LF or CR, mixed at will; blank lines do not count, not even
/// between a line and its continuation.
class LineReader {
public:
    /// Lines longer than `longest` bytes are passed over and named in `notices`.
    LineReader(std::string_view text, std::size_t longest, Notices& notices);

    /// Moves to the next line. False at the end of the text.
    bool next();

    /// The current physical line, not empty, without its end.
    std::string_view line() const { return m_line; }

    /// Counted from 1.
    std::size_t number() const { return m_number; }

    /// Where the current line begins in the text.
    std::size_t offset() const { return static_cast<std::size_t>(m_line.data() - m_begin); }

    /// Whether the line that follows continues the current one.
    bool isFolded();

    /// The content line that begins with the current line, whose continuations are thereby passed. The result
    /// is a part of the text, or of `buffer`.
    std::string_view unfolded(std::string& buffer);

private:
    bool readLine();
    void skipBlankLines();
    const char* lineEnd();

    const char* m_begin;
    const char* m_end;
    const char* m_position;
    const char* m_lineFeed; ///< the next one at or after the position; the end when there is none
    const char* m_carriageReturn; ///< likewise
    std::size_t m_longest;
    std::size_t m_passed = 0; ///< line ends before the position
    std::size_t m_number = 0;
    std::string_view m_line;
    Notices& m_notices;
};

}
