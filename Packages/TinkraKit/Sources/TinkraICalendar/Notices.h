#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Tinkra::ICalendar {

/// What was not understood, one sentence each, in valid UTF-8. Their number is bounded, so that a hostile
/// text cannot fill the memory with complaints about itself.
class Notices {
public:
    /// Adds "Line `line`: `sentence`".
    void add(std::size_t line, std::string_view sentence);

    void add(std::string_view sentence);

    /// The sentences; the last one says how many were left out, if any were.
    std::vector<std::string> take();

private:
    std::vector<std::string> m_sentences;
    std::size_t m_leftOut = 0;
};

/// `text` in quotes, shortened and with anything unprintable replaced: fit for a sentence.
std::string quoted(std::string_view text);

}
