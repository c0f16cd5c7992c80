#include "TinkraICalendar/LineReader.h"

#include <algorithm>
#include <cstring>

namespace Tinkra::ICalendar {

namespace {

const char* find(char wanted, const char* from, const char* end)
{
    if (from == end) // perhaps both null, which memchr does not take
        return end;
    const auto* found = std::memchr(from, wanted, static_cast<std::size_t>(end - from));
    return found == nullptr ? end : static_cast<const char*>(found);
}

bool isContinuation(char c)
{
    return c == ' ' || c == '\t';
}

}

LineReader::LineReader(std::string_view text, std::size_t longest, Notices& notices)
    : m_begin{text.data()}
    , m_end{text.data() + text.size()}
    , m_position{m_begin}
    , m_lineFeed{find('\n', m_begin, m_end)}
    , m_carriageReturn{find('\r', m_begin, m_end)}
    , m_longest{longest}
    , m_notices{notices}
{
}

// Each kind of line end is looked for once from where it was last found, so a text that has only the other
// kind is not searched again for every line.
const char* LineReader::lineEnd()
{
    if (m_lineFeed < m_position)
        m_lineFeed = find('\n', m_position, m_end);
    if (m_carriageReturn < m_position)
        m_carriageReturn = find('\r', m_position, m_end);
    return std::min(m_lineFeed, m_carriageReturn);
}

void LineReader::skipBlankLines()
{
    while (m_position < m_end && (*m_position == '\n' || *m_position == '\r')) {
        const bool isPair = *m_position == '\r' && m_position + 1 < m_end && m_position[1] == '\n';
        m_position += isPair ? 2 : 1;
        ++m_passed;
    }
}

bool LineReader::readLine()
{
    const auto* end = lineEnd();
    m_line = {m_position, static_cast<std::size_t>(end - m_position)};
    m_number = m_passed + 1;
    m_position = end;
    if (m_position < m_end) {
        m_position += *end == '\r' && end + 1 < m_end && end[1] == '\n' ? 2 : 1;
        ++m_passed;
    }
    if (m_line.size() <= m_longest)
        return true;
    m_notices.add(m_number, "the line is too long and was passed over.");
    return false;
}

bool LineReader::next()
{
    for (;;) {
        skipBlankLines();
        if (m_position >= m_end)
            return false;
        if (readLine())
            return true;
    }
}

bool LineReader::isFolded()
{
    if (m_position < m_end && !isContinuation(*m_position))
        skipBlankLines();
    return m_position < m_end && isContinuation(*m_position);
}

std::string_view LineReader::unfolded(std::string& buffer)
{
    if (!isFolded())
        return m_line;
    const auto first = m_line;
    const auto number = m_number;
    buffer = first;
    while (isFolded()) {
        if (readLine())
            buffer += m_line.substr(1);
    }
    m_line = first;
    m_number = number;
    return buffer;
}

}
